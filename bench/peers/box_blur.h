// A blur of 8-bit coverage by three boxes, which comes close to a bell curve.
#pragma once

#include <cstddef>
#include <cstdint>

namespace captionfx::peers {

/// Blurs rows of `stride` bytes in place. Beyond the edges all is 0.
void BlurCoverage(uint8_t* bytes, int32_t width, int32_t height, ptrdiff_t stride, double sigmaPx);

}  // namespace captionfx::peers
