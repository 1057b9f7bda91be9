// Where a texture lies on the screen. The coordinates of a triangle's corners, as submitted, are solved for two planes
// in eye space and a third one below them, so that a clipped polygon needs no coordinates of its own:
//
//   s(x, y) = S(r) / N(r),  t(x, y) = T(r) / N(r)    with the view ray r = (ray of column x, ray of row y, 1)
//
// relative to the triangle's second corner.
#pragma once

#include <optional>

#include "sgl/records.h"

namespace sgl {

struct MappingPlanes {
    Vec3 s, t, n;
};

/// Empty, when the corners' coordinates or positions give no mapping.
[[nodiscard]] std::optional<MappingPlanes> SolveMapping(const SGLTriangle& triangle, bool perspective);

}  // namespace sgl
