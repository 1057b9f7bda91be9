// Meshes: what a scene is given, triangle by triangle.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace sgl {

/// A place in a picture, 0..1 from its first column and row to its last.
struct PicturePoint {
    float u, v;
};

struct BoxCorner {
    float x, y, z;
    PicturePoint picture;
};

struct BoxTriangle {
    std::array<BoxCorner, 3> corners;
    bool hasTexture;
    int32_t textureWidth, textureHeight;
    const uint32_t* texturePixels;  ///< 0xAARRGGBB, rows without padding. Not owned; read whenever the scene is drawn.
    int32_t red, green, blue;       ///< 0..255
};

struct BoxMesh {
    std::vector<BoxTriangle> triangles;
};

/// A box of twelve triangles in one colour, two a face, seen from outside. The first two are the face at `zFront`.
[[nodiscard]] BoxMesh CreateBoxMesh(float zFront, float zBack, float yMin, float yMax, float xMax, float xMin,
                                    int32_t red, int32_t green, int32_t blue);

/// Puts a picture on the front of a box; a mesh that is no box stays as it is. `points` are those of the front's
/// corners (xMin, yMin), (xMax, yMin), (xMin, yMax) and (xMax, yMax). A picture of a single row or column shows
/// nothing: its points all fall on one texel.
void SetBoxFaceTexture(BoxMesh& mesh, const uint32_t* pixels, int32_t width, int32_t height,
                       const std::array<PicturePoint, 4>& points);

}  // namespace sgl
