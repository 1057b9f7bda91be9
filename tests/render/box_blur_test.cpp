// The box blur of whole images.
#include "render/image/box_blur.h"

#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "render/image/image_base.h"

namespace KVTImageUtility {
namespace {

using Pixels = std::vector<uint32_t>;

uint32_t Channel(uint32_t pixel, uint32_t c) {
    return pixel >> (8 * c) & 255U;
}

/// Each pixel from all of its window.
Pixels Reference(const Pixels& in, int32_t width, int32_t height, int32_t radius) {
    if (std::min(width, height) <= 2 * radius) radius = (std::min(width, height) - 1) / 2;
    Pixels out(in.size());
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
            uint32_t sums[4] = {}, count = 0, area = 0;
            for (int32_t v = std::max(0, y - radius); v <= std::min(height - 1, y + radius); ++v) {
                for (int32_t u = std::max(0, x - radius); u <= std::min(width - 1, x + radius); ++u, ++area) {
                    const uint32_t pixel = in[static_cast<size_t>(v * width + u)];
                    if (Channel(pixel, 3) == 0) continue;
                    for (uint32_t c = 0; c < 4; ++c) sums[c] += Channel(pixel, c);
                    ++count;
                }
            }
            if (count == 0) continue;
            uint32_t& pixel = out[static_cast<size_t>(y * width + x)];
            for (uint32_t c = 0; c < 3; ++c) pixel |= sums[c] / count << (8 * c);
            pixel |= sums[3] / area << 24;
        }
    }
    return out;
}

TEST(BoxBlurTest, BothFormsAreTheMeanOfTheWindow) {
    for (uint32_t seed = 1; seed <= 60; ++seed) {
        std::mt19937 random(seed);
        const auto width = static_cast<int32_t>(1 + random() % 24), height = static_cast<int32_t>(1 + random() % 24);
        const auto radius = static_cast<int32_t>(1 + random() % 14);
        Pixels source(static_cast<size_t>(width * height));
        for (uint32_t& pixel : source) pixel = static_cast<uint32_t>(random()) & (random() % 3 == 0 ? 0xFFFFFFU : ~0U);
        for (const uint32_t level : {1U, 3U}) {
            constexpr uint32_t kGuard = 0xA5A5A5A5;
            const int32_t pitch = width + 3;
            Pixels out(static_cast<size_t>(pitch * height), kGuard);
            BoxBlurPlane(level, reinterpret_cast<uint8_t*>(out.data()), reinterpret_cast<const uint8_t*>(source.data()),
                         width, height, pitch * 4, width * 4, radius);
            const Pixels expected = Reference(source, width, height, radius);
            for (int32_t y = 0; y < height; ++y) {
                for (int32_t x = 0; x < pitch; ++x) {
                    const uint32_t want = x < width ? expected[static_cast<size_t>(y * width + x)] : kGuard;
                    ASSERT_EQ(out[static_cast<size_t>(y * pitch + x)], want)
                        << "seed " << seed << " level " << level << " at " << x << ", " << y;
                }
            }
        }
    }
}

TEST(BoxBlurTest, NothingToBlur) {
    // A radius of 0 changes nothing, but one that is cut to 0 clears the colour of transparent pixels.
    CImageARGB thin(9, 1);
    thin.Fill(0x00123456);
    thin.BoxBlur(0);
    const auto fifth = [&thin] { return reinterpret_cast<const uint32_t*>(thin.Pixels())[4]; };
    EXPECT_EQ(fifth(), 0x00123456U);
    thin.BoxBlur(5);
    EXPECT_EQ(fifth(), 0U);

    uint32_t untouched = 7;
    const uint32_t source = 8;
    auto* const out = reinterpret_cast<uint8_t*>(&untouched);
    EXPECT_EQ(BoxBlurPlane(1, out, reinterpret_cast<const uint8_t*>(&source), 1, 1, 4, 4, 0), 0);
    EXPECT_EQ(BoxBlurPlane(1, out, nullptr, 1, 1, 4, 4, 3), 0);
    EXPECT_EQ(untouched, 7U);
    CImageARGB nothing;
    nothing.BoxBlur(3);
    CImageARGB empty(0, 5);
    EXPECT_EQ(empty.Pixels(), nullptr);
}

}  // namespace
}  // namespace KVTImageUtility
