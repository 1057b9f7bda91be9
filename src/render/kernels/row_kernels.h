// The row loops that a frame spends its time in, as plain code and as vectors of the widths that processors have. All
// give the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace captionfx {

/// How a layer of one colour lies on the grid of a plane.
struct CoveragePlacement {
    uint32_t W00, W10, W01,
        W11;         ///< Weights of the samples above left, above, left and here; 16.16, sum at most 65356.
    uint32_t Alpha;  ///< Of the character, 1 to 255.
    uint32_t Color;  ///< Of the layer, alpha 0.
};

/// Rows of coverage are read by whole vectors: so many bytes behind a row's last must be there.
inline constexpr size_t kCoveragePadding = 64;

/// Rows are `count` pixels and need no alignment; what lies beyond is not written.
struct RowKernels {
    /// Places a row of a layer of one colour. Pixel i is made of upper[i - 1], upper[i], lower[i - 1] and lower[i]. A
    /// pixel of the target without alpha is 0.
    void (*PlaceCoverage)(uint32_t* target, const uint8_t* upper, const uint8_t* lower, size_t count,
                          const CoveragePlacement& placement);
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
