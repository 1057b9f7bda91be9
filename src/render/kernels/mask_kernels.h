// The row loops over masks, one byte a pixel, as plain code and as vectors of the widths that processors have. All give
// the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "render/coverage_layer.h"

namespace captionfx {

/// Rows are `count` bytes and need no alignment; what lies beyond is neither read nor written. `out` and `mask` may be
/// the same row.
struct MaskKernels {
    /// out = mask * (alpha + 1) / 256, alpha from 0 to 255.
    void (*ScaleMask)(uint8_t* out, const uint8_t* mask, size_t count, uint32_t alpha);
    /// out = max(out, mask * (alpha + 1) / 256), alpha from 0 to 255.
    void (*StampMax)(uint8_t* out, const uint8_t* mask, size_t count, uint32_t alpha);
    /// Gray levels to coverage: out = mask * factor - 1, its low byte, and 0 of 0. A factor from 1 to 256.
    void (*CoverageOfLevels)(uint8_t* out, const uint8_t* mask, size_t count, uint32_t factor);
    /// out = out - mask, which wraps.
    void (*TakeMask)(uint8_t* out, const uint8_t* mask, size_t count);
    /// out = min(out + mask, 255).
    void (*AddMask)(uint8_t* out, const uint8_t* mask, size_t count);
    /// What of a row is not 0. Around it lie CoverageLayer::kPadding zeros on both sides.
    ColumnSpan (*FindSpan)(const uint8_t* row, int32_t width);
};

/// The definition.
[[nodiscard]] const MaskKernels& PlainMaskKernels();

/// The widest that this processor has.
[[nodiscard]] const MaskKernels& BestMaskKernels();

/// Those of all vector widths that this processor has, for tests.
[[nodiscard]] std::vector<const MaskKernels*> VectorMaskKernels();

}  // namespace captionfx
