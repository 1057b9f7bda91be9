#include "paths/rotation_paths.h"

#include <cmath>

#include "paths/path_turn.h"
#include "platform/portable_math.h"

namespace captionfx {
namespace {

constexpr float kFourTurns = 25.132742F;  // radians

void QuarterTurn(const PathFrame& f, float a, float rotationDeg, CharPlacement& out) {
    TurnWithString(f, a, out);
    out.Rotation = rotationDeg;
    out.Alpha = WrappedAlpha(f.p * 255);
}

/// How much of the whirl is done. The square lets it start slowly.
float Whirled(const PathFrame& f) {
    return f.p * f.p * kFourTurns / kFourTurns;
}

/// Turns and scales by `z` about the string's centre. The base point keeps to the circle; at the end the rotation is
/// four full turns, which draws like none.
void Whirl(const PathFrame& f, float z, CharPlacement& out) {
    const float a = f.p * f.p * kFourTurns;
    const Offset base = FromCentre(f, f.c.BaseX, f.c.BaseY);
    PlaceFromCentre(f, Turned({base.x * z, base.y * z}, a), f.c.BaseY - f.c.Top, out);
    out.ScaleX = out.ScaleY = z;
    out.Rotation = a * 180 / kPi;
    out.Alpha = WrappedAlpha(Whirled(f) * 255);
}

/// A character whose left edge has come to `x`, turned like a wheel that rolls to the place of rest. It rolls round a
/// point in the middle of its width, a third of its height above the base point.
void RollTo(const PathFrame& f, float x, CharPlacement& out) {
    const float a = f.c.Height > 0 ? (x - f.c.Left) / f.c.Height * 2 : (x - f.c.Left) * 0.5F;
    const float deg = a * 180 / kPi;
    const float half = f.c.Width * 0.5F, third = f.c.Height / 3;
    const double back = -static_cast<double>(deg) * kPi64 / 180;
    const auto c = static_cast<float>(std::cos(back)), s = static_cast<float>(std::sin(back));
    out.X = (half + x) - (c * half - s * third);
    out.Y = (c * third + s * half + f.c.Top) - third;
    out.Rotation = deg;
}

/// How far the rolling characters come from: the width of the canvas.
float RollLength(const PathFrame& f) {
    return f.B.Right - f.B.Left;
}

}  // namespace

// clang-format off
void RotateCCW(const PathFrame& f, CharPlacement& out) { QuarterTurn(f, (1 - f.p) * 0.5F * kPi, (f.p - 1) * -90, out); }
void RotateCW (const PathFrame& f, CharPlacement& out) { QuarterTurn(f, (f.p - 1) * 0.5F * kPi, (1 - f.p) * -90, out); }

void RotateInwards (const PathFrame& f, CharPlacement& out) { Whirl(f, (1 - Whirled(f)) * 9 + 1, out); }
void RotateOutwards(const PathFrame& f, CharPlacement& out) { Whirl(f, Whirled(f) * 0.9F + 0.1F, out); }
// clang-format on

void RollingLeft(const PathFrame& f, CharPlacement& out) {
    if (!(f.p > 0)) return Hide(out);
    const float t = Stagger(f.p, OrderOf(f), 0.9F), length = RollLength(f);
    RollTo(f, (length + f.c.Left) - length * t * (2 - t), out);
}

void RollingRight(const PathFrame& f, CharPlacement& out) {
    if (!(f.p > 0)) return Hide(out);
    const float t = Stagger(f.p, 1 - OrderOf(f), 0.9F), length = RollLength(f);
    RollTo(f, (f.c.Left - length) + length * t * (2 - t), out);
}

// Half a turn into place, and a bend on top of it that grows with the way to go. The farther out a character stands,
// the farther away it comes from.
void Swirl(const PathFrame& f, CharPlacement& out) {
    const float halfWidth = f.R.width * 0.5F, halfHeight = f.R.height * 0.5F;
    const float reach = std::sqrt(halfHeight * halfHeight + halfWidth * halfWidth);
    const Offset corner = FromCentre(f, f.c.Left, f.c.Top);
    const float distance = std::sqrt(corner.y * corner.y + corner.x * corner.x);
    const float left = 1 - f.p, charHalf = f.c.Width * 0.5F;

    float gap = (reach - charHalf) * left * left;
    if (distance >= charHalf) gap = Ratio(gap * distance, charHalf);
    const float r = gap + distance;
    const float bend = Ratio(r - distance, f.W) * 4;
    const auto a = static_cast<float>(static_cast<double>(bend) + static_cast<double>(left) * kPi64);
    Offset way{};
    if (distance > 0) {
        const Offset turned = Turned(corner, a);
        way = {.x = turned.x * (r / distance), .y = turned.y * (r / distance)};
    }
    out.X = halfWidth + f.R.x + way.x;
    out.Y = halfHeight + f.R.y + way.y;
    out.Rotation = (bend + left * kPi) * -180 / kPi;
    out.Alpha = WrappedAlpha(f.p * 255);
}

// Two half circles relative to the place at rest, which meet at half the canvas height below it.
void Spiral(const PathFrame& f, CharPlacement& out) {
    Offset way{};
    if (!(f.p > 0.5F)) {
        const float r = f.H * 0.5F, angle = f.p * 2 * kPi;
        way = {.x = -(SinF(angle) * r), .y = -(CosF(angle) * r)};
    } else if (f.p < 1) {
        const double r = static_cast<double>(f.H) * 0.25, angle = (static_cast<double>(f.p) - 0.5) * 2 * kPi64;
        way = {.x = static_cast<float>(std::sin(angle) * r), .y = static_cast<float>(std::cos(angle) * r + r)};
    }
    out.X = way.x + f.c.Left;
    out.Y = way.y + f.c.Top;
    out.Alpha = WrappedAlpha(f.p * 255);
}

}  // namespace captionfx
