// Floats in an integer's place. They come from hosts and files and may be anything.
#pragma once

#include <cstdint>
#include <limits>

namespace captionfx {

/// Cuts toward zero; what does not fit (NaN, infinities, numbers beyond 32 bits) gives 0x80000000.
[[nodiscard]] constexpr int32_t ToInt32(double value) {
    constexpr double kBeyond = 2147483648.0;
    return value > -kBeyond - 1.0 && value < kBeyond ? static_cast<int32_t>(value)
                                                     : std::numeric_limits<int32_t>::min();
}

/// The low 8 bits of the value cut toward zero.
[[nodiscard]] constexpr uint8_t ToLowByte(double value) {
    return static_cast<uint8_t>(ToInt32(value));
}

}  // namespace captionfx
