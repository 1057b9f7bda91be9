// The model-view matrix and its makers. Row-major, points are columns: p' = M p, the translation in elements 3, 7, 11.
#pragma once

#include <array>

#include "sgl/vectors.h"

namespace sgl {

struct SGLMatrix {
    std::array<float, 16> m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    bool isIdentity = true;  ///< Known to be the identity; a made matrix never claims it, whatever its values.
};

/// a x b. A factor that is flagged as identity leaves the other as it is, bit for bit.
[[nodiscard]] SGLMatrix Product(const SGLMatrix& a, const SGLMatrix& b);

[[nodiscard]] SGLMatrix Translation(float x, float y, float z);

/// About an axis through the origin. An axis of length 0 gives numbers that are not finite.
[[nodiscard]] SGLMatrix Rotation(float radians, const Vec3& axis);

/// Turns the direction `forward` to -z and `up` toward +y. The side vector is not normalised: a view along an `up` that
/// is not at a right angle to it shrinks.
[[nodiscard]] SGLMatrix ViewRotation(const Vec3& forward, const Vec3& up);

/// Sixteen numbers in column-major order, as callers give them.
template <class Number>
[[nodiscard]] SGLMatrix FromColumns(const Number* columns) {
    SGLMatrix t;
    t.isIdentity = false;
    for (size_t i = 0; i < 16; ++i) t.m[i] = static_cast<float>(columns[i % 4 * 4 + i / 4]);
    return t;
}

/// The first three rows applied to (p, 1).
[[nodiscard]] Vec3 Transform(const SGLMatrix& matrix, const Vec3& p);

}  // namespace sgl
