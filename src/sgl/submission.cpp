// From a corner to a drawn triangle: Begin, the batch, and Flush.
#include <algorithm>

#include "sgl/clipping.h"
#include "sgl/sgl_gen.h"

namespace sgl {
namespace {

/// Which way round the corners run as the viewer sees them. A triangle seen edge on counts as facing.
bool IsFacing(const SGLTriangle& triangle, bool perspective) {
    const Vec3 &a = triangle.corners[0]->eye, &b = triangle.corners[1]->eye, &c = triangle.corners[2]->eye;
    const float value =
        perspective ? Dot(c, Cross(a, b)) : (b.x - a.x) * c.y + (a.y - b.y) * c.x + (a.x * b.y - b.x * a.y);
    return !(value < 0);
}

void MeasureDepth(SGLTriangle& triangle) {
    triangle.zMax = -1e6f;
    triangle.zMin = 1e6f;
    for (const SGLVertex* corner : triangle.corners) {
        triangle.zMax = std::max(triangle.zMax, corner->eye.z);
        triangle.zMin = std::min(triangle.zMin, corner->eye.z);
    }
}

}  // namespace

void SGLGen::Begin(int32_t mode) {
    if (!StartOutsideBegin()) return;
    if (mode != SGL_TRIANGLES) return Refuse(SGL_INVALID_ENUM);
    state_.insideBegin = true;
    state_.vertexCount = state_.cornerIndex = state_.triangleCount = 0;
}

/// Starts an operation that is refused but between Begin and End.
bool SGLGen::StartInsideBegin() {
    state_.status = state_.insideBegin ? SGL_NO_ERROR : SGL_INVALID_OPERATION;
    return state_.insideBegin;
}

void SGLGen::Vertex3fv(const float* xyz) {
    if (!StartInsideBegin()) return;
    if (state_.triangleCount == kBatchTriangles) Flush();
    SGLVertex& vertex = state_.vertices[static_cast<size_t>(state_.vertexCount++)];
    vertex.position = {xyz[0], xyz[1], xyz[2]};
    const auto narrow = [](double value) { return static_cast<float>(value); };
    const auto& n = state_.currentNormal;
    vertex.normal = {narrow(n[0]), narrow(n[1]), narrow(-n[2])};
    vertex.s = narrow(state_.currentTexCoord[0]);
    vertex.t = narrow(state_.currentTexCoord[1]);

    SGLTriangle& triangle = state_.triangles[static_cast<size_t>(state_.triangleCount)];
    triangle.corners[static_cast<size_t>(state_.cornerIndex++)] = &vertex;
    if (state_.cornerIndex < 3) return;
    const uint32_t color = state_.currentColor;
    triangle.texture = state_.textures[state_.boundTexture];
    triangle.frontColor = triangle.backColor = {static_cast<uint8_t>(color), static_cast<uint8_t>(color >> 8),
                                                static_cast<uint8_t>(color >> 16)};
    state_.cornerIndex = 0;
    ++state_.triangleCount;
}

void SGLGen::Vertex3dv(const double* xyz) {
    const float narrowed[] = {static_cast<float>(xyz[0]), static_cast<float>(xyz[1]), static_cast<float>(xyz[2])};
    Vertex3fv(narrowed);
}

/// Corners of a triangle that is not complete are dropped.
void SGLGen::End() {
    if (!StartInsideBegin()) return;
    Flush();
    state_.insideBegin = false;
}

int32_t SGLGen::GetBeginState() {
    state_.status = state_.insideBegin ? SGL_INVALID_OPERATION : SGL_NO_ERROR;
    return state_.status;
}

void SGLGen::Flush() {
    for (int32_t i = 0; i < state_.vertexCount; ++i) {
        SGLVertex& vertex = state_.vertices[static_cast<size_t>(i)];
        const Vec3 p = Transform(state_.modelView, vertex.position);
        vertex.eye = {p.x, p.y, -p.z};
    }
    for (int32_t i = 0; i < state_.triangleCount; ++i) DrawTriangle(state_.triangles[static_cast<size_t>(i)]);
    state_.vertexCount = state_.cornerIndex = state_.triangleCount = 0;
}

void SGLGen::DrawTriangle(SGLTriangle& triangle) {
    const bool facing = IsFacing(triangle, rasterizer_.Projection().perspective);
    triangle.backFacing = !facing;
    if (state_.cullEnabled && facing != (state_.frontFace == SGL_CCW)) return;
    MeasureDepth(triangle);
    // The volume as stored; the rasterizer clips at the one that took effect.
    if (!(static_cast<double>(triangle.zMax) > state_.frustumNear)) return;

    std::array<Rgb, 3> colors{};
    if (state_.shadeModel == SGL_SMOOTH) {
        for (size_t i = 0; i < 3; ++i) colors[i] = rasterizer_.Lights().CornerColor(triangle, *triangle.corners[i]);
    }
    ScreenPolygon polygon;
    if (!ClipTriangle(rasterizer_.Projection(), triangle, colors, polygon)) return;
    if (state_.textureEnabled && triangle.texture != nullptr) {
        const BlendMode mode = state_.blendEnabled       ? BlendMode::kBlend
                               : state_.alphaTestEnabled ? BlendMode::kAlphaTest
                                                         : BlendMode::kOpaque;
        rasterizer_.FillTextured(polygon, triangle, mode);
    } else if (state_.shadeModel == SGL_FLAT) {
        rasterizer_.FillFlat(polygon, triangle);
    } else {
        rasterizer_.FillSmooth(polygon);
    }
}

}  // namespace sgl
