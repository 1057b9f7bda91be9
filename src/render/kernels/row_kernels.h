// The row loops that a frame spends its time in, as plain code and as vectors of the widths that processors have. All
// give the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "render/kernels/coverage_placement.h"

namespace captionfx {

/// Rows are `count` pixels and need no alignment; what lies beyond is not written.
struct RowKernels {
    /// Places rows of a layer of one colour, `pitch` pixels apart. A pixel of the target without alpha is 0.
    void (*PlaceCoverage)(uint32_t* target, std::ptrdiff_t pitch, const CoverageRows& rows,
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
