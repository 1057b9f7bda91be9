#include "sgl/texture_mapping.h"

namespace sgl {

std::optional<MappingPlanes> SolveMapping(const SGLTriangle& triangle, bool perspective) {
    const SGLVertex &a = *triangle.corners[0], &b = *triangle.corners[1], &c = *triangle.corners[2];
    Vec3 e1 = a.eye - b.eye, e2 = c.eye - b.eye, origin = b.eye;
    if (!perspective) {
        // A flat triangle at the distance of 1: the denominator is the same everywhere.
        origin.z = 1;
        e1.z = e2.z = 0;
    }
    const float du1 = a.s - b.s, du2 = c.s - b.s, dv1 = a.t - b.t, dv2 = c.t - b.t;
    const float sDivisor = dv2 * du1 - dv1 * du2, tDivisor = du2 * dv1 - du1 * dv2;
    if (sDivisor == 0 || tDivisor == 0) return std::nullopt;
    const Vec3 s = (e1 * dv2 - e2 * dv1) / sDivisor;  // the way in eye space for one unit of s
    const Vec3 t = (e1 * du2 - e2 * du1) / tDivisor;
    const Vec3 n = Cross(s, t);
    const float w = Dot(n, origin);
    if (w == 0) return std::nullopt;
    const float reciprocal = 1.0f / w;
    return MappingPlanes{Cross(t, origin) * reciprocal, Cross(origin, s) * reciprocal, n * reciprocal};
}

}  // namespace sgl
