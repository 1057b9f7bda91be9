// The header of frei0r, whose functions have C linkage and are what a plugin exports, and the parameters.
#pragma once

extern "C" {
#include <frei0r.h>
}

namespace captionfx {

inline constexpr int kFileParameter = 0, kTimeScaleParameter = 1, kParameterCount = 2;

/// What one of our plugins tells of itself. Its pixels lie in memory as blue, green, red, alpha, which is how the
/// library draws.
[[nodiscard]] f0r_plugin_info_t Description(const char* name, int type, const char* explanation);

}  // namespace captionfx
