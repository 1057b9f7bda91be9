// A layer of one colour on its place in a plane.
#pragma once

#include <cstddef>
#include <cstdint>

#include "render/coverage_layer.h"

namespace captionfx {

/// The weight of a sample that is a pixel by itself.
inline constexpr uint32_t kWholeSample = 65536;

/// How a layer of one colour lies on the grid of a plane.
struct CoveragePlacement {
    /// Weights of the samples above left, above, left and here; 16.16, their sum at most 65356. Or 0, 0, 0 and
    /// kWholeSample.
    uint32_t W00, W10, W01, W11;
    uint32_t Alpha;  ///< Of the character, 1 to 255.
    uint32_t Color;  ///< Of the layer, alpha 0.
};

/// Rows of a plane and the rows of a layer that come to lie there. Pixel `u` of row `v` is made of the samples u - 1
/// and u of the layer's rows v - 1 and v.
struct CoverageRows {
    const uint8_t* Samples;   ///< Row v - 1 of the first row, sample 0.
    const ColumnSpan* Spans;  ///< CoverageLayer::PlacedSpans of the rows.
    size_t Pitch;
    int32_t Count;          ///< Of the plane's rows.
    int32_t Left, Right;    ///< The columns u to be drawn; Right excluded, at most the layer's width and 1.
    std::ptrdiff_t Column;  ///< Of the plane, where u = 0 lies.
};

/// What vectors may read and write behind a row of a tile's plane.
inline constexpr int32_t kPixelPadding = 32;

/// The coverage of a pixel: its two samples of the upper row end at `upper`, those of the lower at `lower`.
[[nodiscard]] constexpr uint32_t PlacedCoverage(const uint8_t* upper, const uint8_t* lower,
                                                const CoveragePlacement& p) {
    const uint32_t coverage = (upper[-1] * p.W00 + upper[0] * p.W10 + lower[-1] * p.W01 + lower[0] * p.W11) >> 16U;
    return coverage * (p.Alpha + 1) >> 8U;
}

}  // namespace captionfx
