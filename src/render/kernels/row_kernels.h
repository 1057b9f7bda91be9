// The row loops that a frame spends its time in, as plain code and as vectors of the widths that processors have. All
// give the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "render/coverage_layer.h"

namespace captionfx {

/// How a layer of one colour lies on the grid of a plane.
struct CoveragePlacement {
    /// Weights of the samples above left, above, left and here; 16.16, their sum at most 65356.
    uint32_t W00, W10, W01, W11;
    uint32_t Alpha;  ///< Of the character, 1 to 255.
    uint32_t Color;  ///< Of the layer, alpha 0.
};

/// Rows of a plane and the rows of a layer that come to lie there. Pixel `u` of row `v` is made of the samples u - 1
/// and u of the layer's rows v - 1 and v.
struct CoverageRows {
    const uint8_t* Samples;   ///< Row v - 1 of the first row, sample 0.
    const ColumnSpan* Spans;  ///< Of that row and those below it.
    size_t Pitch;
    int32_t Count;          ///< Of the plane's rows.
    int32_t Left, Right;    ///< The columns u to be drawn; Right excluded, at most the layer's width and 1.
    std::ptrdiff_t Column;  ///< Of the plane, where u = 0 lies.
    bool MayOverrun;        ///< Up to kPixelPadding pixels behind a row may be read and written as they were.
};

inline constexpr int32_t kPixelPadding = 32;

/// Rows are `count` pixels and need no alignment; what lies beyond is not written.
struct RowKernels {
    /// Places rows of a layer of one colour, `pitch` pixels apart. A pixel of the target without alpha is 0.
    void (*PlaceCoverage)(uint32_t* target, std::ptrdiff_t pitch, const CoverageRows& rows,
                          const CoveragePlacement& placement);
    /// Merges three rows of planes into the last, the face uppermost, and leaves the other two 0.
    void (*MergePlanes)(uint32_t* face, uint32_t* border, uint32_t* shadow, size_t count);
    /// MergePlanes, one of the two composites from the last row, and that row left 0 too: all in one pass.
    void (*FinishStraight)(uint32_t* destination, uint32_t* face, uint32_t* border, uint32_t* shadow, size_t count);
    void (*FinishPremultiplied)(uint32_t* destination, uint32_t* face, uint32_t* border, uint32_t* shadow,
                                size_t count);
    void (*MergeFaceOverBorder)(uint32_t* border, const uint32_t* face, size_t count);
    void (*CompositeStraight)(uint32_t* destination, const uint32_t* source, size_t count);
    void (*CompositePremultiplied)(uint32_t* destination, const uint32_t* source, size_t count);
    void (*CompositePremultipliedOnto)(uint32_t* destination, const uint32_t* source, size_t count);
    void (*Premultiply)(uint32_t* pixels, size_t count);
    void (*Unpremultiply)(uint32_t* pixels, size_t count);
};

/// The definition.
[[nodiscard]] const RowKernels& PlainRowKernels();

/// The widest that this processor has.
[[nodiscard]] const RowKernels& BestRowKernels();

/// Those of all vector widths that this processor has, for tests.
[[nodiscard]] std::vector<const RowKernels*> VectorRowKernels();

}  // namespace captionfx
