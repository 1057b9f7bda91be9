#include "sgl/matrices.h"

namespace sgl {
namespace {

SGLMatrix FromRows(const Vec3& x, const Vec3& y, const Vec3& z) {
    return {{x.x, x.y, x.z, 0, y.x, y.y, y.z, 0, z.x, z.y, z.z, 0, 0, 0, 0, 1}, false};
}

bool Is(const Vec3& a, float x, float y, float z) {
    return a.x == x && a.y == y && a.z == z;
}

Vec3 NormalizedWherePossible(const Vec3& a) {
    const float length = Length(a);
    return length > 0 ? a * (1.0f / length) : a;
}

}  // namespace

SGLMatrix Product(const SGLMatrix& a, const SGLMatrix& b) {
    if (a.isIdentity) return b;
    if (b.isIdentity) return a;
    SGLMatrix product;
    product.isIdentity = false;
    for (size_t i = 0; i < 16; ++i) {
        const float* row = &a.m[i / 4 * 4];
        const float* column = &b.m[i % 4];
        product.m[i] = row[0] * column[0] + row[1] * column[4] + row[2] * column[8] + row[3] * column[12];
    }
    return product;
}

SGLMatrix Translation(float x, float y, float z) {
    return {{1, 0, 0, x, 0, 1, 0, y, 0, 0, 1, z, 0, 0, 0, 1}, false};
}

SGLMatrix Rotation(float radians, const Vec3& axis) {
    const float c = CosF(radians), s = SinF(radians);
    // The axes of the coordinate system have zeroes and ones where the general form would only come close to them.
    if (Is(axis, 1, 0, 0)) return FromRows({1, 0, 0}, {0, c, -s}, {0, s, c});
    if (Is(axis, 0, 1, 0)) return FromRows({c, 0, s}, {0, 1, 0}, {-s, 0, c});
    if (Is(axis, 0, 0, 1)) return FromRows({c, -s, 0}, {s, c, 0}, {0, 0, 1});
    const auto [x, y, z] = axis / Length(axis);
    const float t = 1.0f - c;
    return FromRows({x * x * t + c, x * y * t - z * s, x * z * t + y * s},
                    {x * y * t + z * s, y * y * t + c, y * z * t - x * s},
                    {x * z * t - y * s, y * z * t + x * s, z * z * t + c});
}

SGLMatrix ViewRotation(const Vec3& forward, const Vec3& up) {
    const Vec3 f = NormalizedWherePossible(forward);
    const Vec3 side = Cross(f, NormalizedWherePossible(up));
    return FromRows(side, Cross(side, f), {-f.x, -f.y, -f.z});
}

Vec3 Transform(const SGLMatrix& matrix, const Vec3& p) {
    const auto row = [&](size_t r) {
        const float* m = &matrix.m[4 * r];
        return m[0] * p.x + m[1] * p.y + m[2] * p.z + m[3];
    };
    return {row(0), row(1), row(2)};
}

}  // namespace sgl
