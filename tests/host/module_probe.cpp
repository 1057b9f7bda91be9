// An image utility of a host's own, for the test that it is found: all its composites paint one colour.
#include <algorithm>

#include "render/image_utility_ops.h"

namespace {

int attached = 0, released = 0;

void Paint(uint32_t* destination, int32_t width, int32_t height, int32_t pitch) {
    for (int32_t y = 0; y < height; ++y, destination += pitch / 4) std::fill_n(destination, width, 0xFF123456U);
}

class PaintingOps final : public captionfx::ImageUtilityOps {
public:
    void AttachImageUtility() noexcept override { ++attached; }
    void CompositeStraight(uint32_t* destination, const uint32_t* /*source*/, int32_t width, int32_t height,
                           int32_t pitch) noexcept override {
        Paint(destination, width, height, pitch);
    }
    void CompositePremultiplied(uint32_t* destination, const uint32_t* /*source*/, int32_t width, int32_t height,
                                int32_t pitch) noexcept override {
        Paint(destination, width, height, pitch);
    }
    void CompositePremultipliedOnto(uint32_t* /*destination*/, const uint32_t* /*source*/, int32_t /*width*/,
                                    int32_t /*height*/, int32_t /*pitch*/) noexcept override {}
    void RgbToYuv(uint8_t /*red*/, uint8_t /*green*/, uint8_t /*blue*/, uint8_t* /*first*/, uint8_t* /*second*/,
                  uint8_t* /*third*/) noexcept override {}
    void Unpremultiply(uint32_t* /*pixels*/, int32_t /*width*/, int32_t /*height*/,
                       int32_t /*pitch*/) noexcept override {}
    void Premultiply(uint32_t* /*pixels*/, int32_t /*width*/, int32_t /*height*/, int32_t /*pitch*/) noexcept override {
    }
    void BlurFast(uint32_t* /*pixels*/, int32_t /*width*/, int32_t /*height*/, float /*radius*/) noexcept override {}
    void PlaneFilter(uint32_t* /*pixels*/, int32_t /*width*/, int32_t /*height*/, int32_t /*pitch*/) noexcept override {
    }
    void BlurSmooth(uint32_t* /*pixels*/, int32_t /*width*/, int32_t /*height*/, float /*radius*/) noexcept override {}
};

PaintingOps ops;

}  // namespace

extern "C" {
__attribute__((visibility("default"))) captionfx::ImageUtilityOps* GetImageUtility() {
    return &ops;
}
__attribute__((visibility("default"))) void ReleaseImageUtility(captionfx::ImageUtilityOps* handedOut) {
    if (handedOut == &ops) ++released;
}
/// How often it was attached, in tens, and released, in ones.
__attribute__((visibility("default"))) int CountAttachedAndReleased() {
    return attached * 10 + released;
}
}
