#include "render/image_utility.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "render/layer_blur.h"
#include "render/pixel.h"

namespace captionfx {
namespace {

/// Calls `operation` for each row of a rectangle, with the row's first pixel.
template <class Operation>
void ForEachRow(uint32_t* pixels, int32_t height, int32_t pitch, Operation operation) {
    for (int32_t y = 0; y < height; ++y) operation(pixels + std::ptrdiff_t{y} * (pitch / 4));
}

/// Replaces each destination pixel by blend(source pixel, destination pixel).
template <class Blend>
void BlendRows(uint32_t* destination, const uint32_t* source, int32_t width, int32_t height, int32_t pitch,
               Blend blend) {
    ForEachRow(destination, height, pitch, [&](uint32_t* row) {
        for (int32_t x = 0; x < width; ++x) row[x] = blend(source[x], row[x]);
        source += pitch / 4;
    });
}

template <class Change>
void ChangeRows(uint32_t* pixels, int32_t width, int32_t height, int32_t pitch, Change change) {
    ForEachRow(pixels, height, pitch, [&](uint32_t* row) {
        for (int32_t x = 0; x < width; ++x) row[x] = change(row[x]);
    });
}

/// A pixel whose three colour channels are channel(shift).
template <class Channel>
uint32_t ColorOf(Channel channel) {
    uint32_t pixel = 0;
    for (const uint32_t shift : kColorShifts) pixel |= std::min(channel(shift), 255U) << shift;
    return pixel;
}

// Over, with straight alpha sa and da: the result's alpha is A / 255 with A = 255 sa + da (255 - sa), and its colour is
// N / A, N = 255 sa sc + da (255 - sa) dc. All is kept whole until the one division. A premultiplied source channel
// stands for sa sc / 255, so that 65025 of it take the place of 255 sa sc.
template <bool kPremultiplied>
uint32_t OverStraight(uint32_t source, uint32_t destination) {
    const uint32_t sa = AlphaOf(source), da = AlphaOf(destination);
    const uint32_t alpha255 = 255 * sa + da * (255 - sa);
    const uint32_t sourceWeight = kPremultiplied ? 65025 : 255 * sa;
    if (sa == 0 && (!kPremultiplied || source == 0)) return destination;
    if (alpha255 == 0) return destination;
    const uint32_t color = ColorOf([&](uint32_t shift) {
        const uint32_t numerator =
            sourceWeight * ChannelOf(source, shift) + da * (255 - sa) * ChannelOf(destination, shift);
        return (numerator + alpha255 / 2) / alpha255;
    });
    return WithAlpha(color, Div255(alpha255));
}

uint32_t OverPremultiplied(uint32_t source, uint32_t destination) {
    const uint32_t left = 255 - AlphaOf(source);
    const auto over = [&](uint32_t shift) {
        return ChannelOf(source, shift) + Div255(ChannelOf(destination, shift) * left);
    };
    return WithAlpha(ColorOf(over), over(kAlphaShift));
}

uint32_t Premultiplied(uint32_t pixel) {
    const uint32_t alpha = AlphaOf(pixel);
    return WithAlpha(ColorOf([&](uint32_t shift) { return Div255(ChannelOf(pixel, shift) * alpha); }), alpha);
}

uint32_t Unpremultiplied(uint32_t pixel) {
    const uint32_t alpha = AlphaOf(pixel);
    if (alpha == 0) return 0;
    return WithAlpha(ColorOf([&](uint32_t shift) { return (255 * ChannelOf(pixel, shift) + alpha / 2) / alpha; }),
                     alpha);
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
    void AttachImageUtility() noexcept override {}

    void CompositeStraight(uint32_t* destination, const uint32_t* source, int32_t width, int32_t height,
                           int32_t pitch) noexcept override {
        BlendRows(destination, source, width, height, pitch, OverStraight<false>);
    }

    void CompositePremultiplied(uint32_t* destination, const uint32_t* source, int32_t width, int32_t height,
                                int32_t pitch) noexcept override {
        BlendRows(destination, source, width, height, pitch, OverStraight<true>);
    }

    void CompositePremultipliedOnto(uint32_t* destination, const uint32_t* source, int32_t width, int32_t height,
                                    int32_t pitch) noexcept override {
        BlendRows(destination, source, width, height, pitch, OverPremultiplied);
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
        ChangeRows(pixels, width, height, pitch, Unpremultiplied);
    }

    void Premultiply(uint32_t* pixels, int32_t width, int32_t height, int32_t pitch) noexcept override {
        ChangeRows(pixels, width, height, pitch, Premultiplied);
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
};

constexpr const char* kModuleStem = "ImageUtility";

}  // namespace

ImageUtilityOps& BuiltInImageUtility() {
    static BuiltIn builtIn;
    return builtIn;
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
