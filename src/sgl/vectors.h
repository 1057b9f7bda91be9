// Three floats, and sine and cosine for them. Sums run from left to right.
#pragma once

#include <cmath>

namespace sgl {

struct Vec3 {
    float x, y, z;
};

[[nodiscard]] constexpr Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
[[nodiscard]] constexpr Vec3 operator*(const Vec3& a, float f) {
    return {a.x * f, a.y * f, a.z * f};
}
[[nodiscard]] constexpr Vec3 operator/(const Vec3& a, float f) {
    return {a.x / f, a.y / f, a.z / f};
}
[[nodiscard]] constexpr float Dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
[[nodiscard]] constexpr Vec3 Cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
/// q / sqrt(q) by the reciprocal root, so that the last bit is not always that of sqrt(q).
[[nodiscard]] inline float Length(const Vec3& a) {
    const float q = Dot(a, a);
    return q == 0 ? 0.0f : q * (1.0f / std::sqrt(q));
}

inline constexpr float kPi = 3.1415927f;

/// Computed in double and rounded once: the float versions of C libraries differ in the last bit.
[[nodiscard]] inline float SinF(float radians) {
    return static_cast<float>(std::sin(static_cast<double>(radians)));
}
[[nodiscard]] inline float CosF(float radians) {
    return static_cast<float>(std::cos(static_cast<double>(radians)));
}

}  // namespace sgl
