// What SGLGen remembers between calls, with its values at the start. Lights are the rasterizer's.
#pragma once

#include <array>
#include <cstdint>

#include "sgl/matrices.h"
#include "sgl/records.h"
#include "sgl/sgl.h"

namespace sgl {

inline constexpr uint32_t kTextureNames = 64;  // 0 is a name like others, but never handed out
inline constexpr int32_t kBatchTriangles = 256;

struct SGLState {
    SGLMatrix modelView;
    double frustumLeft = -1, frustumRight = 1, frustumTop = 1, frustumBottom = -1;
    double frustumNear = 1, frustumFar = 10;          ///< The far distance is never tested.
    std::array<int32_t, 4> viewport{0, 0, 256, 256};  ///< x, y, width, height
    std::array<double, 3> currentNormal{0, 0, 1};
    std::array<double, 4> currentTexCoord{0, 0, 0, 1};  ///< s, t, r, q
    uint32_t boundTexture = 0;
    std::array<const SGLTexture*, kTextureNames> textures{};
    bool perspective = false;
    bool insideBegin = false;
    bool alphaTestEnabled = false, blendEnabled = false, cullEnabled = false, textureEnabled = false;
    uint32_t clearColor = 0;             ///< 0xAARRGGBB; never read.
    uint32_t currentColor = 0xFFFFFFFF;  ///< 0xAARRGGBB
    int32_t matrixMode = SGL_MODELVIEW;
    int32_t shadeModel = SGL_FLAT;
    int32_t frontFace = SGL_CCW;
    int32_t status = SGL_NO_ERROR;

    // The batch. A corner of the triangle that is being built already has its place.
    int32_t vertexCount = 0, cornerIndex = 0, triangleCount = 0;
    std::array<SGLVertex, size_t{3} * kBatchTriangles> vertices{};
    std::array<SGLTriangle, kBatchTriangles> triangles{};

    uint32_t* frame = nullptr;  ///< viewport width x height; SGLGen's own, or the caller's.
};

}  // namespace sgl
