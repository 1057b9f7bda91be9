#include "sgl/path_scene.h"

#include <algorithm>
#include <cfenv>
#include <limits>
#include <new>

#include "sgl/allocation.h"
#include "sgl/sgl_gen.h"

namespace sgl {
namespace {

constexpr size_t kMostObjects = 400;
constexpr int32_t kRasterMode = 0;
constexpr float kLeastLength = 0.0001f;  // of a face's cross product

Vec3 FaceNormal(const Vec3& p0, const Vec3& p1, const Vec3& p2) {
    const Vec3 n = Cross(p1 - p0, p2 - p1);
    const float length = Length(n);
    return length > kLeastLength ? n / length : Vec3{0, 0, 1};
}

/// So that the far edge of a picture falls on its last texel and not past it.
float TexturePosition(int32_t side, float position) {
    return static_cast<float>(side - 1) * position / static_cast<float>(side);
}

/// Byte by byte, cut. Two bytes at once: sums of four need ten bits.
uint32_t MeanOfFour(uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
    constexpr uint32_t kTwoBytes = 0x00FF00FF;
    const auto mean = [&](uint32_t shift) {
        const auto pair = [shift](uint32_t word) { return word >> shift & kTwoBytes; };
        return (pair(a) + pair(b) + pair(c) + pair(d)) >> 2 & kTwoBytes;
    };
    return mean(8) << 8 | mean(0);
}

}  // namespace

PathScene::PathScene() = default;
PathScene::~PathScene() = default;

bool PathScene::Init(int32_t width, int32_t height, int32_t antialias) {
    width_ = width;
    height_ = height;
    std::fesetenv(FE_DFL_ENV);
    bool ready = true;
    if (sgl_ == nullptr) {
        sgl_ = std::make_unique<SGLGen>(kRasterMode);
        ready = sgl_->GetError() == SGL_NO_ERROR;
    }
    DeleteObjects();
    if (!ready || !MakeFrames(antialias)) {
        Release();  // nothing can be drawn into a frame of another size
        return false;
    }
    SetPipelineState();
    return true;
}

bool PathScene::MakeFrames(int32_t antialias) {
    antialias_ = antialias != 0;
    doubleFrame_.reset();
    outputFrame_ = nullptr;
    if (!antialias_) {
        sgl_->Viewport(0, 0, width_, height_);
        return sgl_->GetError() == SGL_NO_ERROR;
    }
    constexpr int32_t kMostSide = std::numeric_limits<int32_t>::max() / 2;
    if (std::min(width_, height_) < 0 || std::max(width_, height_) > kMostSide) return false;
    sgl_->Viewport(0, 0, 2 * width_, 2 * height_);
    if (sgl_->GetError() != SGL_NO_ERROR) return false;
    doubleFrame_ = TryMakeArray<uint32_t>(size_t{4} * static_cast<size_t>(width_) * static_cast<size_t>(height_));
    return doubleFrame_ != nullptr;
}

void PathScene::SetPipelineState() {
    sgl_->Enable(SGL_TEXTURE_2D);
    sgl_->Enable(SGL_CULL_FACE);
    sgl_->FrontFace(SGL_CW);
    sgl_->Disable(SGL_DEPTH_TEST);
    sgl_->ShadeModel(SGL_FLAT);
    sgl_->Enable(SGL_LIGHTING);
    sgl_->Enable(SGL_LIGHT0);
    constexpr float kAmbient[] = {0.1f, 0.1f, 0.1f, 1}, kDiffuse[] = {1, 1, 1, 1}, kSpecular[] = {0, 0, 0, 1},
                    kPosition[] = {0, -0.5f, 1, 0};
    sgl_->Lightfv(SGL_LIGHT0, SGL_AMBIENT, kAmbient);
    sgl_->Lightfv(SGL_LIGHT0, SGL_DIFFUSE, kDiffuse);
    sgl_->Lightfv(SGL_LIGHT0, SGL_SPECULAR, kSpecular);
    sgl_->Lightfv(SGL_LIGHT0, SGL_POSITION, kPosition);
}

void PathScene::Release() {
    objects_.clear();
    drawList_.clear();
    textureMap_.clear();
    sgl_.reset();
    doubleFrame_.reset();
    outputFrame_ = nullptr;
}

void PathScene::DeleteObjects() {
    for (const auto& [name, picture] : textureMap_) sgl_->DeleteTextures(1, &name);
    textureMap_.clear();
    drawList_.clear();
    objects_.clear();
}

int32_t PathScene::AddMesh(const BoxMesh& mesh) {
    if (objects_.size() == kMostObjects || sgl_ == nullptr || mesh.triangles.empty()) return 0;
    try {
        SceneObject object;
        object.transform = {{}, false};
        object.vertices.reserve(3 * mesh.triangles.size());  // triangles point at them
        object.triangles.reserve(mesh.triangles.size());
        for (const BoxTriangle& triangle : mesh.triangles) AddTriangle(object, triangle);
        objects_.push_back(std::move(object));
    } catch (const std::bad_alloc&) {
        return 0;
    }
    return static_cast<int32_t>(objects_.size());
}

void PathScene::AddTriangle(SceneObject& object, const BoxTriangle& source) {
    SceneTriangle triangle{};
    triangle.blue = static_cast<uint8_t>(source.blue);
    triangle.green = static_cast<uint8_t>(source.green);
    triangle.red = static_cast<uint8_t>(source.red);
    if (source.hasTexture)
        triangle.textureName = NameOf({source.textureWidth, source.textureHeight, source.texturePixels});
    for (size_t i = 0; i < 3; ++i) {
        const BoxCorner& corner = source.corners[i];
        SceneVertex& vertex = object.vertices.emplace_back();
        vertex.model = {corner.x, corner.y, corner.z};
        if (triangle.textureName != 0) {
            vertex.s = TexturePosition(source.textureWidth, corner.picture.u);
            vertex.t = TexturePosition(source.textureHeight, corner.picture.v);
        }
        triangle.corners[i] = &vertex;
    }
    const auto& c = triangle.corners;
    triangle.normal = FaceNormal(c[0]->model, c[1]->model, c[2]->model);
    object.triangles.push_back(triangle);
}

/// The texture of a picture, made when it is new; 0 when all names are taken.
uint32_t PathScene::NameOf(const SceneTexture& picture) {
    for (const auto& [name, known] : textureMap_) {
        if (known == picture) return name;
    }
    uint32_t name = 0;
    sgl_->GenTextures(1, &name);
    if (name == 0) return 0;
    textureMap_[name] = picture;
    sgl_->BindTexture(SGL_TEXTURE_2D, name);
    sgl_->TexImage2D(SGL_TEXTURE_2D, 0, SGL_RGBA, picture.width, picture.height, 0, SGL_BGRA, SGL_UNSIGNED_BYTE,
                     picture.pixels);
    return name;
}

bool PathScene::BeginFrame(uint32_t* frame, int32_t width, int32_t height) {
    if (sgl_ == nullptr) return false;
    outputFrame_ = frame;
    sgl_->SetFrameBuffer(antialias_ ? doubleFrame_.get() : frame);
    sgl_->MatrixMode(SGL_PROJECTION);
    sgl_->LoadIdentity();
    const double k = static_cast<double>(height) / static_cast<double>(width);
    sgl_->Frustum(-0.5, 0.5, -0.5 * k, 0.5 * k, 1.0, 500.0);  // which also takes the frame over
    return sgl_->GetError() == SGL_NO_ERROR;
}

void PathScene::SetColorSpace(uint32_t yuv) {
    if (sgl_ != nullptr) sgl_->SetColorSpace(yuv);
}

PathScene::SceneObject* PathScene::FindObject(int32_t objectNumber) {
    const bool exists = objectNumber >= 1 && static_cast<size_t>(objectNumber) <= objects_.size();
    return exists ? &objects_[static_cast<size_t>(objectNumber) - 1] : nullptr;
}

void PathScene::ResetObjectTransform(int32_t objectNumber) {
    if (SceneObject* object = FindObject(objectNumber)) object->transform = {};
}

void PathScene::RotateObject(int32_t objectNumber, float radians, float x, float y, float z) {
    if (SceneObject* object = FindObject(objectNumber))
        object->transform = Product(object->transform, Rotation(radians, {x, y, z}));
}

void PathScene::TransformObjects() {
    for (SceneObject& object : objects_) {
        for (SceneVertex& vertex : object.vertices) vertex.world = Transform(object.transform, vertex.model);
    }
}

void PathScene::BuildDrawList() {
    drawList_.clear();
    for (SceneObject& object : objects_) {
        for (SceneTriangle& triangle : object.triangles) {
            triangle.zMin = 1e6f;
            triangle.zMax = -1e6f;
            for (const SceneVertex* corner : triangle.corners) {
                triangle.zMin = std::min(triangle.zMin, corner->world.z);
                triangle.zMax = std::max(triangle.zMax, corner->world.z);
            }
            drawList_.push_back(&triangle);
        }
    }
}

/// The viewer looks along -z: what lies at the lesser z is farther. Two flat triangles at one depth are equal.
bool PathScene::IsDrawnBefore(const SceneTriangle& a, const SceneTriangle& b) {
    if (a.zMin >= b.zMax) return false;
    if (b.zMin >= a.zMax) return true;
    return a.zMin + a.zMax < b.zMin + b.zMax;
}

/// A stable sort by insertion. The comparison does not order depths that are not numbers, or sums that round to the
/// same, in the sense that the standard sorts demand; this one ends under any comparison.
void PathScene::SortDrawList() {
    for (auto next = drawList_.begin(); next != drawList_.end(); ++next) {
        auto place = next;
        while (place != drawList_.begin() && IsDrawnBefore(**next, **(place - 1))) --place;
        std::rotate(place, next, next + 1);
    }
}

void PathScene::Render() {
    if (outputFrame_ == nullptr) return;
    if (antialias_) DoubleOutput();
    DrawTriangles();
    if (antialias_) HalveToOutput();
}

void PathScene::DrawTriangles() {
    sgl_->MatrixMode(SGL_MODELVIEW);
    sgl_->LoadIdentity();
    sgl_->Translated(0, 0, -4);
    uint32_t boundName = 0;
    sgl_->BindTexture(SGL_TEXTURE_2D, boundName);
    sgl_->Begin(SGL_TRIANGLES);
    for (const SceneTriangle* triangle : drawList_) {
        if (triangle->textureName != boundName) {
            boundName = triangle->textureName;
            sgl_->End();
            sgl_->BindTexture(SGL_TEXTURE_2D, boundName);
            sgl_->Begin(SGL_TRIANGLES);
        }
        sgl_->Color3ub(triangle->red, triangle->green, triangle->blue);
        const float normal[] = {triangle->normal.x, triangle->normal.y, triangle->normal.z};
        sgl_->Normal3fv(normal);
        for (const SceneVertex* corner : triangle->corners) {
            const float position[] = {corner->world.x, corner->world.y, corner->world.z};
            sgl_->TexCoord2d(static_cast<double>(corner->s), static_cast<double>(corner->t));
            sgl_->Vertex3fv(position);
        }
    }
    sgl_->End();
}

/// What is in the frame already survives beneath the triangles.
void PathScene::DoubleOutput() {
    const auto width = static_cast<size_t>(width_), height = static_cast<size_t>(height_);
    for (size_t y = 0; y < height; ++y) {
        const uint32_t* in = outputFrame_ + y * width;
        uint32_t* out = doubleFrame_.get() + 2 * y * 2 * width;
        for (size_t x = 0; x < width; ++x) out[2 * x] = out[2 * x + 1] = in[x];
        std::copy_n(out, 2 * width, out + 2 * width);
    }
}

/// Alpha like the colours.
void PathScene::HalveToOutput() {
    const auto width = static_cast<size_t>(width_), height = static_cast<size_t>(height_);
    for (size_t y = 0; y < height; ++y) {
        const uint32_t* upper = doubleFrame_.get() + 2 * y * 2 * width;
        const uint32_t* lower = upper + 2 * width;
        for (size_t x = 0; x < width; ++x)
            outputFrame_[y * width + x] = MeanOfFour(upper[2 * x], upper[2 * x + 1], lower[2 * x], lower[2 * x + 1]);
    }
}

}  // namespace sgl
