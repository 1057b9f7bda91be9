// Turns about the centre of the string, which several families share.
#pragma once

#include "paths/path_formula.h"
#include "platform/portable_math.h"

namespace captionfx {

/// A distance in pixels, right and down, such as that from the string's centre.
struct Offset {
    float x, y;
};

/// Where a point of the string lies from its centre.
[[nodiscard]] inline Offset FromCentre(const PathFrame& f, float x, float y) {
    return {x - f.R.x - f.R.width * 0.5F, y - f.R.y - f.R.height * 0.5F};
}

/// `d` turned clockwise by `a`, radians.
[[nodiscard]] inline Offset Turned(Offset d, float a) {
    const float c = CosF(a), s = SinF(a);
    return {c * d.x - s * d.y, c * d.y + s * d.x};
}

/// Puts the point that lies `below` pixels under the character's upper left corner at `d` from the centre.
inline void PlaceFromCentre(const PathFrame& f, Offset d, float below, CharPlacement& out) {
    out.X = d.x + f.R.width * 0.5F + f.R.x;
    out.Y = d.y + f.R.height * 0.5F + f.R.y - below;
}

/// Turns the character's place with the string by `a`, radians. The bottom left corner keeps to the circle.
inline void TurnWithString(const PathFrame& f, float a, CharPlacement& out) {
    const Offset corner{.x = f.c.Left - f.R.x - f.R.width * 0.5F,
                        .y = f.c.Top - f.R.y + f.c.Height - f.R.height * 0.5F};
    PlaceFromCentre(f, Turned(corner, a), f.c.Height, out);
}

}  // namespace captionfx
