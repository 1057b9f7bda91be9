// What happens to one pixel, exactly: the definitions that plain loops apply one by one and vectors must equal.
#pragma once

#include <algorithm>

#include "render/pixel.h"

namespace captionfx {

/// A pixel whose three colour channels are channel(shift), at most 255.
template <class Channel>
[[nodiscard]] constexpr uint32_t ColorOf(Channel channel) {
    uint32_t pixel = 0;
    for (const uint32_t shift : kColorShifts) pixel |= std::min<uint32_t>(channel(shift), 255U) << shift;
    return pixel;
}

// Over, with straight alpha sa and da: the result's alpha is A / 255 with A = 255 sa + da (255 - sa), and its colour is
// N / A, N = 255 sa sc + da (255 - sa) dc. All is kept whole until the one division. A premultiplied source channel
// stands for sa sc / 255, so that 65025 of it take the place of 255 sa sc.
template <bool kPremultiplied>
[[nodiscard]] constexpr uint32_t OverStraight(uint32_t source, uint32_t destination) {
    const uint32_t sa = AlphaOf(source), da = AlphaOf(destination);
    const uint32_t alpha255 = 255 * sa + da * (255 - sa);
    const uint32_t sourceWeight = kPremultiplied ? 65025 : 255 * sa;
    if (sa == 0 && (!kPremultiplied || source == 0)) return destination;
    if (alpha255 == 0) return destination;
    const uint32_t color = ColorOf([&](uint32_t shift) {
        const uint32_t numerator =
            sourceWeight * ChannelOf(source, shift) + da * (255 - sa) * ChannelOf(destination, shift);
        return (numerator + alpha255 / 2) / alpha255;
    });
    return WithAlpha(color, Div255(alpha255));
}

/// Over, with premultiplied source and destination.
[[nodiscard]] constexpr uint32_t OverPremultiplied(uint32_t source, uint32_t destination) {
    const uint32_t left = 255 - AlphaOf(source);
    const auto over = [&](uint32_t shift) {
        return ChannelOf(source, shift) + Div255(ChannelOf(destination, shift) * left);
    };
    return WithAlpha(ColorOf(over), over(kAlphaShift));
}

[[nodiscard]] constexpr uint32_t Premultiplied(uint32_t pixel) {
    const uint32_t alpha = AlphaOf(pixel);
    return WithAlpha(ColorOf([&](uint32_t shift) { return Div255(ChannelOf(pixel, shift) * alpha); }), alpha);
}

[[nodiscard]] constexpr uint32_t Unpremultiplied(uint32_t pixel) {
    const uint32_t alpha = AlphaOf(pixel);
    if (alpha == 0) return 0;
    return WithAlpha(ColorOf([&](uint32_t shift) { return (255 * ChannelOf(pixel, shift) + alpha / 2) / alpha; }),
                     alpha);
}

/// A pixel of the face plane over one of the border plane.
[[nodiscard]] constexpr uint32_t FaceOverBorder(uint32_t face, uint32_t border) {
    const uint32_t fa = AlphaOf(face), ba = AlphaOf(border);
    if (fa == 0 && ba != 0) return border;
    if (fa == 255 || ba == 0) return face;
    const uint32_t a = std::min(fa + ba, 255U);
    uint32_t merged = a << kAlphaShift;
    for (const uint32_t shift : kColorShifts) {
        const uint32_t channel = ChannelOf(face, shift) + (256 - fa) * ChannelOf(border, shift) / ba;
        merged |= ((channel * a >> 8U) & 0xFFU) << shift;
    }
    return merged;
}

/// Lays a placed pixel of coverage `a`, its colour multiplied by it, over a plane's. A plane's pixel without alpha is
/// 0.
[[nodiscard]] constexpr uint32_t PlacedOver(uint32_t target, uint32_t color, uint32_t a) {
    if (a == 255 || AlphaOf(target) == 0) return WithAlpha(color, a);
    const uint32_t t = ((255 - AlphaOf(target)) * (256 - a)) >> 8U;
    uint32_t result = WithAlpha(target, 255 - t);
    if (t == 255) return result;
    result &= ~kColorMask;
    for (const uint32_t shift : kColorShifts) {
        const uint32_t channel = ((ChannelOf(target, shift) * (256 - a)) >> 8U) + ChannelOf(color, shift);
        result |= std::min(channel, 255U) << shift;
    }
    return result;
}

/// A colour multiplied by a coverage the way that placement does it.
[[nodiscard]] constexpr uint32_t ColorTimesCoverage(uint32_t color, uint32_t a) {
    return ColorOf([&](uint32_t shift) { return ChannelOf(color, shift) * (a + 1) >> 8U; });
}

}  // namespace captionfx
