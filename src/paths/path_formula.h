// Character effects as formulas. What a formula may read, in the letters that this folder uses:
//
//   p progress   i character index   n character count   c the character's box
//   R string rectangle   W, H canvas size   B canvas as seen from the string   pass 0 or 1
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
    const CharBox& c;
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
                              .c = boxes_[static_cast<size_t>(index)],
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

/// a / b, and 0 where b is 0: strings and characters may have no extent, and so may the canvas.
[[nodiscard]] constexpr float Ratio(float a, float b) {
    return b != 0 ? a / b : 0;
}

/// Where the character stands among all, from 0 to below 1.
[[nodiscard]] inline float OrderOf(const PathFrame& f) {
    return static_cast<float>(f.i) / f.n;
}

/// The progress of one character's own, 0 to 1, when the characters start one after the other by `order`, 0 to 1, and
/// each takes `span` of the whole.
[[nodiscard]] constexpr float Stagger(float p, float order, float span) {
    const float own = (p - order * (1 - span)) / span;
    return own < 0 ? 0 : own > 1 ? 1 : own;
}

/// An alpha that is cut, its low 8 bits kept: beyond 0..255 it wraps.
[[nodiscard]] constexpr uint8_t WrappedAlpha(float value) {
    return ToLowByte(static_cast<double>(value));
}

}  // namespace captionfx
