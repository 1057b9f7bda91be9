// Arithmetic of whole-pixel rectangles.
#pragma once

#include <algorithm>
#include <cstdint>

#include "host/caption_fx.h"

namespace captionfx {

[[nodiscard]] constexpr bool IsEmpty(const TitleRect& r) {
    return r.left >= r.right || r.top >= r.bottom;
}

/// All zero where the two do not meet.
[[nodiscard]] constexpr TitleRect Intersection(const TitleRect& a, const TitleRect& b) {
    const TitleRect r{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                      std::min(a.bottom, b.bottom)};
    return IsEmpty(r) ? TitleRect{} : r;
}

/// The smallest rectangle around both; an empty one takes no part.
[[nodiscard]] constexpr TitleRect Union(const TitleRect& a, const TitleRect& b) {
    if (IsEmpty(a)) return IsEmpty(b) ? TitleRect{} : b;
    if (IsEmpty(b)) return a;
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right), std::max(a.bottom, b.bottom)};
}

/// Grown by `by` pixels on each side, empty or not. The coordinates must leave room for it.
[[nodiscard]] constexpr TitleRect Inflated(const TitleRect& r, int32_t by) {
    return {r.left - by, r.top - by, r.right + by, r.bottom + by};
}

}  // namespace captionfx
