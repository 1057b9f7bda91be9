// The vector form of the loops that draw tiles, compiled once for each width.
#include "render/kernels/channel_kernels.h"

#include <algorithm>
#include <array>
#include <utility>

// The two lines that Highway includes this file again by.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/kernels/channel_kernels.cpp"  // NOLINT(cppcoreguidelines-macro-usage): Highway's
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "render/kernels/channel_lanes-inl.h"
#include "render/kernels/coverage_lanes-inl.h"
#include "render/kernels/pixel_lanes-inl.h"
#include "render/kernels/vector_targets.h"

HWY_BEFORE_NAMESPACE();
namespace captionfx::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

const ChannelKernels* Channels() {
    return &PlainChannelKernels();
}

#else

template <size_t kColors, Sampling kSampling>
void PlaceRows(const ChannelPlane& plane, const CoverageRows& rows, const CoveragePlacement& placement,
               std::ptrdiff_t largeOffset) {
    static_assert(hn::MaxLanes(Lanes16()) <= CoverageLayer::kPadding && hn::MaxLanes(Lanes16()) <= kPixelPadding);
    const auto lanes = static_cast<int32_t>(hn::Lanes(kLanes16));
    const std::ptrdiff_t channelPitch = plane.ChannelPitch;
    const PlacementWeights weights(placement);
    const std::array<uint16_t, 3> stored = plane.Colors.ValuesOf(placement.Color);
    Halves values[3];  // 8 bits up
    for (size_t c = 0; c < 3; ++c) values[c] = hn::Set(kLanes16, static_cast<uint16_t>(stored[c] << 8U));
    ForFilledRows(rows, [&](int32_t v, const uint8_t* upper, int32_t left, int32_t right) HWY_ATTR {
        const uint8_t* const lower = upper + rows.Pitch;
        uint16_t* const out = plane.Alpha + v * plane.Pitch + rows.Column;
        for (int32_t u = left; u < right; u += lanes) {
            const Halves a = PlacedCoverages<kSampling>(upper + u, lower + u, largeOffset, weights);
            const Halves kept = hn::Sub(hn::Set(kLanes16, 256), a), weight = hn::Add(a, hn::Set(kLanes16, 1));
            PlaceAlpha(out + u, kept, weight);
            for (size_t c = 0; c < kColors; ++c)
                PlaceColor(out + u + static_cast<std::ptrdiff_t>(c + 1) * channelPitch, kept, weight, values[c]);
        }
    });
}

void Place(const ChannelPlane& plane, const CoverageRows& rows, const CoveragePlacement& placement) {
    using PlaceForm = void (*)(const ChannelPlane&, const CoverageRows&, const CoveragePlacement&, std::ptrdiff_t);
    static constexpr auto kForms = [] {
        std::array<std::array<PlaceForm, 3>, 4> forms{};
        const auto add = [&]<size_t... kColors>(std::index_sequence<kColors...>) {
            ((forms[kColors] = {PlaceRows<kColors, Sampling::kFour>, PlaceRows<kColors, Sampling::kFourWithLarge>,
                                PlaceRows<kColors, Sampling::kOne>}),
             ...);
        };
        add(std::make_index_sequence<4>());
        return forms;
    }();
    const LargeWeight large(placement, rows.Pitch);
    const auto sampling = static_cast<size_t>(SamplingOf(placement, large));
    kForms[plane.Colors.Count][sampling](plane, rows, placement, large.Offset);
}

template <Sampling kSampling>
void ResampleRows(uint8_t* out, size_t pitch, const CoverageRows& rows, const CoveragePlacement& placement,
                  std::ptrdiff_t largeOffset) {
    const auto lanes = static_cast<int32_t>(hn::Lanes(kLanes16));
    const PlacementWeights weights(placement);
    ForFilledRows(rows, [&](int32_t v, const uint8_t* upper, int32_t left, int32_t right) HWY_ATTR {
        const uint8_t* const lower = upper + rows.Pitch;
        uint8_t* const row = out + static_cast<size_t>(v) * pitch;
        for (int32_t u = left; u < right; u += lanes) {
            const Halves a = PlacedCoverages<kSampling>(upper + u, lower + u, largeOffset, weights);
            const hn::Rebind<uint8_t, Lanes16> d8;
            hn::StoreU(hn::DemoteTo(d8, hn::BitCast(LanesI16(), a)), d8, row + u);
        }
    });
}

void Resample(uint8_t* out, size_t pitch, const CoverageRows& rows, const CoveragePlacement& placement) {
    const LargeWeight large(placement, rows.Pitch);
    if (large.Exists) {
        ResampleRows<Sampling::kFourWithLarge>(out, pitch, rows, placement, large.Offset);
    } else {
        ResampleRows<Sampling::kFour>(out, pitch, rows, placement, 0);
    }
}

/// One colour of the merged image: the rows of the planes that it is made of.
struct MergedColor {
    const uint16_t *Face, *Border, *Shadow;

    bool operator==(const MergedColor&) const = default;
};

/// How a row of three planes becomes pixels: the colours that have to be worked out, each once.
class MergePlan {
public:
    explicit MergePlan(const ChannelPlanes& planes) : pitch_(planes.Face.Pitch) {
        for (const ChannelPlane* plane : {&planes.Face, &planes.Border, &planes.Shadow}) {
            for (size_t stored = 0; stored <= plane->Colors.Count; ++stored)
                used_[usedCount_++] = plane->Alpha + static_cast<std::ptrdiff_t>(stored) * plane->ChannelPitch;
        }
        for (size_t c = 0; c < 3; ++c) {
            const auto from = [&](const ChannelPlane& plane) {
                return plane.Colors.Of[c] == StoredColors::kNone ? kZeros.data() : plane.Color(plane.Colors.Of[c]);
            };
            const MergedColor color{from(planes.Face), from(planes.Border), from(planes.Shadow)};
            size_t same = 0;
            while (same < Count && Colors[same] != color) ++same;
            if (same == Count) Colors[Count++] = color;
            Of[c] = same;
        }
    }

    /// Goes on to the next row.
    void Advance() {
        for (size_t i = 0; i < usedCount_; ++i) used_[i] += pitch_;
        for (size_t c = 0; c < Count; ++c) {
            for (const uint16_t** const row : {&Colors[c].Face, &Colors[c].Border, &Colors[c].Shadow}) {
                if (*row != kZeros.data()) *row += pitch_;
            }
        }
    }

    /// Leaves a vector of the row 0.
    HWY_INLINE void Clear(int32_t x) const {
        for (size_t i = 0; i < usedCount_; ++i) hn::StoreU(hn::Zero(kLanes16), kLanes16, used_[i] + x);
    }

    std::array<MergedColor, 3> Colors{};
    size_t Count = 0;
    std::array<size_t, 3> Of{};  // of blue, green, red in Colors

private:
    static constexpr std::array<uint16_t, kTileColumns + kPixelPadding> kZeros{};

    std::ptrdiff_t pitch_;
    std::array<uint16_t*, 12> used_{};
    size_t usedCount_ = 0;
};

/// Division by numbers of 16 bits from 0 to 255, of which 0 counts as 1.
HWY_INLINE Divider DividerBy(Halves divisor) {
    const Halves atLeast1 = hn::Max(divisor, hn::Set(kLanes16, 1));
    const Pixels pairs = hn::BitCast(kLanes32, atLeast1), low = hn::Set(kLanes32, 0xFFFF);
    const Pixels even = Reciprocal(hn::And(pairs, low)), odd = Reciprocal(hn::ShiftRight<16>(pairs));
    return {atLeast1, hn::BitCast(kLanes16, hn::Or(hn::And(even, low), hn::ShiftLeft<16>(odd)))};
}

/// v a / 255, rounded to nearest.
HWY_INLINE Halves TimesOver255(Halves v, Halves a) {
    return hn::MulHigh(hn::Add(hn::Mul(v, a), hn::Set(kLanes16, 128)), hn::Set(kLanes16, 257));
}

/// A vector of pixels, channel by channel, and their form of 32 bits.
template <size_t kColors>
struct MergedLanes {
    Halves Alpha;
    Halves Colors[kColors];
};

/// The face and border of pixels, see FaceOverBorder. Where one of them is clear the other is the sum of both.
template <size_t kColors>
HWY_INLINE MergedLanes<kColors> FaceOverBorderLanes(const std::array<MergedColor, 3>& colors, int32_t x, Halves fa,
                                                    Halves ba) {
    const auto face = [&](size_t c) HWY_ATTR { return hn::LoadU(kLanes16, colors[c].Face + x); };
    const auto border = [&](size_t c) HWY_ATTR { return hn::LoadU(kLanes16, colors[c].Border + x); };
    const Halves zero = hn::Zero(kLanes16), full = hn::Set(kLanes16, 255);
    const auto isOne = hn::Or(hn::Eq(fa, zero), hn::Eq(ba, zero));
    MergedLanes<kColors> merged;
    merged.Alpha = hn::Min(hn::Add(fa, ba), full);
    for (size_t c = 0; c < kColors; ++c) merged.Colors[c] = hn::Add(face(c), border(c));
    if (hn::AllTrue(kLanes16, isOne)) return merged;
    const auto isFull = hn::Eq(fa, full);
    const Halves left = hn::Sub(hn::Set(kLanes16, 256), fa);
    const auto mix = [&](auto quotient) HWY_ATTR {
        for (size_t c = 0; c < kColors; ++c) {
            const Halves mixed = hn::ShiftRight<8>(hn::Mul(hn::Add(face(c), quotient(border(c))), merged.Alpha));
            merged.Colors[c] = hn::IfThenElse(isOne, merged.Colors[c], hn::IfThenElse(isFull, face(c), mixed));
        }
    };
    // What is left of the border is left / its alpha of each channel: of one that is 0 nothing, of one that is that
    // alpha just as much. Pure colours, black above all, need no division.
    const auto isPureAt = [&](size_t c) HWY_ATTR { return hn::Or(hn::Eq(border(c), ba), hn::Eq(border(c), zero)); };
    auto isPure = isPureAt(0);
    for (size_t c = 1; c < kColors; ++c) isPure = hn::And(isPure, isPureAt(c));
    if (hn::AllTrue(kLanes16, hn::Or(isOne, isPure))) {
        mix([&](Halves channel) HWY_ATTR { return hn::IfThenZeroElse(hn::Eq(channel, zero), left); });
    } else {
        const Divider byBorderAlpha = DividerBy(ba);
        mix([&](Halves channel) HWY_ATTR { return byBorderAlpha(hn::Mul(left, channel)); });
    }
    return merged;
}

/// Which of the colours worked out are a pixel's green and red; its blue is the first.
template <size_t kGreenOf, size_t kRedOf>
struct ColorOrder {
    static constexpr size_t kGreen = kGreenOf, kRed = kRedOf, kColors = std::max(kGreen, kRed) + 1;
};

/// Two vectors of pixels in their order.
struct PixelPair {
    Pixels First, Second;
};

/// Interleaving works in blocks of 128 bits: the lower halves of all blocks, then the upper ones, become pixels in
/// their order.
HWY_INLINE PixelPair InOrder(Halves lower, Halves upper) {
    const Pixels l = hn::BitCast(kLanes32, lower), u = hn::BitCast(kLanes32, upper);
#if HWY_MAX_BYTES == 16
    return {l, u};
#else
    const Pixels first = hn::ConcatLowerLower(kLanes32, u, l), second = hn::ConcatUpperUpper(kLanes32, u, l);
#if HWY_MAX_BYTES == 32
    return {first, second};
#else
    const hn::Repartition<uint64_t, Lanes32> d64;
    HWY_ALIGN static constexpr uint64_t kOrder[] = {0, 1, 4, 5, 2, 3, 6, 7};
    const auto ordered = [&](Pixels pixels) HWY_ATTR {
        return hn::BitCast(kLanes32, hn::TableLookupLanes(hn::BitCast(d64, pixels), hn::SetTableIndices(d64, kOrder)));
    };
    return {ordered(first), ordered(second)};
#endif
#endif
}

template <class Order>
HWY_INLINE PixelPair PixelsOf(const MergedLanes<Order::kColors>& merged) {
    const Halves low = hn::Or(merged.Colors[0], hn::ShiftLeft<8>(merged.Colors[Order::kGreen])),
                 high = hn::Or(merged.Colors[Order::kRed], hn::ShiftLeft<8>(merged.Alpha));
    return InOrder(hn::InterleaveLower(kLanes16, low, high), hn::InterleaveUpper(kLanes16, low, high));
}

/// Replaces pixels by what sink(merged, those below) makes of them, two vectors at a time.
template <class Sink>
HWY_INLINE void Write(uint32_t* out, const PixelPair& merged, Sink sink) {
    const size_t lanes = hn::Lanes(kLanes32);
    const PixelPair pixels = sink(merged, {hn::LoadU(kLanes32, out), hn::LoadU(kLanes32, out + lanes)});
    hn::StoreU(pixels.First, kLanes32, out);
    hn::StoreU(pixels.Second, kLanes32, out + lanes);
}

/// The same for less than two vectors.
template <class Sink>
HWY_NOINLINE void WriteFew(uint32_t* out, const PixelPair& merged, size_t count, Sink sink) {
    HWY_ALIGN uint32_t few[2 * hn::MaxLanes(Lanes32())] = {};
    std::copy_n(out, count, few);
    Write(few, merged, sink);
    std::copy_n(few, count, out);
}

/// Merges a row of the planes into the pixels of `image`, wherever it holds something, and leaves it 0. The last vector
/// reaches back over what is done: that is 0 by then, and 0 changes nothing.
template <class Order, class Sink>
HWY_NOINLINE void MergeRow(uint32_t* image, const ChannelPlanes& row, const MergePlan& plan, int32_t count, Sink sink) {
    constexpr size_t kColors = Order::kColors;
    const auto lanes = static_cast<int32_t>(hn::Lanes(kLanes16));
    const std::array<MergedColor, 3> colors = plan.Colors;
    const uint16_t *const face = row.Face.Alpha, *const border = row.Border.Alpha, *const shadow = row.Shadow.Alpha;
    const bool isBlackShadow = row.Shadow.Colors.Count == 0;
    const int32_t last = std::max(count - lanes, 0);
    for (int32_t next = 0; next < count; next += lanes) {
        const int32_t x = std::min(next, last);
        const Halves fa = hn::LoadU(kLanes16, face + x), ba = hn::LoadU(kLanes16, border + x),
                     sa = hn::LoadU(kLanes16, shadow + x);
        if (IsAllZero(hn::BitCast(kLanes32, hn::Or(fa, hn::Or(ba, sa))))) continue;
        MergedLanes<kColors> merged = FaceOverBorderLanes<kColors>(colors, x, fa, ba);
        const Halves left = hn::Sub(hn::Set(kLanes16, 255), merged.Alpha);
        merged.Alpha = hn::Add(merged.Alpha, TimesOver255(sa, left));
        if (!isBlackShadow) {
            for (size_t c = 0; c < kColors; ++c) {
                const Halves below = hn::LoadU(kLanes16, colors[c].Shadow + x);
                merged.Colors[c] = hn::Add(merged.Colors[c], TimesOver255(below, left));
            }
        }
        plan.Clear(x);
        if (count < lanes) return WriteFew(image, PixelsOf<Order>(merged), static_cast<size_t>(count), sink);
        Write(image + x, PixelsOf<Order>(merged), sink);
    }
}

template <class Order, class Sink>
void MergeRows(uint32_t* image, std::ptrdiff_t pitch, const ChannelPlanes& planes, MergePlan& plan, int32_t rows,
               int32_t count, Sink sink) {
    for (int32_t y = 0; y < rows; ++y, image += pitch, plan.Advance())
        MergeRow<Order>(image, planes.From(y, 0), plan, count, sink);
}

template <class Sink>
void MergeInto(uint32_t* image, std::ptrdiff_t pitch, const ChannelPlanes& planes, int32_t rows, int32_t count,
               Sink sink) {
    MergePlan plan(planes);
    const auto merge = [&](auto order) { MergeRows<decltype(order)>(image, pitch, planes, plan, rows, count, sink); };
    const size_t green = plan.Of[1], red = plan.Of[2];
    if (green == 0) {
        red == 0 ? merge(ColorOrder<0, 0>()) : merge(ColorOrder<0, 1>());
    } else if (red == 0) {
        merge(ColorOrder<1, 0>());
    } else {
        red == 1 ? merge(ColorOrder<1, 1>()) : merge(ColorOrder<1, 2>());
    }
}

void FinishStraight(uint32_t* destination, std::ptrdiff_t pitch, const ChannelPlanes& planes, int32_t rows,
                    int32_t count) {
    MergeInto(destination, pitch, planes, rows, count, [](const PixelPair& merged, const PixelPair& below) HWY_ATTR {
        if (IsOpaque(hn::And(below.First, below.Second))) {
            return PixelPair{OverPremultipliedPixels(merged.First, below.First),
                             OverPremultipliedPixels(merged.Second, below.Second)};
        }
        return PixelPair{PremultipliedOverStraight(merged.First, below.First),
                         PremultipliedOverStraight(merged.Second, below.Second)};
    });
}

void FinishPremultiplied(uint32_t* destination, std::ptrdiff_t pitch, const ChannelPlanes& planes, int32_t rows,
                         int32_t count) {
    MergeInto(destination, pitch, planes, rows, count, [](const PixelPair& merged, const PixelPair& below) HWY_ATTR {
        return PixelPair{OverPremultipliedPixels(merged.First, below.First),
                         OverPremultipliedPixels(merged.Second, below.Second)};
    });
}

void Merge(uint32_t* image, std::ptrdiff_t pitch, const ChannelPlanes& planes, int32_t rows, int32_t count) {
    for (int32_t y = 0; y < rows; ++y) std::fill_n(image + y * pitch, count, 0U);
    MergeInto(image, pitch, planes, rows, count, [](const PixelPair& merged, const PixelPair& below) HWY_ATTR {
        return PixelPair{hn::Or(merged.First, below.First), hn::Or(merged.Second, below.Second)};
    });
}

const ChannelKernels* Channels() {
    static constexpr ChannelKernels kChannels{.Place = Place,
                                              .Resample = Resample,
                                              .FinishStraight = FinishStraight,
                                              .FinishPremultiplied = FinishPremultiplied,
                                              .Merge = Merge};
    return &kChannels;
}

#endif

}  // namespace
}  // namespace captionfx::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace captionfx {

HWY_EXPORT(Channels);

const ChannelKernels& BestChannelKernels() {
    static const ChannelKernels& best = *HWY_DYNAMIC_DISPATCH(Channels)();
    return best;
}

std::vector<const ChannelKernels*> VectorChannelKernels() {
    return OfEachVectorTarget([] { return HWY_DYNAMIC_DISPATCH(Channels)(); });
}

}  // namespace captionfx
#endif
