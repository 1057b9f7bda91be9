// The row loops over masks, one byte a pixel, as plain code and as vectors of the widths that processors have. All give
// the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "render/coverage_layer.h"

namespace captionfx {

/// Rows of a mask and where it is laid upon another; both may be the same.
struct MaskRows {
    uint8_t* Out;
    ptrdiff_t OutPitch;
    const uint8_t* Mask;
    ptrdiff_t MaskPitch;
    size_t Width;
    int32_t Height;
};

/// Rows need no alignment; what lies beyond their width is neither read nor written.
struct MaskKernels {
    /// out = mask * (alpha + 1) / 256, alpha from 0 to 255.
    void (*ScaleMask)(const MaskRows& rows, uint32_t alpha);
    /// out = max(out, mask * (alpha + 1) / 256), alpha from 0 to 255.
    void (*StampMax)(const MaskRows& rows, uint32_t alpha);
    /// Gray levels to coverage: out = mask * factor - 1, its low byte, and 0 of 0. A factor from 1 to 256.
    void (*CoverageOfLevels)(const MaskRows& rows, uint32_t factor);
    /// out = out - mask, which wraps.
    void (*TakeMask)(const MaskRows& rows);
    /// out = min(out + mask, 255).
    void (*AddMask)(const MaskRows& rows);
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
