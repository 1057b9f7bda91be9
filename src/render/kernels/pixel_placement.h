// A layer of several colours on its place in a plane: the definition, and its vector form.
#pragma once

#include <vector>

#include "render/kernels/channel_planes.h"
#include "render/kernels/coverage_placement.h"
#include "render/kernels/pixel_rules.h"

namespace captionfx {

/// Rows of a plane and the layer that comes to lie there. Pixel `u` of row `v` is made of the samples u - 1 and u of
/// the layer's rows v - 1 and v; what lies outside is 0.
struct PixelRows {
    const uint32_t* Pixels;  ///< Straight alpha, rows of Width.
    int32_t Width, Height;
    int32_t First, Count;   ///< The rows v to be drawn, the first in the plane's first row.
    int32_t Left, Right;    ///< The columns u to be drawn; Right excluded, at most the layer's width and 1.
    std::ptrdiff_t Column;  ///< Of the plane, where u = 0 lies.
};

/// The mean of a channel over those of four samples that have alpha.
class ColorMean {
public:
    ColorMean(uint32_t s00, uint32_t s10, uint32_t s01, uint32_t s11) : samples_{s00, s10, s01, s11} {
        for (uint32_t& sample : samples_) {
            if (AlphaOf(sample) == 0) {
                sample = 0;
            } else {
                ++count_;
            }
        }
    }

    [[nodiscard]] uint32_t operator()(uint32_t shift) const {
        uint32_t sum = 0;
        for (const uint32_t sample : samples_) sum += ChannelOf(sample, shift);
        return count_ == 4 ? sum >> 2U : sum / count_;
    }

private:
    uint32_t samples_[4];
    uint32_t count_ = 0;
};

/// A pixel that four samples are laid over.
[[nodiscard]] inline uint32_t PlacedPixel(uint32_t target, const CoveragePlacement& p, uint32_t s00, uint32_t s10,
                                          uint32_t s01, uint32_t s11) {
    const uint32_t coverage =
        (AlphaOf(s00) * p.W00 + AlphaOf(s10) * p.W10 + AlphaOf(s01) * p.W01 + AlphaOf(s11) * p.W11) >> 16U;
    const uint32_t a = ((coverage * (p.Alpha + 1)) >> 8U) & 0xFFU;
    if (a == 0) return target;
    const ColorMean mean(s00, s10, s01, s11);
    uint32_t color = 0;
    for (const uint32_t shift : kColorShifts) color |= (mean(shift) * (a + 1)) >> 8U << shift;
    return PlacedOver(target, color, a);
}

/// Calls place(row of the plane, u, the four samples that meet there) for all pixels.
template <class Place>
void ForSamples(const PixelRows& rows, Place place) {
    for (int32_t y = 0; y < rows.Count; ++y) {
        const int32_t v = rows.First + y;
        const auto rowAt = [&](int32_t row) {
            return row >= 0 && row < rows.Height ? rows.Pixels + std::ptrdiff_t{row} * rows.Width : nullptr;
        };
        const uint32_t *const upper = rowAt(v - 1), *const lower = rowAt(v);
        const auto sample = [&](const uint32_t* samples, int32_t u) {
            return samples != nullptr && u >= 0 && u < rows.Width ? samples[u] : 0U;
        };
        uint32_t s00 = sample(upper, rows.Left - 1), s01 = sample(lower, rows.Left - 1);
        for (int32_t u = rows.Left; u < rows.Right; ++u) {
            const uint32_t s10 = sample(upper, u), s11 = sample(lower, u);
            place(y, u, s00, s10, s01, s11);
            s00 = s10;
            s01 = s11;
        }
    }
}

/// Draws into a tile's plane that stores all three colours. May write behind rows.Right, as ChannelKernels do.
using PixelPlacement = void(const ChannelPlane& plane, const PixelRows& rows, const CoveragePlacement& placement);

/// The definition.
PixelPlacement PlacePixelsPlain;

/// The widest that this processor has.
[[nodiscard]] PixelPlacement* BestPixelPlacement();

/// Those of all vector widths that this processor has, for tests.
[[nodiscard]] std::vector<PixelPlacement*> VectorPixelPlacements();

}  // namespace captionfx
