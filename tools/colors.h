// Colours as the library takes them: in styles red is in the lowest byte, in pixels blue.
#pragma once

#include <cstdint>

#include "tools/argument_values.h"

namespace captionfx {

[[nodiscard]] constexpr uint32_t StyleColor(Rgb color) {
    return uint32_t{color.blue} << 16 | uint32_t{color.green} << 8 | color.red;
}

[[nodiscard]] constexpr uint32_t OpaquePixel(Rgb color) {
    return 0xFF000000 | uint32_t{color.red} << 16 | uint32_t{color.green} << 8 | color.blue;
}

}  // namespace captionfx
