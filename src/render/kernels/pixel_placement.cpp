// The vector form, compiled once for each width.
#include "render/kernels/pixel_placement.h"

#include <algorithm>
#include <array>

// The two lines that Highway includes this file again by.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/kernels/pixel_placement.cpp"  // NOLINT(cppcoreguidelines-macro-usage): Highway's
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "render/kernels/channel_lanes-inl.h"
#include "render/kernels/coverage_lanes-inl.h"
#include "render/kernels/vector_targets.h"

HWY_BEFORE_NAMESPACE();
namespace captionfx::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

PixelPlacement* Placement() {
    return PlacePixelsPlain;
}

#else

/// Room for a row of samples: those of a tile and one on their left, and what vectors read behind.
constexpr size_t kRoom = kTileColumns + 1 + kPixelPadding + 31;

/// The samples of a layer's row, from the one on the left of the first pixel, channel by channel; what means are made
/// of as sums of each and the one before it.
struct SampleRow {
    std::array<uint8_t, kRoom> Alpha{};
    std::array<uint16_t, kRoom> Counts{};                 // of those that have alpha
    std::array<std::array<uint16_t, kRoom>, 3> Colors{};  // of the same

    /// Takes row v.
    void Fill(const PixelRows& rows, int32_t v) {
        const auto count = static_cast<size_t>(rows.Right - rows.Left) + 1;
        std::array<uint32_t, kRoom> samples{};
        if (v >= 0 && v < rows.Height) {
            const int32_t from = std::max(rows.Left - 1, 0), to = std::min(rows.Right, rows.Width);
            if (from < to) {
                const uint32_t* const row = rows.Pixels + std::ptrdiff_t{v} * rows.Width;
                std::copy(row + from, row + to, samples.data() + (from - (rows.Left - 1)));
            }
        }
        for (size_t i = 0; i < count; ++i) Alpha[i] = static_cast<uint8_t>(samples[i] >> kAlphaShift);
        for (size_t i = 0; i < count; ++i) samples[i] = AlphaOf(samples[i]) == 0 ? 0 : samples[i];
        for (size_t i = 1; i < count; ++i)
            Counts[i] = static_cast<uint16_t>((Alpha[i - 1] != 0 ? 1 : 0) + (Alpha[i] != 0 ? 1 : 0));
        for (size_t c = 0; c < 3; ++c) {
            for (size_t i = 1; i < count; ++i) {
                Colors[c][i] = static_cast<uint16_t>(ChannelOf(samples[i - 1], kColorShifts[c]) +
                                                     ChannelOf(samples[i], kColorShifts[c]));
            }
        }
    }
};

/// What twice the sum of `count` samples, 0 to 4, is multiplied by, to be 16 bits above their mean: exact for sums of
/// bytes.
HWY_INLINE Halves ShareOf(Halves count) {
    const auto ifCount = [&](uint16_t number, uint16_t share, Halves otherwise) HWY_ATTR {
        return hn::IfThenElse(hn::Eq(count, hn::Set(kLanes16, number)), hn::Set(kLanes16, share), otherwise);
    };
    return ifCount(1, 32768, ifCount(2, 16384, ifCount(3, 10923, hn::Set(kLanes16, 8192))));
}

template <Sampling kSampling>
void PlaceRows(const ChannelPlane& plane, const PixelRows& rows, const CoveragePlacement& placement,
               const LargeWeight& large, std::array<SampleRow, 2>& samples) {
    const auto lanes = static_cast<int32_t>(hn::Lanes(kLanes16));
    const PlacementWeights weights(placement);
    SampleRow &upper = samples[0], &lower = samples[1];
    upper.Fill(rows, rows.First - 1);
    for (int32_t y = 0; y < rows.Count; ++y) {
        lower.Fill(rows, rows.First + y);
        uint16_t* const out = plane.Alpha + y * plane.Pitch + rows.Column;
        for (int32_t u = rows.Left; u < rows.Right; u += lanes) {
            const std::ptrdiff_t at = u - rows.Left + 1;
            const auto sum = [&](const auto& above, const auto& here) HWY_ATTR {
                return hn::Add(hn::LoadU(kLanes16, above.data() + at), hn::LoadU(kLanes16, here.data() + at));
            };
            const Halves a =
                PlacedCoverages<kSampling>(upper.Alpha.data() + at, lower.Alpha.data() + at, large.Offset, weights);
            const Halves left = hn::Sub(hn::Set(kLanes16, 256), a), weight = hn::Add(a, hn::Set(kLanes16, 1));
            PlaceAlpha(out + u, left, weight);
            const Halves share = ShareOf(sum(upper.Counts, lower.Counts));
            for (size_t c = 0; c < 3; ++c) {
                const Halves twice = hn::ShiftLeft<1>(sum(upper.Colors[c], lower.Colors[c]));
                const Halves mean = hn::MulHigh(twice, share);
                PlaceColor(out + u + static_cast<std::ptrdiff_t>(plane.Colors.Of[c] + 1) * plane.ChannelPitch, left,
                           weight, hn::ShiftLeft<8>(mean));
            }
        }
        upper = lower;
    }
}

void PlacePixels(const ChannelPlane& plane, const PixelRows& rows, const CoveragePlacement& placement) {
    std::array<SampleRow, 2> samples;
    const auto pitch = samples[1].Alpha.data() - samples[0].Alpha.data();
    const LargeWeight large(placement, static_cast<size_t>(pitch));
    if (large.Exists) {
        PlaceRows<Sampling::kFourWithLarge>(plane, rows, placement, large, samples);
    } else {
        PlaceRows<Sampling::kFour>(plane, rows, placement, large, samples);
    }
}

PixelPlacement* Placement() {
    return PlacePixels;
}

#endif

}  // namespace
}  // namespace captionfx::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace captionfx {

HWY_EXPORT(Placement);

PixelPlacement* BestPixelPlacement() {
    static PixelPlacement* const best = HWY_DYNAMIC_DISPATCH(Placement)();
    return best;
}

std::vector<PixelPlacement*> VectorPixelPlacements() {
    return OfEachVectorTarget([] { return HWY_DYNAMIC_DISPATCH(Placement)(); });
}

}  // namespace captionfx
#endif
