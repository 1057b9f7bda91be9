#include "paths/two_pass_paths.h"

#include <algorithm>

#include "paths/path_turn.h"
#include "platform/portable_math.h"

namespace captionfx {
namespace {

constexpr int32_t kGhost = 0;  // the pass that is drawn first; the other is the character itself

bool IsPastHalf(const PathFrame& f) {
    return f.p > 0.5F;
}

uint8_t ComingAlpha(const PathFrame& f) {
    return WrappedAlpha(f.p * 255 * 2);
}

uint8_t LeavingAlpha(const PathFrame& f) {
    return WrappedAlpha((1 - f.p) * 255 * 1.5F);
}

/// Up to the half the character comes in, `v` from its place on one axis; from there on it stands, and a ghost goes on.
void Sweep(const PathFrame& f, float v, float& coordinate, CharPlacement& out) {
    const bool isGhost = f.pass == kGhost;
    const bool isMoving = isGhost == IsPastHalf(f);
    if (isMoving) coordinate += v;
    if (isGhost) {
        out.Alpha = isMoving ? LeavingAlpha(f) : 0;
    } else {
        out.Alpha = isMoving ? ComingAlpha(f) : 255;
    }
}

/// The ghost turns through the place of rest; the character appears there at the half, at once.
void HalfTurn(const PathFrame& f, float a, float rotationDeg, CharPlacement& out) {
    if (f.pass != kGhost) {
        out.Alpha = IsPastHalf(f) ? 255 : 0;
        return;
    }
    TurnWithString(f, a, out);
    out.Rotation = rotationDeg;
    out.Alpha = IsPastHalf(f) ? LeavingAlpha(f) : ComingAlpha(f);
}

/// Two images that meet, both off their place by parts of 3/4 of the character's `extent`. The extra pixel of the one
/// has no twin in the other.
void DoubleVision(const PathFrame& f, float extent, float& coordinate, CharPlacement& out) {
    if (!(f.p > 0)) return Hide(out);
    const float t = Stagger(f.p, OrderOf(f), Ratio(1, f.n) * std::min(2.0F, f.n));
    const float v = extent * 0.75F * (1 - t);
    if (f.pass == kGhost) {
        coordinate += v * 0.5F;
        out.Alpha = WrappedAlpha(t * 255);
    } else {
        coordinate -= (v + 1) * 0.5F;
        out.Alpha = t < 1 ? WrappedAlpha(t * 255) : 0;
    }
}

}  // namespace

// clang-format off
void TranceRight(const PathFrame& f, CharPlacement& out) { Sweep(f, f.c.Width * 5 * (f.p * 2 - 1),    out.X, out); }
void TranceLeft (const PathFrame& f, CharPlacement& out) { Sweep(f, (1 - f.p * 2) * (f.c.Width * 5),  out.X, out); }
void TranceDown (const PathFrame& f, CharPlacement& out) { Sweep(f, f.c.Height * 2 * (f.p * 2 - 1),   out.Y, out); }
void TranceUp   (const PathFrame& f, CharPlacement& out) { Sweep(f, (1 - f.p * 2) * (f.c.Height * 2), out.Y, out); }

void TranceCCW(const PathFrame& f, CharPlacement& out) { HalfTurn(f, (0.5F - f.p) * kPi, (f.p - 0.5F) * -180, out); }
void TranceCW (const PathFrame& f, CharPlacement& out) { HalfTurn(f, (f.p - 0.5F) * kPi, (0.5F - f.p) * -180, out); }

void DoubleVisionH(const PathFrame& f, CharPlacement& out) { DoubleVision(f, f.c.Width,  out.X, out); }
void DoubleVisionV(const PathFrame& f, CharPlacement& out) { DoubleVision(f, f.c.Height, out.Y, out); }
// clang-format on

// The ghost grows out of the string's centre, past full size, and fades; the character appears when it is full grown.
void TranceCenter(const PathFrame& f, CharPlacement& out) {
    const float t = Stagger(f.p, OrderOf(f), 0.3F) * 1.6F;
    if (f.pass != kGhost) {
        out.Alpha = t > 1 ? 255 : 0;
        return;
    }
    const float centreX = f.R.width * 0.5F + f.R.x, centreY = f.R.height * 0.5F + f.R.y;
    out.X = (f.c.Width * 0.5F + f.c.Left - centreX) * t + centreX - f.c.Width * 0.5F;
    out.Y = (f.c.Top - centreY + f.c.Height * 1.5F) * t + centreY - f.c.Height * 1.5F;
    out.ScaleX = out.ScaleY = t;
    out.Alpha = t > 1 ? WrappedAlpha((1.6F - t) * 255 / 0.6F * 0.75F) : WrappedAlpha(t * 255);
}

}  // namespace captionfx
