// What the stages hand each other: colours, and the vertices and triangles of a batch.
#pragma once

#include <array>
#include <cstdint>

#include "sgl/textures.h"
#include "sgl/vectors.h"

namespace sgl {

struct Bgr {
    uint8_t b, g, r;
};

/// Three channels as whole numbers: light in 16.16 (1.0 is 65536), or sums of light in 8.16 (full is 0xFF0000).
struct Rgb {
    int32_t r, g, b;
};

struct SGLVertex {
    Vec3 position;  ///< As submitted.
    Vec3 eye;       ///< Behind the model-view matrix, z negated: positive in front of the viewer.
    Vec3 normal;    ///< As submitted, z negated. Kept for the record only.
    /// What smooth light reads. Nothing computes it: smooth triangles show the ambient light alone.
    Vec3 litNormal;
    float s, t;
};

struct SGLTriangle {
    Bgr frontColor, backColor;
    bool backFacing;
    std::array<const SGLVertex*, 3> corners;
    float zMin, zMax;           ///< Of the corners, eye space.
    const SGLTexture* texture;  ///< Bound when the third corner came; may be null.
};

}  // namespace sgl
