#include "render/image_utility.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "render/kernels/pixel_rules.h"
#include "render/kernels/row_kernels.h"
#include "render/layer_blur.h"

namespace captionfx {
namespace {

using BlendRow = void (*)(uint32_t*, const uint32_t*, size_t);
using ChangeRow = void (*)(uint32_t*, size_t);

void BlendRows(uint32_t* destination, const uint32_t* source, int32_t width, int32_t height, int32_t pitch,
               BlendRow blend) {
    for (int32_t y = 0; y < height; ++y) {
        const std::ptrdiff_t row = std::ptrdiff_t{y} * (pitch / 4);
        blend(destination + row, source + row, static_cast<size_t>(std::max(width, 0)));
    }
}

void ChangeRows(uint32_t* pixels, int32_t width, int32_t height, int32_t pitch, ChangeRow change) {
    for (int32_t y = 0; y < height; ++y) {
        change(pixels + std::ptrdiff_t{y} * (pitch / 4), static_cast<size_t>(std::max(width, 0)));
    }
}

/// The 1-2-1 mean of three pixels above each other, colour weighed by alpha.
uint32_t Lowpass(uint32_t above, uint32_t here, uint32_t below) {
    const uint32_t a = AlphaOf(above), b = 2 * AlphaOf(here), c = AlphaOf(below);
    const uint32_t weight = a + b + c;
    if (weight < 2) return 0;  // a mean alpha that rounds to 0
    const uint32_t color = ColorOf([&](uint32_t shift) {
        const uint32_t sum = a * ChannelOf(above, shift) + b * ChannelOf(here, shift) + c * ChannelOf(below, shift);
        return (sum + weight / 2) / weight;
    });
    return WithAlpha(color, (weight + 2) / 4);
}

constexpr int32_t kFilterStrip = 64;  // columns filtered together, so that rows are read as they lie in memory

/// Low-passes up to kFilterStrip columns in place; `stride` in pixels. Beyond the ends the edge rows repeat.
void FilterStrip(uint32_t* pixels, int32_t width, int32_t height, std::ptrdiff_t stride) {
    std::array<uint32_t, kFilterStrip> above;
    std::copy_n(pixels, width, above.begin());
    for (int32_t y = 0; y < height; ++y, pixels += stride) {
        const uint32_t* const below = y + 1 < height ? pixels + stride : pixels;
        for (int32_t x = 0; x < width; ++x) {
            const uint32_t filtered = Lowpass(above[static_cast<size_t>(x)], pixels[x], below[x]);
            above[static_cast<size_t>(x)] = pixels[x];
            pixels[x] = filtered;
        }
    }
}

class BuiltIn final : public ImageUtilityOps {
public:
    explicit BuiltIn(const RowKernels& rows) : rows_(rows) {}

    void AttachImageUtility() noexcept override {}

    void CompositeStraight(uint32_t* destination, const uint32_t* source, int32_t width, int32_t height,
                           int32_t pitch) noexcept override {
        BlendRows(destination, source, width, height, pitch, rows_.CompositeStraight);
    }

    void CompositePremultiplied(uint32_t* destination, const uint32_t* source, int32_t width, int32_t height,
                                int32_t pitch) noexcept override {
        BlendRows(destination, source, width, height, pitch, rows_.CompositePremultiplied);
    }

    void CompositePremultipliedOnto(uint32_t* destination, const uint32_t* source, int32_t width, int32_t height,
                                    int32_t pitch) noexcept override {
        BlendRows(destination, source, width, height, pitch, rows_.CompositePremultipliedOnto);
    }

    /// BT.601 with studio range: Y 16 to 235, U and V 16 to 240; 12 bits of fraction.
    void RgbToYuv(uint8_t red, uint8_t green, uint8_t blue, uint8_t* first, uint8_t* second,
                  uint8_t* third) noexcept override {
        const int32_t r = red, g = green, b = blue;
        *first = static_cast<uint8_t>((1053 * r + 2064 * g + 401 * b + 67584) >> 12);
        *second = static_cast<uint8_t>((-606 * r - 1192 * g + 1798 * b + 526336) >> 12);
        *third = static_cast<uint8_t>((1798 * r - 1507 * g - 291 * b + 526336) >> 12);
    }

    void Unpremultiply(uint32_t* pixels, int32_t width, int32_t height, int32_t pitch) noexcept override {
        ChangeRows(pixels, width, height, pitch, rows_.Unpremultiply);
    }

    void Premultiply(uint32_t* pixels, int32_t width, int32_t height, int32_t pitch) noexcept override {
        ChangeRows(pixels, width, height, pitch, rows_.Premultiply);
    }

    void BlurFast(uint32_t* pixels, int32_t width, int32_t height, float radius) noexcept override {
        BlurLayer(pixels, width, height, radius, BlurKind::kOneBox);
    }

    /// The vertical 1-2-1 low-pass against flicker on interlaced displays.
    void PlaneFilter(uint32_t* pixels, int32_t width, int32_t height, int32_t pitch) noexcept override {
        for (int32_t x = 0; x < width; x += kFilterStrip) {
            FilterStrip(pixels + x, std::min(kFilterStrip, width - x), height, pitch / 4);
        }
    }

    void BlurSmooth(uint32_t* pixels, int32_t width, int32_t height, float radius) noexcept override {
        BlurLayer(pixels, width, height, radius, BlurKind::kThreeBoxes);
    }

private:
    const RowKernels& rows_;
};

constexpr const char* kModuleStem = "ImageUtility";

}  // namespace

ImageUtilityOps& BuiltInImageUtility() {
    static BuiltIn builtIn(BestRowKernels());
    return builtIn;
}

ImageUtilityOps& PlainImageUtility() {
    static BuiltIn plain(PlainRowKernels());
    return plain;
}

ImageUtility::ImageUtility(ModuleLoader& modules)
    : module_(modules.LoadBesideLibrary(kModuleStem)), ops_(&BuiltInImageUtility()) {
    if (!module_) return;
    const auto get = reinterpret_cast<ImageUtilityOps* (*)()>(module_->Find("GetImageUtility"));
    ImageUtilityOps* const own = get == nullptr ? nullptr : get();
    if (own == nullptr) return;
    ops_ = own;
    ops_->AttachImageUtility();
}

ImageUtility::~ImageUtility() {
    if (!module_ || ops_ == &BuiltInImageUtility()) return;
    const auto release = reinterpret_cast<void (*)(ImageUtilityOps*)>(module_->Find("ReleaseImageUtility"));
    if (release != nullptr) release(ops_);
}

}  // namespace captionfx
