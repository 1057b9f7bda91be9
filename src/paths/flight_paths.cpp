#include "paths/flight_paths.h"

#include <algorithm>
#include <array>
#include <span>

#include "platform/portable_math.h"

namespace captionfx {
namespace {

// A curve is four cubic Bezier segments end to end. Points are fractions of the canvas, and one segment's last point is
// the next one's first: the joints.
constexpr size_t kSegments = 4, kPoints = kSegments * 3 + 1, kJoints = kSegments + 1;
constexpr std::array<float, kJoints> kJointTimes = {0, 0.25F, 0.5F, 0.75F, 1};
constexpr size_t kOnTheString = 4;  // the last points lie on the string's top line
// From this time on the characters run along the string; the last segment is never flown.
constexpr float kLanding = 0.75F;

struct FlightPoint {
    float x, y;
};

/// What the tracks differ in.
struct FlightTrack {
    std::array<FlightPoint, kPoints - kOnTheString> Points;
    std::array<float, kJoints> Scales;
};

// A coordinate beyond +-900 is no place: what is left of it after 1000 counts from the next point (the previous one for
// a negative one). So point 8 lies 0.2 to the right of the string's end, and the curve comes in along the string's
// line.
constexpr FlightPoint kBeyondTheEnd{1000.2F, 1000};

constexpr std::array<float, kJoints> kCoasterScales = {1, 0.25F, 1, 1, 1}, kSwarmScales = {1, 0.25F, 0.25F, 1, 1};

// clang-format off
constexpr FlightTrack kRollerCoasterLeft = {
    .Points = {{{1.1F, 1.1F}, {1.0F, 1.0F}, {0.2F, 0.1F},
                {0.5F, 0.1F}, {0.8F, 0.1F}, {0.2F, 0.9F},
                {0.1F, 0.8F}, {0,    0.7F}, kBeyondTheEnd}},
    .Scales = kCoasterScales};
constexpr FlightTrack kRollerCoasterRight = {
    .Points = {{{-0.1F, 1.1F}, {0,    1.0F}, {0.8F, 0.1F},
                {0.5F,  0.1F}, {0.2F, 0.1F}, {0.8F, 0.9F},
                {0.9F,  0.8F}, {1.0F, 0.7F}, kBeyondTheEnd}},
    .Scales = kCoasterScales};
constexpr FlightTrack kSwarmLeft = {
    .Points = {{{1.1F, 1.1F}, {1.0F, 0},     {0.3F, 0.05F},
                {0.5F, 0.1F}, {0.7F, 0.15F}, {0.2F, 0.8F},
                {0.4F, 0.8F}, {0.6F, 0.8F},  kBeyondTheEnd}},
    .Scales = kSwarmScales};
constexpr FlightTrack kSwarmRight = {
    .Points = {{{-0.1F, 1.1F}, {0,    0},     {0.7F, 0.05F},
                {0.5F,  0.1F}, {0.3F, 0.15F}, {0.8F, 0.8F},
                {0.6F,  0.8F}, {0.4F, 0.8F},  kBeyondTheEnd}},
    .Scales = kSwarmScales};
// clang-format on

using FlightPath = std::array<FlightPoint, kPoints>;

/// A coordinate whose mark, if it is one, is replaced by what it stands for.
float Resolved(float value, float previous, float next) {
    if (value > 900) value = value - 1000 + next;
    if (value < -900) value = value + 1000 + previous;
    return value;
}

/// The track's points and those on the string's line, from its right end to a little left of its left end.
FlightPath PathTo(const PathFrame& f, const FlightTrack& track) {
    const float left = Ratio(f.R.x, f.W), right = Ratio(f.R.x + f.R.width, f.W), line = Ratio(f.R.y, f.H);
    FlightPath path{};
    const auto rest = std::ranges::copy(track.Points, path.begin()).out;
    const std::array<FlightPoint, kOnTheString> onTheString = {
        {{right, line}, {(left + right) * 0.5F, line}, {left, line}, {left - 0.1F, line}}};
    std::ranges::copy(onTheString, rest);
    for (size_t i = 0; i < kPoints; ++i) {
        const FlightPoint& previous = path[i > 0 ? i - 1 : 0];
        const FlightPoint& next = path[std::min(i + 1, kPoints - 1)];
        path[i].x = Resolved(path[i].x, previous.x, next.x);
        path[i].y = Resolved(path[i].y, previous.y, next.y);
    }
    return path;
}

using Weights = std::array<float, 4>;

constexpr Weights PlaceWeights(float u) {
    const float v = 1 - u;
    return {v * v * v, 3 * u * v * v, 3 * u * u * v, u * u * u};
}

constexpr Weights DirectionWeights(float u) {
    return {6 * u - 3 - 3 * u * u, 3 - 12 * u + 9 * u * u, 6 * u - 9 * u * u, 3 * u * u};
}

FlightPoint Weighed(std::span<const FlightPoint, 4> points, const Weights& w) {
    return {w[0] * points[0].x + w[1] * points[1].x + w[2] * points[2].x + w[3] * points[3].x,
            w[0] * points[0].y + w[1] * points[1].y + w[2] * points[2].y + w[3] * points[3].y};
}

/// The progress of one character's own: those to the right run behind, by at most a quarter.
float OwnProgress(const PathFrame& f) {
    return f.p - Ratio((f.c.Width * 0.5F + (f.c.Left - f.R.x)) * 0.25F, f.R.width);
}

/// Along the string's line from its right end. At 1 the place is exact, and not what the sum comes to.
void RunIn(const PathFrame& f, float own, CharPlacement& out) {
    if (f.p == 1) return;
    out.X = (own - kLanding) * -f.R.width * 4 + f.R.x + f.R.width - f.c.Width * 0.5F;
}

/// Along segment `k` of the curve, from 0. A character that flies to the left is upright.
void FlyAlong(const PathFrame& f, const FlightTrack& track, size_t k, float own, CharPlacement& out) {
    const FlightPath path = PathTo(f, track);
    const std::span<const FlightPoint, 4> points(&path[k * 3], 4);
    const float u = (own - kJointTimes[k]) / (kJointTimes[k + 1] - kJointTimes[k]);
    const FlightPoint place = Weighed(points, PlaceWeights(u));
    const FlightPoint direction = Weighed(points, DirectionWeights(u));
    out.X = f.W * place.x - f.c.Width * 0.5F;
    out.Y = (f.c.Top - f.R.y) + f.H * place.y;
    out.ScaleX = out.ScaleY = (1 - u) * track.Scales[k] + u * track.Scales[k + 1];
    const float deg = Atan2F(direction.x, direction.y) * 180;
    out.Rotation = -static_cast<float>(static_cast<double>(deg) / kPi64 + 90);
}

void Fly(const PathFrame& f, const FlightTrack& track, CharPlacement& out) {
    const float own = OwnProgress(f);
    if (own >= kLanding) return RunIn(f, own, out);
    for (size_t k = 0; k < kSegments; ++k) {
        if (own > kJointTimes[k] && own <= kJointTimes[k + 1]) return FlyAlong(f, track, k, own, out);
    }
    Hide(out);
}

}  // namespace

// clang-format off
void RollerCoasterLeft (const PathFrame& f, CharPlacement& out) { Fly(f, kRollerCoasterLeft,  out); }
void RollerCoasterRight(const PathFrame& f, CharPlacement& out) { Fly(f, kRollerCoasterRight, out); }
void SwarmLeft         (const PathFrame& f, CharPlacement& out) { Fly(f, kSwarmLeft,          out); }
void SwarmRight        (const PathFrame& f, CharPlacement& out) { Fly(f, kSwarmRight,         out); }
// clang-format on

}  // namespace captionfx
