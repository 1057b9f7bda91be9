#include "paths/perspective_scroll.h"

#include "paths/travel_paths.h"
#include "sgl/path_scene.h"

namespace captionfx {
namespace {

constexpr int32_t kSlab = 1;                 // number of the scene's only object
constexpr float kTilt = 1.0681415F;          // radians, 61.2 degrees
constexpr uint32_t kBlackOfAyuv = 0x108080;  // Y 16, U and V 128, alpha 0

const uint32_t* WordsOf(const uint8_t* pixels) {
    return reinterpret_cast<const uint32_t*>(pixels);
}

}  // namespace

void ScrollUpAndFade(const PathFrame& f, CharPlacement& out) {
    ScrollUp(f, out);
    const auto top = static_cast<float>(static_cast<double>(f.H) * 0.3);
    out.Alpha = ClampedAlpha(top > out.Y ? 255 - Ratio(top - out.Y, top) * 255 : 255);
}

CPathPerspectiveScroll::CPathPerspectiveScroll() = default;
CPathPerspectiveScroll::~CPathPerspectiveScroll() = default;

int32_t CPathPerspectiveScroll::SetSourceImage(uint8_t* pixels, int32_t width, int32_t height, int32_t stride) {
    if (pixels != source_.Pixels()) scene_.reset();
    return CPathBase::SetSourceImage(pixels, width, height, stride);
}

int32_t CPathPerspectiveScroll::SetTargetImage(uint8_t* pixels, int32_t width, int32_t height, int32_t stride) {
    if (width != target_.Width() || height != target_.Height()) scene_.reset();
    return CPathBase::SetTargetImage(pixels, width, height, stride);
}

std::unique_ptr<sgl::PathScene> CPathPerspectiveScroll::MakeScene() const {
    const int32_t width = target_.Width(), height = target_.Height();
    const float aspect = static_cast<float>(width) / static_cast<float>(height);
    auto scene = std::make_unique<sgl::PathScene>();
    if (!scene->Init(width, height, 1)) return nullptr;
    constexpr int32_t kGray = 120;
    sgl::BoxMesh slab = sgl::CreateBoxMesh(0.25F, -0.25F, -4 / aspect, 4 / aspect, 1.5F, -1.5F, kGray, kGray, kGray);
    sgl::SetBoxFaceTexture(slab, WordsOf(source_.Pixels()), width, height, {{{0, 0}, {1, 0}, {0, 1}, {1, 1}}});
    return scene->AddMesh(slab) == kSlab ? std::move(scene) : nullptr;
}

int32_t CPathPerspectiveScroll::ProcessImage(float /*progress*/) {
    const int32_t width = target_.Width(), height = target_.Height();
    if (source_.Width() != width || source_.Height() != height || width < 1 || height < 1) return kTitleFailure;
    if (!scene_) scene_ = MakeScene();
    if (!scene_ || !scene_->BeginFrame(reinterpret_cast<uint32_t*>(target_.Pixels()), width, height))
        return kTitleFailure;
    const bool isYuv = pixelFormat_ == kPixelFormatAYUV;
    scene_->SetColorSpace(isYuv ? 1 : 0);
    target_.Fill(isYuv ? kBlackOfAyuv : 0);
    scene_->ResetObjectTransform(kSlab);
    scene_->RotateObject(kSlab, kTilt, 1, 0, 0);
    scene_->TransformObjects();
    scene_->BuildDrawList();
    scene_->SortDrawList();
    scene_->Render();
    return kTitleOk;
}

}  // namespace captionfx
