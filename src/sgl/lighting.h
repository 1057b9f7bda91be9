// Eight directional lights, in whole numbers.
#pragma once

#include <array>
#include <cstdint>

#include "sgl/fixed_point.h"
#include "sgl/records.h"

namespace sgl {

inline constexpr int32_t kMaxLights = 8;

/// A direction in 16.16.
struct FixedNormal {
    int32_t x, y, z;
};

struct SGLLight {
    bool enabled = false;
    Rgb ambient{}, diffuse{};  ///< 16.16
    Bgr specular{};
    /// 0: a lit face gets all of `specular`; else the table decides by the reflected ray. There is no operation for it.
    float reflectionSwitch = 0;
    Vec3 direction{0, 0, -1};  ///< Toward the light, eye space. A light put at the origin has none (not a number).
};

class Lighting {
public:
    Lighting();

    bool enabled = false;  ///< For flat triangles only; smooth ones are always lit.
    std::array<SGLLight, kMaxLights> lights;

    /// Sets one property, SGL_AMBIENT to SGL_POSITION, of the light with number `light` below kMaxLights. Positions are
    /// taken as directions; the fourth number is not read.
    void Set(int32_t light, int32_t property, const float* params);

    /// The sums of light that fall on a colour. Channels are at most 0xFF0000, and negative only where a light is.
    [[nodiscard]] Rgb Light(const FixedNormal& normal, const Bgr& color) const;

    /// The one colour of a flat triangle.
    [[nodiscard]] Bgr FaceColor(const SGLTriangle& triangle) const;

    /// The colour of a smooth triangle at a corner.
    [[nodiscard]] Rgb CornerColor(const SGLTriangle& triangle, const SGLVertex& corner) const;

private:
    std::array<int32_t, kOne16 + 1> specularTable_;  ///< The tenth power, 16.16 to 16.16.
};

}  // namespace sgl
