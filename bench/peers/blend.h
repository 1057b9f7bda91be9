// Blending of coverage in one colour onto opaque pixels: what a host of a library that yields bitmaps has to do.
#pragma once

#include <cstddef>
#include <cstdint>

namespace captionfx::peers {

/// Coverage of 8 bits, rows of `stride` bytes.
struct Coverage {
    const uint8_t* bytes;
    int32_t width, height;
    ptrdiff_t stride;
};

/// Blends `color` (blue in the lowest byte) times `alpha` (0 to 255) times the coverage onto pixels of `pixelStride`
/// words a row. Alpha of the pixels stays 255.
void BlendCoverage(uint32_t* pixels, ptrdiff_t pixelStride, const Coverage& coverage, uint32_t color, uint32_t alpha);

}  // namespace captionfx::peers
