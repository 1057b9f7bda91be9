// PathScene: a scene of meshes, and all that the rest of the program sees of this library.
//
// The viewer stands at z = 4 and looks along -z; x grows to the right and y downward, as rows do. A frame at distance 1
// is 1 wide. Triangles are drawn from back to front without a depth buffer, lit where they have no picture, and not at
// all where they face away. A frame goes: BeginFrame, SetColorSpace, clear the frame, ResetObjectTransform,
// RotateObject, TransformObjects, BuildDrawList, SortDrawList, Render.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "sgl/box_mesh.h"
#include "sgl/matrices.h"

namespace sgl {

class SGLGen;

class PathScene {
public:
    PathScene();
    PathScene(const PathScene&) = delete;
    PathScene& operator=(const PathScene&) = delete;
    ~PathScene();

    /// Makes an empty scene for frames of `width` times `height` pixels; a scene that was there goes. `antialias` not 0
    /// renders at twice the size. It puts the calling thread's floating-point environment to its default, which results
    /// rely on. False for a size that cannot be.
    [[nodiscard]] bool Init(int32_t width, int32_t height, int32_t antialias);

    /// Back to how it was before Init.
    void Release();

    /// The next object, by its number from 1; 0 when there are 400, when `mesh` is empty, before Init, and when memory
    /// runs out. Its transform is all zero: it is not seen before ResetObjectTransform. Pictures stay the caller's and
    /// have to live as long as the scene; there can be 63 different ones.
    int32_t AddMesh(const BoxMesh& mesh);

    /// Selects the pixels that Render draws into: as many as Init was told, which `width` and `height` repeat. False,
    /// when they are missing.
    bool BeginFrame(uint32_t* frame, int32_t width, int32_t height);

    /// Not 0: what has no picture is drawn as 0xAAYYUUVV. Pictures are copied as they are.
    void SetColorSpace(uint32_t yuv);

    // Numbers that no object has are ignored.
    void ResetObjectTransform(int32_t objectNumber);
    void RotateObject(int32_t objectNumber, float radians, float x, float y, float z);

    void TransformObjects();  ///< Takes the objects to where their transforms put them.
    void BuildDrawList();     ///< Of all triangles, as they stand now.
    void SortDrawList();      ///< From back to front.
    void Render();            ///< Over what is in the frame; nothing before BeginFrame.

private:
    struct SceneVertex {
        Vec3 model, world;
        float s, t;
    };
    struct SceneTriangle {
        uint8_t blue, green, red;
        std::array<const SceneVertex*, 3> corners;  ///< Of its object.
        float zMin, zMax;                           ///< Of the corners, world; set by BuildDrawList.
        Vec3 normal;                                ///< Of the model.
        uint32_t textureName;                       ///< 0 for none.
    };
    struct SceneObject {
        SGLMatrix transform;  ///< Model to world.
        std::vector<SceneVertex> vertices;
        std::vector<SceneTriangle> triangles;
    };
    struct SceneTexture {
        int32_t width, height;
        const uint32_t* pixels;

        bool operator==(const SceneTexture&) const = default;
    };

    [[nodiscard]] static bool IsDrawnBefore(const SceneTriangle& a, const SceneTriangle& b);
    [[nodiscard]] bool MakeFrames(int32_t antialias);
    void SetPipelineState();
    void DeleteObjects();
    [[nodiscard]] SceneObject* FindObject(int32_t objectNumber);
    [[nodiscard]] uint32_t NameOf(const SceneTexture& picture);
    void AddTriangle(SceneObject& object, const BoxTriangle& source);
    void DrawTriangles();
    void DoubleOutput();
    void HalveToOutput();

    std::vector<SceneObject> objects_;
    std::vector<SceneTriangle*> drawList_;
    std::unique_ptr<SGLGen> sgl_;
    std::map<uint32_t, SceneTexture> textureMap_;  ///< By name.
    bool antialias_ = false;
    std::unique_ptr<uint32_t[]> doubleFrame_;  ///< Twice the width and height.
    uint32_t* outputFrame_ = nullptr;          ///< The caller's, of the frame that was begun; else null.
    int32_t width_ = 0, height_ = 0;           ///< Of the output.
};

}  // namespace sgl
