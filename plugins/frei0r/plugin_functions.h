// The header of frei0r, whose functions have C linkage and are what a plugin exports, and the parameters.
#pragma once

extern "C" {
#include <frei0r.h>
}

namespace captionfx {

inline constexpr int kFileParameter = 0, kTimeScaleParameter = 1, kParameterCount = 2;

/// Bytes of pixels lie in memory as blue, green, red, alpha, which is how the library draws.
inline constexpr int kColorModel = F0R_COLOR_MODEL_BGRA8888;

}  // namespace captionfx
