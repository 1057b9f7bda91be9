// The loops that draw a string's tile: layers of one colour are placed in planes of single channels, and the three
// planes become pixels. As plain code and as vectors of the widths that processors have; all give the same bytes.
#pragma once

#include <vector>

#include "render/kernels/channel_planes.h"
#include "render/kernels/row_kernels.h"

namespace captionfx {

/// Planes have kTileColumns columns at most, and behind each row kPixelPadding numbers that may be read, and
/// overwritten with anything.
struct ChannelKernels {
    /// Places rows of a layer whose colour the plane was laid out for. May write behind rows.Right.
    void (*Place)(const ChannelPlane& plane, const CoverageRows& rows, const CoveragePlacement& placement);
    /// The coverage of rows that are placed, `pitch` bytes apart; what is 0 need not be written. kPixelPadding bytes
    /// behind each row are 0 and stay so.
    void (*Resample)(uint8_t* out, size_t pitch, const CoverageRows& rows, const CoveragePlacement& placement);
    /// Merges the planes, the face uppermost, composites them onto `count` columns of `rows` rows, which are `pitch`
    /// pixels apart and have straight alpha, and leaves the planes 0.
    void (*FinishStraight)(uint32_t* destination, std::ptrdiff_t pitch, const ChannelPlanes& planes, int32_t rows,
                           int32_t count);
    /// The same for a destination of colours multiplied by alpha.
    void (*FinishPremultiplied)(uint32_t* destination, std::ptrdiff_t pitch, const ChannelPlanes& planes, int32_t rows,
                                int32_t count);
    /// The merged pixels themselves.
    void (*Merge)(uint32_t* image, std::ptrdiff_t pitch, const ChannelPlanes& planes, int32_t rows, int32_t count);
};

/// The definition.
[[nodiscard]] const ChannelKernels& PlainChannelKernels();

/// The widest that this processor has.
[[nodiscard]] const ChannelKernels& BestChannelKernels();

/// Those of all vector widths that this processor has, for tests.
[[nodiscard]] std::vector<const ChannelKernels*> VectorChannelKernels();

}  // namespace captionfx
