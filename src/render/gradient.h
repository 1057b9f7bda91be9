// The fill of layers: two colours between the corners of a rectangle, in 12-bit fixed point.
#pragma once

#include <cstdint>

namespace captionfx {

/// Writes the colours of a picture of zeros and leaves alpha alone. `color1` and `color2` are pixel colours; `type` is
/// GradType of a style: 1 top to bottom, 2 right to left, 3 left to right, 4 to 7 diagonal, others bottom to top. In a
/// picture of one row the ends keep their colour, 0, and so the row has it too: the walk down the columns, which writes
/// them, has no step to take. Returns 1, or 0 for null pixels or a size below 1.
int32_t FillGradient(uint32_t* pixels, int32_t width, int32_t height, uint32_t color1, uint32_t color2, int32_t type);

}  // namespace captionfx
