// Box blur of 32-bit pixels: a sliding-window mean whose cost does not depend on the radius.
#pragma once

#include <cstdint>

namespace KVTImageUtility {

/// Writes the blur of `source` to `destination`; pitches in bytes. Alpha is the mean over the part of the window that
/// lies in the image, colour the mean over those of its pixels that have alpha, so that the colour of transparent
/// pixels cannot bleed. A radius below 1, or a null pointer, leaves the destination untouched; a radius that does not
/// fit is cut to (smaller side - 1) / 2. Images of up to 2^24 pixels a window fit the sums.
///
/// With `level` below 3 the plain form runs, otherwise one whose column sums are vectors; the bytes are the same.
/// Returns 0.
int32_t BoxBlurPlane(uint32_t level, uint8_t* destination, const uint8_t* source, int32_t width, int32_t height,
                     int32_t destinationPitch, int32_t sourcePitch, int32_t radius);

}  // namespace KVTImageUtility
