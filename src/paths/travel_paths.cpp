#include "paths/travel_paths.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "paths/reveal_paths.h"
#include "platform/portable_math.h"

namespace captionfx {
namespace {

// How far a string must go to be off the canvas, at the edge named.
float WayOffTop(const PathFrame& f) {
    return (f.R.y - f.B.Top) + f.R.height;
}
float WayOffLeft(const PathFrame& f) {
    return (f.R.x - f.B.Left) + f.R.width;
}

/// In which order the characters of a solo run; longer strings repeat it.
constexpr std::array<uint8_t, 32> kSoloOrder = {3,  8, 26, 15, 1, 18, 7,  20, 12, 9,  21, 6,  23, 31, 28, 19,
                                                22, 4, 30, 11, 0, 13, 29, 27, 10, 16, 5,  25, 17, 2,  24, 14};

/// The eased share of its way that a character of a solo has run, while it runs: a run takes 100 of 131 units, the last
/// starts at 31. Before its turn it waits at (waitX, waitY), hidden; after it, it is at rest.
std::optional<float> SoloRun(const PathFrame& f, float waitX, float waitY, CharPlacement& out) {
    const float g = f.p * 131 - kSoloOrder[static_cast<size_t>(f.i) % kSoloOrder.size()];
    if (g >= 100) return std::nullopt;
    if (g >= 0) return EaseOut(g / 100);
    out.X = waitX;
    out.Y = waitY;
    Hide(out);
    return std::nullopt;
}

/// Cut toward zero to a whole number.
float Cut(float value) {
    return static_cast<float>(ToInt32(static_cast<double>(value)));
}

/// Characters of a windshield swing in one after the other, growing from nothing. Returns the eased share of the way.
float Swing(const PathFrame& f, CharPlacement& out) {
    const float u = EaseOut(Stagger(f.p, OrderOf(f), 0.6F));
    out.Y = (f.H + f.c.Top) * u - f.H;
    out.ScaleX = out.ScaleY = u;
    return u;
}

}  // namespace

// clang-format off
// The whole string, from beyond an edge of the canvas.
void SlideLeft (const PathFrame& f, CharPlacement& out) { out.X = EaseOut(f.p) * (f.R.x - f.B.Right)  + f.c.Left + (f.B.Right  - f.R.x); }
void SlideUp   (const PathFrame& f, CharPlacement& out) { out.Y = EaseOut(f.p) * (f.R.y - f.B.Bottom) + f.c.Top  + (f.B.Bottom - f.R.y); }
void SlideRight(const PathFrame& f, CharPlacement& out) { const float way = WayOffLeft(f); out.X = way * EaseOut(f.p) + f.c.Left - way; }
void SlideDown (const PathFrame& f, CharPlacement& out) { const float way = WayOffTop(f);  out.Y = way * EaseOut(f.p) + f.c.Top  - way; }

// All characters in one place, each of which stops when it has come to its own.
void HideDown (const PathFrame& f, CharPlacement& out) { out.Y = std::min((f.R.height + f.R.y - f.c.Height) * f.p, f.c.Top);  Fade(f, out); }
void HideRight(const PathFrame& f, CharPlacement& out) { out.X = std::min((f.R.width  + f.R.x - f.c.Width)  * f.p, f.c.Left); Fade(f, out); }
void HideUp   (const PathFrame& f, CharPlacement& out) { out.Y = std::max((f.R.y - f.H) * f.p + f.H, f.c.Top);  Fade(f, out); }
void HideLeft (const PathFrame& f, CharPlacement& out) { out.X = std::max((f.R.x - f.W) * f.p + f.W, f.c.Left); Fade(f, out); }

// The whole string, from just beyond one edge at 0 to just beyond the opposite one at 1.
void ScrollUp   (const PathFrame& f, CharPlacement& out) { const float D = f.B.Bottom - f.B.Top; out.Y = (f.B.Bottom - f.R.y) + f.c.Top - (D + f.R.height) * f.p; }
void ScrollDown (const PathFrame& f, CharPlacement& out) { const float D = f.B.Bottom - f.B.Top; out.Y = f.c.Top - WayOffTop(f) + (f.R.height + D) * f.p; }
void ScrollLeft (const PathFrame& f, CharPlacement& out) { const float D = f.B.Right - f.B.Left; out.X = (f.B.Right - f.R.x) + f.c.Left - (D + f.R.width) * f.p; }
void ScrollRight(const PathFrame& f, CharPlacement& out) { const float D = f.B.Right - f.B.Left; out.X = f.c.Left - WayOffLeft(f) + (f.R.width + D) * f.p; }
// clang-format on

void SoloDown(const PathFrame& f, CharPlacement& out) {
    const float way = WayOffTop(f);
    if (const auto u = SoloRun(f, f.R.x, -f.R.height, out)) out.Y = f.c.Top - way + way * *u;
}

void SoloUp(const PathFrame& f, CharPlacement& out) {
    const float way = f.B.Bottom - f.R.y;
    if (const auto u = SoloRun(f, f.R.x, f.H, out)) out.Y = (way + f.c.Top) - *u * way;
}

void SoloRight(const PathFrame& f, CharPlacement& out) {
    const float way = WayOffLeft(f);
    if (const auto u = SoloRun(f, -f.R.width, f.R.y, out)) out.X = *u * way + (f.c.Left - way);
}

void SoloLeft(const PathFrame& f, CharPlacement& out) {
    if (const auto u = SoloRun(f, f.W, f.R.y, out)) {
        out.X = *u * (f.R.x - f.B.Right) + ((f.B.Right - f.R.x) + f.c.Left);
    }
}

/// Lines climb. Each shows itself where the string began, and shrinks towards the middle of the canvas until it is
/// gone.
void ScrollNResize(const PathFrame& f, CharPlacement& out) {
    const float bottom = f.R.height + f.R.y;
    const float climbed = bottom * f.p, line = f.c.Top - f.R.y;
    float s = 1;
    if (climbed >= line) {
        s = 1 - Ratio(climbed - line, bottom);
        out.Alpha = s < 0.75F ? ClampedAlpha((s - 0.25F) * 255 * 2) : EdgeAlpha(climbed - line, f.c.Height);
    } else {
        Hide(out);
    }
    out.ScaleX = out.ScaleY = s;
    out.X = (f.W * 0.5F - f.c.Left) * (1 - s) + f.c.Left;
    out.Y = f.c.Top - climbed;
}

/// Characters wait beyond the right end of the string, shrink to their size as they appear there, and run to their
/// place. One without a width appears at once.
void Assembly(const PathFrame& f, CharPlacement& out) {
    const float d = (Ratio(f.first.Width, f.R.width) + 1) * ((1 - f.p) * f.R.width);
    if (d + f.c.Left - f.R.x > f.R.width) {
        const float beyond = Ratio(f.c.Left - f.R.x + d - f.R.width, f.R.width);
        const float t = f.c.Width != 0 ? std::clamp(beyond * (f.R.width / f.c.Width), 0.0F, 1.0F) : 1;
        out.X = f.R.width + f.R.x;
        out.ScaleX = out.ScaleY = t * 1.3F + 1;
        out.Alpha = WrappedAlpha((1 - t) * 255);
    } else {
        out.X = d + f.c.Left;
    }
}

/// Characters close up towards the middle of the string, from 4.3 times as far.
void Unite(const PathFrame& f, CharPlacement& out) {
    const float m = f.R.width * 0.5F + f.R.x;
    out.X = (f.c.Left - m) * ((1 - f.p) * 3.3000002F + 1) + m;
    Fade(f, out);
}

/// Characters walk to the left at half size, round a half circle at the left end of the string, and on to their place.
void March(const PathFrame& f, CharPlacement& out) {
    const auto place = [&](float centre, float scale) {
        out.X = centre - f.c.Width * 0.5F;
        out.ScaleX = out.ScaleY = scale;
    };
    const float r = f.W * 0.1F;
    const double arc = static_cast<double>(r) * kPi64;
    const double turnEnd = static_cast<double>(f.R.x) - arc;
    const auto travel = static_cast<float>(static_cast<double>(f.W * 1.5F) + arc);
    const float x = f.c.Left + f.c.Width * 0.5F - (1 - f.p) * travel;  // the centre, were the road straight
    if (x >= f.R.x) return place(x, 1);
    if (static_cast<double>(x) > turnEnd) {
        const float a = (f.R.x - x) / r;
        return place(f.R.x - SinF(a) * r, (CosF(a) + 1) * 0.5F * 0.5F + 0.5F);
    }
    place(static_cast<float>(static_cast<double>(f.R.x) - (static_cast<double>(x) - turnEnd)), 0.5F);
}

/// The text turns about a vertical axis through its middle, a quarter turn in each fifth of the progress.
void Flip(const PathFrame& f, CharPlacement& out) {
    const float axis = f.R.width * 0.5F + f.R.x, h = f.c.Width * 0.5F + f.c.Left;
    const float d = std::abs(axis - h), side = axis > h ? 1.0F : -1.0F;

    const int32_t quarter = ToInt32(static_cast<double>(f.p / 0.2F));
    const int32_t phase = quarter % 4;
    const float base = static_cast<float>(quarter) * 0.2F;
    const float u = phase % 2 == 0 ? base + 0.2F - f.p : f.p - base;
    const float off = d * 2 / 0.040000003F * 0.5F * u * u;  // d at 0.2
    const float depth = std::sqrt(d * d - (d - off) * (d - off));

    float x = h, z = 0;  // before 0 the phase is negative, and the text at rest
    if (phase >= 0) {
        const bool isMirrored = phase >= 2, isBehind = phase == 0 || phase == 3;
        x = h + side * (isMirrored ? d + d - off : off);
        z = (isBehind ? -side : side) * depth;
    }
    out.X = x - f.c.Width * 0.5F;
    out.ScaleX = out.ScaleY = 1 - Ratio(z * 1.2F, f.R.width);
    Fade(f, out);
}

void WindshieldLeft(const PathFrame& f, CharPlacement& out) {
    const float u = Swing(f, out);
    out.X = (f.c.Left - f.W) * u + f.W;
}

void WindshieldRight(const PathFrame& f, CharPlacement& out) {
    const float u = Swing(f, out);
    out.X = u * f.c.Left;
}

/// Characters bounce, less and less. What is left of the bounce at the end is taken off throughout.
void Wave(const PathFrame& f, CharPlacement& out) {
    const float height = f.first.Height * 3;
    const float t = Stagger(f.p, OrderOf(f), 0.7F);
    const auto bounce = [height](float at) {
        return static_cast<double>(ExpF(-4 * at) * height) * std::cos(4 * kPi64 * static_cast<double>(at));
    };
    out.Y = static_cast<float>(static_cast<double>(f.c.Top) - bounce(t) + bounce(1));
    out.Alpha = WrappedAlpha((1 - (1 - t) * (1 - t)) * 255);
}

/// Characters come from a circle around the canvas, neighbours from far apart: 13/16 of a half turn.
void Flocking(const PathFrame& f, CharPlacement& out) {
    const auto w = static_cast<double>(f.W), h = static_cast<double>(f.H);
    const float r = std::sqrt(static_cast<float>(w * w + h * h));
    const auto a = static_cast<float>(f.i * 2.552544031041707);
    const float startX = Cut(CosF(a) * r) + f.c.Left, startY = Cut(SinF(a) * r) + f.c.Top;
    const float u = EaseOut(f.p);
    out.X = (f.c.Left - startX) * u + startX;
    out.Y = (f.c.Top - startY) * u + startY;
}

}  // namespace captionfx
