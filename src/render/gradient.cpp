#include "render/gradient.h"

#include <cstddef>

#include "render/pixel.h"

namespace captionfx {
namespace {

struct Corners {
    uint32_t TopLeft, BottomLeft, TopRight, BottomRight;
};

Corners CornersOf(uint32_t c1, uint32_t c2, int32_t type) {
    uint32_t mid = 0;
    for (const uint32_t shift : kColorShifts) mid |= (ChannelOf(c1, shift) + ChannelOf(c2, shift)) / 2 << shift;
    switch (type) {
        case 1:
            return {c1, c2, c1, c2};
        case 2:
            return {c2, c2, c1, c1};
        case 3:
            return {c1, c1, c2, c2};
        case 4:
            return {c2, mid, mid, c1};
        case 5:
            return {mid, c1, c2, mid};
        case 6:
            return {mid, c2, c1, mid};
        case 7:
            return {c1, mid, mid, c2};
        default:
            return {c2, c1, c2, c1};
    }
}

/// The walk from one colour to another in `steps` steps: each channel start + (n step >> 12), steps cut toward zero.
class ColorWalk {
public:
    ColorWalk(uint32_t from, uint32_t to, int32_t steps) {
        for (size_t c = 0; c < 3; ++c) {
            start_[c] = static_cast<int32_t>(ChannelOf(from, kColorShifts[c]));
            step12_[c] = (static_cast<int32_t>(ChannelOf(to, kColorShifts[c])) - start_[c]) * 4096 / steps;
        }
    }

    [[nodiscard]] uint32_t At(int32_t n) const {
        uint32_t color = 0;
        for (size_t c = 0; c < 3; ++c) {
            const int32_t value = start_[c] + static_cast<int32_t>((int64_t{step12_[c]} * n) >> 12);
            color |= static_cast<uint32_t>(value) << kColorShifts[c];
        }
        return color;
    }

private:
    int32_t start_[3], step12_[3];
};

void SetColor(uint32_t& pixel, uint32_t color) {
    pixel = WithAlpha(color, AlphaOf(pixel));
}

}  // namespace

int32_t FillGradient(uint32_t* pixels, int32_t width, int32_t height, uint32_t color1, uint32_t color2, int32_t type) {
    if (pixels == nullptr || width < 1 || height < 1) return 0;
    const Corners corners = CornersOf(color1, color2, type);
    const auto row = [&](int32_t y) { return pixels + std::ptrdiff_t{y} * width; };
    if (height > 1) {
        const ColorWalk left(corners.TopLeft, corners.BottomLeft, height - 1);
        const ColorWalk right(corners.TopRight, corners.BottomRight, height - 1);
        for (int32_t y = 0; y < height; ++y) {
            SetColor(row(y)[0], left.At(y));
            SetColor(row(y)[width - 1], right.At(y));
        }
    }
    if (width < 2) return 1;
    for (int32_t y = 0; y < height; ++y) {
        const ColorWalk walk(row(y)[0], row(y)[width - 1], width - 1);
        for (int32_t x = 1; x < width - 1; ++x) SetColor(row(y)[x], walk.At(x));
    }
    return 1;
}

}  // namespace captionfx
