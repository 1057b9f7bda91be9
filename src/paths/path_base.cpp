#include "paths/path_base.h"

#include <algorithm>

#include "platform/portable_math.h"

namespace captionfx {

using KVTImageUtility::CImageARGB;

int32_t CPathBase::CalcCharacter(int32_t /*pass*/, int32_t index, float /*progress*/, CharPlacement* placement) {
    const CharBox& box = boxes_[static_cast<size_t>(index)];
    *placement = {.X = box.Left, .Y = box.Top, .ScaleX = 1, .ScaleY = 1, .Rotation = 0, .Alpha = 255};
    return 1;
}

int32_t CPathBase::SetSourceImage(uint8_t* pixels, int32_t width, int32_t height, int32_t stride) {
    source_.Attach(pixels, width, height, stride);
    return kTitleOk;
}

int32_t CPathBase::SetTargetImage(uint8_t* pixels, int32_t width, int32_t height, int32_t stride) {
    target_.Attach(pixels, width, height, stride);
    return kTitleOk;
}

int32_t CPathBase::SetPixelFormat(int32_t format) {
    pixelFormat_ = format;
    return kTitleOk;
}

int32_t CPathBase::ProcessImage(float /*progress*/) {
    if (source_.Width() != target_.Width() || source_.Height() != target_.Height()) return kTitleFailure;
    target_.CopyFrom(source_);
    return kTitleOk;
}

int32_t CPathBase::GetImageBounds(TitleRect* out, const TitleRect* /*in*/) {
    *out = {0, 0, source_.Width(), source_.Height()};
    return kTitleOk;
}

int32_t CPathBase::SetCanvasSize(int32_t width, int32_t height) {
    canvasWidth_ = width;
    canvasHeight_ = height;
    return 1;
}

int32_t CPathBase::SetCharCount(int32_t count) {
    charCount_ = count;
    return 1;
}

int32_t CPathBase::ReleaseResources() {
    return 1;
}

int32_t CPathBase::SetStringRect(const TitleRectF& rect, float angle) {
    stringRect_ = rect;
    angleDeg_ = angle;
    const float negated = -angle * kPi / 180;
    sine_ = SinF(negated);
    cosine_ = CosF(negated);

    const float radians = angle * kPi / 180;
    const float c = CosF(radians), s = SinF(radians);
    const auto w = static_cast<float>(canvasWidth_), h = static_cast<float>(canvasHeight_);
    const float corners[4][2] = {{0, 0}, {w, 0}, {0, h}, {w, h}};
    bool isFirst = true;
    for (const auto& [x, y] : corners) {
        const bool turned = angle != 0;
        const float u = turned ? (x - rect.x) * c + (y - rect.y) * s + rect.x : x;
        const float v = turned ? (y - rect.y) * c - (x - rect.x) * s + rect.y : y;
        bounds_ = isFirst ? PathCanvasBounds{.Top = v, .Bottom = v, .Right = u, .Left = u}
                          : PathCanvasBounds{.Top = std::min(bounds_.Top, v),
                                             .Bottom = std::max(bounds_.Bottom, v),
                                             .Right = std::max(bounds_.Right, u),
                                             .Left = std::min(bounds_.Left, u)};
        isFirst = false;
    }
    return 1;
}

int32_t CPathBase::SetCharBox(int32_t index, const CharBox& box) {
    if (index >= charCount_ || index < 0 || static_cast<size_t>(index) > boxes_.size()) return 0;
    boxes_.insert(boxes_.begin() + index, box);
    return 1;
}

void CPathBase::FindOpaqueBounds(TitleRect* out, const CImageARGB& image) {
    *out = {.left = image.Width() - 1, .top = image.Height() - 1, .right = 0, .bottom = 0};
    for (int32_t y = 0; y < image.Height(); ++y) {
        const uint8_t* alpha = image.Row(y) + 3;
        for (int32_t x = 0; x < image.Width(); ++x, alpha += CImageARGB::kBytesPerPixel) {
            if (*alpha == 0) continue;
            *out = {.left = std::min(out->left, x),
                    .top = std::min(out->top, y),
                    .right = std::max(out->right, x),
                    .bottom = std::max(out->bottom, y)};
        }
    }
}

}  // namespace captionfx
