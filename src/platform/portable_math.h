// Float functions with the same bits on every system: computed in double and rounded once, since the float versions of
// C libraries differ in the last bit.
#pragma once

#include <cmath>

namespace captionfx {

inline constexpr float kPi = 3.1415927f;
inline constexpr double kPi64 = 3.141592653589793;

[[nodiscard]] inline float SinF(float radians) {
    return static_cast<float>(std::sin(static_cast<double>(radians)));
}
[[nodiscard]] inline float CosF(float radians) {
    return static_cast<float>(std::cos(static_cast<double>(radians)));
}
[[nodiscard]] inline float ExpF(float x) {
    return static_cast<float>(std::exp(static_cast<double>(x)));
}
[[nodiscard]] inline float Atan2F(float y, float x) {
    return static_cast<float>(std::atan2(static_cast<double>(y), static_cast<double>(x)));
}

}  // namespace captionfx
