#include "sgl/textures.h"

#include <bit>
#include <new>

namespace sgl {
namespace {

constexpr int32_t kLargestPowerOfTwo = 1024;

int32_t Log2OrZero(int32_t side) {
    const bool known = side > 0 && side <= kLargestPowerOfTwo && std::has_single_bit(static_cast<uint32_t>(side));
    return known ? std::countr_zero(static_cast<uint32_t>(side)) : 0;
}

}  // namespace

const SGLTexture* TextureManager::Add(const uint32_t* pixels, int32_t width, int32_t height) {
    if (pixels == nullptr) return nullptr;
    try {
        records_.push_back({height, width, Log2OrZero(height), Log2OrZero(width), pixels});
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    return &records_.back();
}

void TextureManager::Remove(const SGLTexture* record) {
    records_.remove_if([record](const SGLTexture& r) { return &r == record; });
}

}  // namespace sgl
