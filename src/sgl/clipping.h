// From a triangle in eye space to a polygon on the screen: the near clip, the projection, the clip to the frame and the
// conversion to whole numbers.
//
// Screen rows grow with eye y. Colours ride along as 8.16 sums of light; where nobody reads them they are zero.
#pragma once

#include <array>
#include <cstdint>

#include "sgl/records.h"

namespace sgl {

/// The volume that is seen. Top and bottom only place the horizon: both directions share the scale that left and right
/// give. There is no far limit.
struct ViewVolume {
    float a, b;  ///< Top and bottom, both negated.
    float left, right;
    float nearZ;
};

/// How eye space lies on the frame.
struct ScreenProjection {
    ScreenProjection() = default;
    ScreenProjection(bool isPerspective, int32_t width, int32_t height, const ViewVolume& volume);

    float aspect = 1;  ///< Of a pixel; scales y.
    bool perspective = false;
    float projScale = 0;                 ///< Eye units to pixels: in perspective at the distance of 1.
    int32_t centerXi = 0, centerYi = 0;  ///< Where the view axis meets the frame, in pixels.
    int32_t clipRightI = 0, clipLeftI = 0, clipBottomI = 0, clipTopI = 0;
    float centerX = 0, centerY = 0;
    float clipRight = 0, clipLeft = 0, clipBottom = 0, clipTop = 0;
    float nearZ = 0;
};

/// Three corners and one more for each of the five limits, with room to spare for what is not convex any more when
/// coordinates overflow: corners beyond the tenth are dropped.
template <class Vertex>
struct SGLPolygon {
    static constexpr int32_t kMostCorners = 10;

    int32_t count = 0;
    std::array<Vertex, kMostCorners> corners;

    void Append(const Vertex& vertex) {
        if (count < kMostCorners) corners[static_cast<size_t>(count++)] = vertex;
    }
    [[nodiscard]] const Vertex& At(int32_t i) const { return corners[static_cast<size_t>(i)]; }
};

struct ScreenVertex {
    int32_t x, y;  ///< 0 up to and including the frame's width and height.
    int32_t z;     ///< 1e9 / eye z, so that nearer is greater and steps on the screen are even.
    Rgb color;
};
using ScreenPolygon = SGLPolygon<ScreenVertex>;

/// Clips a triangle whose corners have the colours `colors`. False, when nothing is left to draw.
[[nodiscard]] bool ClipTriangle(const ScreenProjection& projection, const SGLTriangle& triangle,
                                const std::array<Rgb, 3>& colors, ScreenPolygon& result);

}  // namespace sgl
