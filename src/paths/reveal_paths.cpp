#include "paths/reveal_paths.h"

#include <algorithm>
#include <cmath>

#include "paths/path_random.h"
#include "platform/portable_math.h"

namespace captionfx {
namespace {

/// How far two edges that leave the middle line of a string for its ends have entered a character, which starts at `d`
/// in the string. One that straddles the middle line is entered from both sides at once.
float EnteredFromMiddle(float p, float d, float extent, float stringExtent) {
    const float half = stringExtent * 0.5F;
    if (d >= half) return (p + 1) * half - d;
    if (d + extent <= half) return d + extent - (1 - p) * half;
    return stringExtent * p;
}

/// A place in the order of characters, 0 to 1, that a random number decides; one is drawn on each call.
float RandomOrder(const PathFrame& f) {
    const int32_t random = NextPathRandom();
    return Ratio(static_cast<float>(f.N != 0 ? random % f.N : 0), f.n);
}

using ScaleOverTime = float(float t);

float FullSize(float /*t*/) {
    return 1;
}
float FromNothing(float t) {
    return t;
}
float FromLarge(float t) {
    return (1 - t) * 1.3F + 1;
}

/// Characters pop up one after the other.
void Pop(const PathFrame& f, ScaleOverTime* scale, CharPlacement& out) {
    const float t = Stagger(f.p, OrderOf(f), std::min(Ratio(1.4F, f.n), 1.0F));
    out.ScaleX = out.ScaleY = scale(t);
    out.Alpha = WrappedAlpha(t * 255);
}

/// As above, the distance from the middle of the string scaled too.
void PopAboutMiddle(const PathFrame& f, ScaleOverTime* scale, CharPlacement& out) {
    Pop(f, scale, out);
    const float mx = f.R.width * 0.5F + f.R.x, my = f.R.height * 0.5F + f.R.y;
    out.X = (f.c.Left - mx) * out.ScaleX + mx;
    out.Y = (f.c.Top - my) * out.ScaleY + my;
}

/// Characters flash up, vanish and come again to stay. The sine and the product are 64 bits wide.
void Sparkle(const PathFrame& f, float order, CharPlacement& out) {
    const float t = Stagger(f.p, order, 0.6F);
    const double flashes = std::sin(static_cast<double>(t * 3 - 0.5F) * kPi64) + 1;
    const float rise = 1 - (1 - t) * (1 - t);
    const float v = std::max(static_cast<float>(flashes * static_cast<double>(rise) * 0.5), 0.0F);
    out.ScaleX = out.ScaleY = v;
    out.Alpha = WrappedAlpha(v * 255);
}

}  // namespace

// clang-format off
void WipeRight(const PathFrame& f, CharPlacement& out) { out.Alpha = EdgeAlpha(f.p * f.R.width  - (f.c.Left - f.R.x), f.c.Width);  }
void WipeDown (const PathFrame& f, CharPlacement& out) { out.Alpha = EdgeAlpha(f.p * f.R.height - (f.c.Top  - f.R.y), f.c.Height); }
void WipeLeft (const PathFrame& f, CharPlacement& out) { out.Alpha = EdgeAlpha((f.c.Left - f.R.x) + f.c.Width  - (1 - f.p) * f.R.width,  f.c.Width);  }
void WipeUp   (const PathFrame& f, CharPlacement& out) { out.Alpha = EdgeAlpha((f.c.Top  - f.R.y) + f.c.Height - (1 - f.p) * f.R.height, f.c.Height); }
void AmplifyH (const PathFrame& f, CharPlacement& out) { out.Alpha = EdgeAlpha(EnteredFromMiddle(f.p, f.c.Left - f.R.x, f.c.Width,  f.R.width),  f.c.Width);  }
void AmplifyV (const PathFrame& f, CharPlacement& out) { out.Alpha = EdgeAlpha(EnteredFromMiddle(f.p, f.c.Top  - f.R.y, f.c.Height, f.R.height), f.c.Height); }

void Fade    (const PathFrame& f, CharPlacement& out) { out.Alpha = WrappedAlpha(f.p * 255); }
void NoEffect(const PathFrame& f, CharPlacement& out) { out.Alpha = f.p > 0.5F ? 255 : 0; }

void Popup1  (const PathFrame& f, CharPlacement& out) { Pop           (f, FullSize,    out); }
void Popup2  (const PathFrame& f, CharPlacement& out) { Pop           (f, FromNothing, out); }
void Popup3  (const PathFrame& f, CharPlacement& out) { PopAboutMiddle(f, FromNothing, out); }
void Magnets1(const PathFrame& f, CharPlacement& out) { Pop           (f, FromLarge,   out); }
void Magnets2(const PathFrame& f, CharPlacement& out) { PopAboutMiddle(f, FromLarge,   out); }

void Glitter(const PathFrame& f, CharPlacement& out) { Sparkle(f, Ratio(f.c.Left - f.R.x, f.R.width), out); }
void Twinkle(const PathFrame& f, CharPlacement& out) { Sparkle(f, RandomOrder(f), out); }
// clang-format on

/// Characters as high as the canvas shrink to their own height, in random order.
void Icicles(const PathFrame& f, CharPlacement& out) {
    const float span = Ratio(1, f.n) * std::min(2.0F, f.n);
    const float t = Stagger(f.p, RandomOrder(f), span);
    const float full = f.c.Height > 0 ? f.H / f.c.Height : f.H;
    const float s = (full - 1) * (1 - t) + 1;
    out.ScaleY = s;
    out.Y = (s - 1) * f.c.Height / 3 + f.c.Top;
    out.Alpha = WrappedAlpha(t * 255);
}

}  // namespace captionfx
