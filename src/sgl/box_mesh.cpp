#include "sgl/box_mesh.h"

#include <cstddef>

namespace sgl {
namespace {

// The corners of a box are numbers of three bits: 1 for the greater x, 2 for the greater y, 4 for the back.
constexpr uint8_t kBoxTriangles[12][3] = {
    {0, 2, 3}, {3, 1, 0},  // front
    {5, 7, 6}, {6, 4, 5},  // back
    {4, 0, 1}, {1, 5, 4},  // least y
    {2, 6, 7}, {7, 3, 2},  // greatest y
    {4, 6, 2}, {2, 0, 4},  // least x
    {1, 3, 7}, {7, 5, 1},  // greatest x
};

}  // namespace

BoxMesh CreateBoxMesh(float zFront, float zBack, float yMin, float yMax, float xMax, float xMin, int32_t red,
                      int32_t green, int32_t blue) {
    BoxMesh mesh;
    for (const auto& corners : kBoxTriangles) {
        BoxTriangle& triangle = mesh.triangles.emplace_back();
        triangle.red = red;
        triangle.green = green;
        triangle.blue = blue;
        for (size_t i = 0; i < 3; ++i) {
            const uint32_t c = corners[i];
            triangle.corners[i] = {
                (c & 1U) != 0 ? xMax : xMin, (c & 2U) != 0 ? yMax : yMin, (c & 4U) != 0 ? zBack : zFront, {}};
        }
    }
    return mesh;
}

void SetBoxFaceTexture(BoxMesh& mesh, const uint32_t* pixels, int32_t width, int32_t height,
                       const std::array<PicturePoint, 4>& points) {
    if (mesh.triangles.size() != std::size(kBoxTriangles)) return;
    for (size_t face = 0; face < 2; ++face) {
        BoxTriangle& triangle = mesh.triangles[face];
        triangle.hasTexture = true;
        triangle.textureWidth = width;
        triangle.textureHeight = height;
        triangle.texturePixels = pixels;
        // The front's corners have the numbers of their points.
        for (size_t i = 0; i < 3; ++i) triangle.corners[i].picture = points[kBoxTriangles[face][i]];
    }
}

}  // namespace sgl
