// The blur of layers: separable boxes of any radius, whole or not, colour weighed by alpha.
#pragma once

#include <cstddef>
#include <cstdint>

#include "render/kernels/blur_kernels.h"

namespace captionfx {

enum class BlurKind {
    kOneBox,
    kThreeBoxes,  ///< A close stand-in for a Gaussian.
};

/// Blurs straight-alpha pixels in place, rows of `width` pixels. Beyond the picture all is transparent. No pixel
/// reaches farther than `radius` rounded up. A radius that is not above 0, or not a number, changes nothing; so does
/// memory that runs out.
void BlurLayer(uint32_t* pixels, int32_t width, int32_t height, float radius, BlurKind kind) noexcept;

/// Blurs a plane of alphas in place, to the alphas that BlurLayer gives a picture of one colour. Rows of `width` bytes,
/// `pitch` bytes apart; otherwise as BlurLayer.
void BlurCoverage(uint8_t* coverage, int32_t width, int32_t height, std::ptrdiff_t pitch, float radius,
                  BlurKind kind) noexcept;

/// The same by vectors of a width that a test chooses; with null, and for boxes too wide for vectors, row by row.
void BlurCoverageWith(uint8_t* coverage, int32_t width, int32_t height, std::ptrdiff_t pitch, float radius,
                      BlurKind kind, CoverageBlur* blur);

/// BlurLayer without the short cut for pictures of one colour; tests hold the two to each other.
void BlurLayerPlain(uint32_t* pixels, int32_t width, int32_t height, float radius, BlurKind kind);

}  // namespace captionfx
