#include "render/image/image_base.h"

#include <algorithm>
#include <cstring>

#include "render/image/box_blur.h"

namespace KVTImageUtility {

CImageBase::CImageBase(int32_t width, int32_t height) {
    if (width <= 0 || height <= 0) return;
    const size_t bytes = static_cast<size_t>(width) * static_cast<size_t>(height) * kBytesPerPixel;
    owned_ = std::make_unique<uint8_t[]>(bytes);
    Attach(owned_.get(), width, height, width * kBytesPerPixel);
}

void CImageBase::Attach(uint8_t* pixels, int32_t width, int32_t height, int32_t pitch) {
    if (pixels != owned_.get()) owned_.reset();
    pixels_ = pixels;
    width_ = width;
    height_ = height;
    pitch_ = pitch;
}

void CImageBase::CopyFrom(const CImageBase& source) {
    if (pixels_ == nullptr || source.pixels_ == nullptr) return;
    if (width_ != source.width_ || height_ != source.height_) return;
    const size_t rowBytes = static_cast<size_t>(width_) * kBytesPerPixel;
    for (int32_t y = 0; y < height_; ++y) std::memcpy(Row(y), source.Row(y), rowBytes);
}

void CImageBase::Fill(uint32_t value) const {
    for (int32_t y = 0; y < height_; ++y) {
        for (int32_t x = 0; x < width_; ++x)
            std::memcpy(Row(y) + std::ptrdiff_t{x} * kBytesPerPixel, &value, sizeof value);
    }
}

void CImageARGB::BoxBlur(int32_t radius) {
    if (Pixels() == nullptr || radius == 0) return;
    CImageARGB copy(Width(), Height());
    copy.CopyFrom(*this);
    BoxBlurPlane(CpuLevel, Pixels(), copy.Pixels(), Width(), Height(), Pitch(), copy.Pitch(), radius);
}

}  // namespace KVTImageUtility
