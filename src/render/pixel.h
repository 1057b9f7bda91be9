// Pixels of 32 bits: blue in the lowest byte, then green, red, alpha; in AYUV frames V, U, Y, alpha.
#pragma once

#include <cstdint>

namespace captionfx {

inline constexpr uint32_t kColorMask = 0x00FFFFFF;
inline constexpr uint32_t kAlphaShift = 24;
inline constexpr uint32_t kColorShifts[3] = {0, 8, 16};

[[nodiscard]] constexpr uint32_t ChannelOf(uint32_t pixel, uint32_t shift) {
    return (pixel >> shift) & 0xFFU;
}
[[nodiscard]] constexpr uint32_t AlphaOf(uint32_t pixel) {
    return pixel >> kAlphaShift;
}
[[nodiscard]] constexpr uint32_t WithAlpha(uint32_t pixel, uint32_t alpha) {
    return (pixel & kColorMask) | alpha << kAlphaShift;
}

/// The colour of a pixel, alpha 0, from a style's colour, which holds its first component in the lowest byte.
[[nodiscard]] constexpr uint32_t PixelOfStyleColor(uint32_t color) {
    return ChannelOf(color, 0) << 16U | ChannelOf(color, 8) << 8U | ChannelOf(color, 16);
}

/// value / 255, rounded to nearest; exact for all products of two bytes.
[[nodiscard]] constexpr uint32_t Div255(uint32_t value) {
    const uint32_t biased = value + 128;
    return (biased + (biased >> 8U)) >> 8U;
}

}  // namespace captionfx
