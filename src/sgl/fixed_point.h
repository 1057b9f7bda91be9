// 32-bit integers in a number's place: 16.16 coordinates, colour sums, depths. Whatever leaves 32 bits keeps its low 32
// bits, and shifts to the right are arithmetic, so that no input can bring on undefined behaviour.
#pragma once

#include <concepts>
#include <cstdint>
#include <limits>

namespace sgl {

inline constexpr int32_t kOne16 = 65536;  // 1.0 in 16.16

/// Cuts toward zero; what does not fit (NaN, infinities, numbers beyond 32 bits) gives 0x80000000.
template <std::floating_point Float>
[[nodiscard]] constexpr int32_t ToInt32(Float value) {
    constexpr double kBeyond = 2147483648.0;
    const auto wide = static_cast<double>(value);
    return wide > -kBeyond - 1.0 && wide < kBeyond ? static_cast<int32_t>(value) : std::numeric_limits<int32_t>::min();
}

[[nodiscard]] constexpr int32_t Low32(int64_t value) {
    return static_cast<int32_t>(value);
}
[[nodiscard]] constexpr int32_t Add(int32_t a, int32_t b) {
    return Low32(int64_t{a} + b);
}
[[nodiscard]] constexpr int32_t Subtract(int32_t a, int32_t b) {
    return Low32(int64_t{a} - b);
}
[[nodiscard]] constexpr int32_t Multiply(int32_t a, int32_t b) {
    return Low32(int64_t{a} * b);
}
/// The product of which at least one factor is 16.16, in the unit of the other.
[[nodiscard]] constexpr int32_t Multiply16(int32_t a, int32_t b) {
    return Low32(int64_t{a} * b >> 16);
}

}  // namespace sgl
