#include "sgl/clipping.h"

#include <algorithm>

#include "sgl/fixed_point.h"

namespace sgl {
namespace {

constexpr float kDepthScale = 1e9f;

struct ClipVertex {
    float x, y, z;  ///< x and y in eye space, then in pixels; z always the eye's.
    Rgb color;
};
using ClipPolygon = SGLPolygon<ClipVertex>;
using Coordinate = float ClipVertex::*;

/// One pass of clipping against a limit, from the last corner round to the first: `cut` is given each edge that crosses
/// the limit, `keep` each corner inside.
template <class Inside, class Cut, class Keep>
void ClipEdges(const ClipPolygon& in, Inside inside, Cut cut, Keep keep) {
    if (in.count == 0) return;
    const ClipVertex* previous = &in.At(in.count - 1);
    for (int32_t i = 0; i < in.count; ++i) {
        const ClipVertex& current = in.At(i);
        if (inside(*previous) != inside(current)) cut(*previous, current);
        if (inside(current)) keep(current);
        previous = &current;
    }
}

Rgb Between(const Rgb& from, const Rgb& to, float t) {
    const auto channel = [t](int32_t c1, int32_t c2) {
        return ToInt32(static_cast<float>(Subtract(c2, c1)) * t + static_cast<float>(c1));
    };
    return {channel(from.r, to.r), channel(from.g, to.g), channel(from.b, to.b)};
}

ClipPolygon ClipNear(const ClipPolygon& in, float nearZ) {
    ClipPolygon out;
    ClipEdges(
        in, [nearZ](const ClipVertex& v) { return !(nearZ > v.z); },
        [&](const ClipVertex& p, const ClipVertex& q) {
            const float t = (nearZ - p.z) / (q.z - p.z);
            out.Append({(q.x - p.x) * t + p.x, (q.y - p.y) * t + p.y, nearZ, Between(p.color, q.color, t)});
        },
        [&](const ClipVertex& v) { out.Append(v); });
    return out;
}

void Project(const ScreenProjection& projection, ClipPolygon& polygon) {
    for (int32_t i = 0; i < polygon.count; ++i) {
        ClipVertex& v = polygon.corners[static_cast<size_t>(i)];
        const float k = projection.perspective ? projection.projScale / v.z : projection.projScale;
        v.x = k * v.x + projection.centerX;
        v.y = k * v.y * projection.aspect + projection.centerY;
    }
}

/// Where an edge crosses a limit of the frame.
struct Crossing {
    float across;  ///< The coordinate that is not limited.
    float d, zz;   ///< Eye z is zz / d: on the screen its reciprocal is what runs evenly.
    Rgb color;
};

/// The ends are ordered by the limited coordinate `along`, so that an edge shared by two triangles is cut at one place,
/// whichever way each walks it.
Crossing CrossingAt(float limit, Coordinate along, Coordinate across, const ClipVertex& p, const ClipVertex& q) {
    const bool ascends = q.*along > p.*along;
    const ClipVertex &lo = ascends ? p : q, &hi = ascends ? q : p;
    const float t = (limit - lo.*along) / (hi.*along - lo.*along);
    return {(hi.*across - lo.*across) * t + lo.*across, (lo.z - hi.z) * t + hi.z, p.z * q.z,
            Between(lo.color, hi.color, t)};
}

/// `inside` compares a coordinate with the limit.
template <class Inside>
void ClipToLimit(ClipPolygon& polygon, float limit, Coordinate along, Coordinate across, Inside inside) {
    ClipPolygon out;
    ClipEdges(
        polygon, [&](const ClipVertex& v) { return inside(v.*along, limit); },
        [&](const ClipVertex& p, const ClipVertex& q) {
            const Crossing crossing = CrossingAt(limit, along, across, p, q);
            ClipVertex v{0, 0, crossing.zz / crossing.d, crossing.color};
            v.*along = limit;
            v.*across = crossing.across;
            out.Append(v);
        },
        [&](const ClipVertex& v) { out.Append(v); });
    polygon = out;
}

ScreenVertex ToScreen(const ClipVertex& v) {
    return {ToInt32(v.x), ToInt32(v.y), ToInt32(kDepthScale / v.z), v.color};
}

/// The last limit, the bottom, and the conversion at once. Corners are cut to whole pixels; only what this pass cuts
/// off itself is rounded.
ScreenPolygon ClipBottomAndConvert(const ClipPolygon& polygon, float bottom, bool reachesBelow) {
    ScreenPolygon out;
    ClipEdges(
        polygon, [&](const ClipVertex& v) { return !reachesBelow || v.y <= bottom; },
        [&](const ClipVertex& p, const ClipVertex& q) {
            const Crossing crossing = CrossingAt(bottom, &ClipVertex::y, &ClipVertex::x, p, q);
            out.Append({ToInt32(crossing.across + 0.5f), ToInt32(bottom + 0.5f),
                        ToInt32(crossing.d / crossing.zz * kDepthScale), crossing.color});
        },
        [&](const ClipVertex& v) { out.Append(ToScreen(v)); });
    return out;
}

/// Later stages write where the corners say.
bool LiesInFrame(const ScreenProjection& s, const ScreenPolygon& polygon) {
    return std::all_of(polygon.corners.begin(), polygon.corners.begin() + polygon.count, [&](const ScreenVertex& v) {
        return v.x >= s.clipLeftI && v.x <= s.clipRightI && v.y >= s.clipTopI && v.y <= s.clipBottomI;
    });
}

/// Where 0 lies on a side of `pixels` that shows `least` to `greatest`.
int32_t AxisPosition(float least, float greatest, int32_t pixels) {
    return ToInt32(static_cast<double>(-least) / static_cast<double>(greatest - least) * pixels);
}

}  // namespace

ScreenProjection::ScreenProjection(bool isPerspective, int32_t width, int32_t height, const ViewVolume& v)
    : perspective(isPerspective),
      projScale(static_cast<float>(width) * (isPerspective ? v.nearZ : 1.0f) / (v.right - v.left)),
      centerXi(AxisPosition(v.left, v.right, width)),
      centerYi(AxisPosition(v.a, v.b, height)),
      clipRightI(width),
      clipBottomI(height),
      centerX(static_cast<float>(centerXi)),
      centerY(static_cast<float>(centerYi)),
      clipRight(static_cast<float>(width)),
      clipBottom(static_cast<float>(height)),
      nearZ(v.nearZ) {}

bool ClipTriangle(const ScreenProjection& projection, const SGLTriangle& triangle, const std::array<Rgb, 3>& colors,
                  ScreenPolygon& result) {
    ClipPolygon corners;
    for (size_t i = 0; i < 3; ++i) {
        const Vec3& eye = triangle.corners[i]->eye;
        corners.Append({eye.x, eye.y, eye.z, colors[i]});
    }
    ClipPolygon polygon = ClipNear(corners, projection.nearZ);
    Project(projection, polygon);

    const auto reaches = [&](auto beyond) {
        return std::any_of(polygon.corners.begin(), polygon.corners.begin() + polygon.count, beyond);
    };
    const bool left = reaches([&](const ClipVertex& v) { return v.x < projection.clipLeft; });
    const bool right = reaches([&](const ClipVertex& v) { return v.x > projection.clipRight; });
    const bool top = reaches([&](const ClipVertex& v) { return v.y < projection.clipTop; });
    const bool bottom = reaches([&](const ClipVertex& v) { return v.y > projection.clipBottom; });
    const auto atLeast = [](float value, float limit) { return value >= limit; };
    const auto atMost = [](float value, float limit) { return value <= limit; };
    if (left) ClipToLimit(polygon, projection.clipLeft, &ClipVertex::x, &ClipVertex::y, atLeast);
    if (right) ClipToLimit(polygon, projection.clipRight, &ClipVertex::x, &ClipVertex::y, atMost);
    if (top) ClipToLimit(polygon, projection.clipTop, &ClipVertex::y, &ClipVertex::x, atLeast);
    result = ClipBottomAndConvert(polygon, projection.clipBottom, bottom);
    return result.count > 0 && LiesInFrame(projection, result);
}

}  // namespace sgl
