// Bilinear placement and the merge of planes.
#include "render/plane_drawing.h"

#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "render/pixel.h"
#include "render/rect.h"

namespace captionfx::test {
namespace {

GlyphBitmap Bitmap(int32_t width, int32_t height, std::vector<uint32_t> pixels) {
    GlyphBitmap bitmap{std::make_unique<uint32_t[]>(pixels.size()), width, height, 0, 0};
    std::ranges::copy(pixels, bitmap.Pixels.get());
    return bitmap;
}

struct Plane {
    int32_t Width, Height;
    std::vector<uint32_t> Pixels = std::vector<uint32_t>(static_cast<size_t>(Width * Height));
    int32_t Draw(const GlyphBitmap& bitmap, float x, float y, uint32_t alpha = 255) {
        return DrawGlyphBitmap({Pixels.data(), Width, Height}, {0, 0, Width, Height}, bitmap, x, y, alpha);
    }
    uint32_t At(int32_t x, int32_t y) { return Pixels[static_cast<size_t>(y * Width + x)]; }
};

TEST(PlaneDrawingTest, ASolidPixelComesOutAs254) {
    const GlyphBitmap white = Bitmap(1, 1, {0xFFFFFFFF});
    Plane plane{4, 4};
    EXPECT_EQ(plane.Draw(white, 2, 1), 1);
    EXPECT_EQ(plane.At(2, 1), 0xFEFEFEFEU);  // 255 * 65356 >> 16 = 254; 254 * 256 >> 8; 255 * 255 >> 8
    for (int32_t i = 0; i < 16; ++i) {
        EXPECT_TRUE(i == 6 || plane.Pixels[static_cast<size_t>(i)] == 0) << i;
    }
}

TEST(PlaneDrawingTest, WholePositionsAtOrBelowZeroLandOnePixelOn) {
    const GlyphBitmap two = Bitmap(2, 2, {0xFF0000FF, 0xFF00FF00, 0xFFFF0000, 0xFFFFFFFF});
    Plane plane{4, 4};
    plane.Draw(two, 0, 1);
    EXPECT_EQ(plane.At(0, 1), 0U);
    // Neighbours of weight 0 have a say in the colour: blue and green, half of each, 127 * 255 >> 8 = 126.
    EXPECT_EQ(plane.At(1, 1), 0xFE007E7EU) << "one to the right";
    EXPECT_EQ(plane.At(2, 1), 0U) << "the last column is lost";
    EXPECT_EQ(plane.At(1, 2), 0xFE7E7E7EU) << "rows below 0 keep their place";
    Plane below{4, 4};
    below.Draw(two, 1, -1);
    EXPECT_EQ(below.At(1, 0), 0xFE7E007EU);
    EXPECT_EQ(below.At(1, 1), 0U);
}

TEST(PlaneDrawingTest, LaterCharactersLieOverEarlierOnes) {
    Plane plane{2, 1, {0x80400000, 0xFF204060}};
    plane.Draw(Bitmap(1, 1, {0x80FFFFFF}), 1, 0.5F);  // fy 0.5: alpha 128 * 32678 >> 16 = 63
    // t = (255 - 255)(...) = 0: alpha 255; channel (c * (256 - 63) >> 8) + (255 * 64 >> 8 = 63).
    EXPECT_EQ(plane.At(1, 0),
              0xFF000000U | (32 * 193 / 256 + 63) << 16U | (64 * 193 / 256 + 63) << 8U | (96 * 193 / 256 + 63));
    plane.Draw(Bitmap(1, 1, {0xFFFFFFFF}), 0.25F, 0.5F, 100);
    // alpha: 255 * 24508 >> 16 = 95; 95 * 101 >> 8 = 37; t = 127 * 219 >> 8 = 108; red 64 * 219 >> 8 = 54, + 255 * 38
    // >> 8 = 37.
    EXPECT_EQ(plane.At(0, 0), (255U - 108) << 24U | 91U << 16U | 37U << 8U | 37U);
}

TEST(PlaneDrawingTest, RefusesAndClips) {
    const GlyphBitmap white = Bitmap(3, 3, std::vector<uint32_t>(9, 0xFFFFFFFF));
    Plane plane{4, 4};
    EXPECT_EQ(plane.Draw(white, 1, 1, 0), 0);
    EXPECT_EQ(plane.Draw(GlyphBitmap{}, 1, 1), 0);
    EXPECT_EQ(DrawGlyphBitmap({nullptr, 4, 4}, {0, 0, 4, 4}, white, 1, 1, 255), 0);
    constexpr float kHuge[] = {std::numeric_limits<float>::quiet_NaN(),
                               std::numeric_limits<float>::infinity(),
                               3e38F,
                               -3e38F,
                               2147483648.0F,
                               -2147483648.0F,
                               4.0F,
                               -3.0F};
    for (const float at : kHuge) {
        EXPECT_EQ(plane.Draw(white, at, 1), 1);
        EXPECT_EQ(plane.Draw(white, 1, at), 1);
    }
    EXPECT_EQ(plane.Pixels, std::vector<uint32_t>(16));
    DrawGlyphBitmap({plane.Pixels.data(), 4, 4}, {2, -5, 900, 2}, white, 1, 1, 255);
    for (int32_t i = 0; i < 16; ++i) {
        EXPECT_EQ(plane.Pixels[static_cast<size_t>(i)] != 0, i == 6 || i == 7) << i;
    }
}

TEST(PlaneDrawingTest, MergesFaceOverBorder) {
    const struct {
        uint32_t border, face, merged;
    } cases[] = {
        {0x80402010, 0x00000000, 0x80402010},
        {0x80402010, 0xFF010203, 0xFF010203},
        {0x00FFFFFF, 0x40102030, 0x40102030},
        {0x00FFFFFF, 0x00102030, 0x00102030},
        // a = 64 + 128 = 192; red (16 + 192 * 64 / 128) * 192 >> 8 = 112 * 192 >> 8 = 84; green (32 + 48) -> 60; blue
        // (48 + 24) -> 54
        {0x80402010, 0x40102030, 0xC0543C36},
        // a = 255; red (0 + 56 * 100 / 200 = 28) * 255 >> 8 = 27
        {0xC8640000, 0xC8000000, 0xFF1B0000},
    };
    for (const auto& c : cases) {
        uint32_t border[2] = {c.border, 5}, face[2] = {c.face, 0xFF000000};
        MergeFaceOverBorder({border, 2, 1}, {face, 2, 1}, {0, 0, 1, 1});
        EXPECT_EQ(border[0], c.merged) << std::hex << c.border << ' ' << c.face;
        EXPECT_EQ(border[1], 5U) << "beyond the rectangle";
    }
}

}  // namespace
}  // namespace captionfx::test
