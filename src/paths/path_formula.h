// Character effects as formulas. What a formula may read, in the letters that this folder uses:
//
//   p progress   i character index   n character count, N the same as an integer
//   c the character's box   first the box of character 0   R string rectangle
//   W, H canvas size   B canvas as seen from the string   pass 0 or 1
//
// `out` comes in at rest and fully shown; a formula writes what differs. All arithmetic is in 32-bit floats, in the
// order written, unless a step says otherwise.
#pragma once

#include <algorithm>

#include "paths/path_base.h"
#include "platform/conversions.h"

namespace captionfx {

struct PathFrame {
    float p;
    int32_t i;
    float n;
    int32_t N;
    const CharBox& c;
    const CharBox& first;
    const TitleRectF& R;
    float W, H;
    const PathCanvasBounds& B;
    int32_t pass;
};

using PathFormula = void(const PathFrame& f, CharPlacement& out);

/// An effect that is one formula.
template <PathFormula* Formula>
class CCharacterPath : public CPathBase {
public:
    int32_t CalcCharacter(int32_t pass, int32_t index, float progress, CharPlacement* placement) final {
        CPathBase::CalcCharacter(pass, index, progress, placement);
        const PathFrame frame{.p = progress,
                              .i = index,
                              .n = static_cast<float>(charCount_),
                              .N = charCount_,
                              .c = boxes_[static_cast<size_t>(index)],
                              .first = boxes_.front(),
                              .R = stringRect_,
                              .W = static_cast<float>(canvasWidth_),
                              .H = static_cast<float>(canvasHeight_),
                              .B = bounds_,
                              .pass = pass};
        Formula(frame, *placement);
        return 1;
    }
};

inline void Hide(CharPlacement& out) {
    out.Alpha = 0;
}

/// A formula that is used for progress above 0; up to there a character is at rest and hidden.
template <PathFormula* Formula>
void WhenStarted(const PathFrame& f, CharPlacement& out) {
    if (!(f.p > 0)) return Hide(out);
    Formula(f, out);
}

template <PathFormula* Formula>
using CStartingPath = CCharacterPath<&WhenStarted<Formula>>;

/// a / b, and 0 where b is 0: strings and characters may have no extent, and so may the canvas.
[[nodiscard]] constexpr float Ratio(float a, float b) {
    return b != 0 ? a / b : 0;
}

/// Where the character stands among all, from 0 to below 1.
[[nodiscard]] inline float OrderOf(const PathFrame& f) {
    return Ratio(static_cast<float>(f.i), f.n);
}

/// The progress of one character's own, 0 to 1, when the characters start one after the other by `order`, 0 to 1, and
/// each takes `span` of the whole.
[[nodiscard]] constexpr float Stagger(float p, float order, float span) {
    return std::clamp(Ratio(p - order * (1 - span), span), 0.0F, 1.0F);
}

/// Fast at first, slow in the end, 0 to 1 for 0 to 1.
[[nodiscard]] constexpr float EaseOut(float u) {
    return (2 - u) * u;
}

/// An alpha that is cut, its low 8 bits kept: beyond 0..255 it wraps.
[[nodiscard]] constexpr uint8_t WrappedAlpha(float value) {
    return ToLowByte(static_cast<double>(value));
}

/// An alpha that is cut and kept in 0..255.
[[nodiscard]] constexpr uint8_t ClampedAlpha(float value) {
    return WrappedAlpha(std::clamp(value, 0.0F, 255.0F));
}

/// The alpha of a character that an edge has entered by `v` of its `extent`, pixels: 0 ahead of the edge, 255 behind.
/// Without an extent it ramps over one pixel.
[[nodiscard]] constexpr uint8_t EdgeAlpha(float v, float extent) {
    return ClampedAlpha(extent > 0 ? v * 255 / extent : v * 255);
}

}  // namespace captionfx
