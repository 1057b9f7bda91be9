// Gradients, and the layers of face, border and shadow from a mask.
#include "render/layers.h"

#include <gtest/gtest.h>

#include "render/gradient.h"
#include "render/image_utility.h"
#include "render/pixel.h"

namespace captionfx::test {
namespace {

TEST(GradientTest, CornersOfTheTypes) {
    // Red counts down the table: c1 = 200, c2 = 100, mid = 150, at top-left, bottom-left, top-right, bottom-right.
    const struct {
        int32_t type;
        uint32_t topLeft, bottomLeft, topRight, bottomRight;
    } cases[] = {{0, 100, 200, 100, 200}, {1, 200, 100, 200, 100}, {2, 100, 100, 200, 200}, {3, 200, 200, 100, 100},
                 {4, 100, 150, 150, 200}, {5, 150, 200, 100, 150}, {6, 150, 100, 200, 150}, {7, 200, 150, 150, 100},
                 {8, 100, 200, 100, 200}, {-1, 100, 200, 100, 200}};
    for (const auto& c : cases) {
        std::vector<uint32_t> pixels(5 * 5, 0x77000000);
        EXPECT_EQ(FillGradient(pixels.data(), 5, 5, 200, 100, c.type), 1);
        EXPECT_EQ(pixels[0], 0x77000000U | c.topLeft) << c.type;
        EXPECT_EQ(pixels[20], 0x77000000U | c.bottomLeft) << c.type;
        EXPECT_EQ(pixels[4], 0x77000000U | c.topRight) << c.type;
        EXPECT_EQ(pixels[24], 0x77000000U | c.bottomRight) << c.type;
    }
}

TEST(GradientTest, WalksInTwelveBitsOfFraction) {
    // 0 to 10 in 3 steps: step 40960 / 3 = 13653; values 13653 >> 12 = 3, 27306 >> 12 = 6. The right end stays as its
    // column wrote it.
    std::vector<uint32_t> rows(8);
    FillGradient(rows.data(), 4, 2, 0, 10, 3);
    EXPECT_EQ(rows, (std::vector<uint32_t>{0, 3, 6, 10, 0, 3, 6, 10}));
}

struct LayersTest : testing::Test {
    LayersTest() { render.ScaleX = render.ScaleY = 1; }

    static CoverageMask Solid(int32_t width, int32_t height) {
        CoverageMask mask = *MakeMask(width, height);
        std::ranges::fill(mask.Bytes, uint8_t{255});
        return mask;
    }
    GlyphBitmap Shadow(const CoverageMask& mask, const MetaShadow& style) {
        GlyphBitmap layer{nullptr, 0, 0, 10, 20};
        EXPECT_EQ(BuildShadowLayer(settings, layer, mask, *MakeBorderMasks(mask, 1.5F, 1.5F), style), 1);
        return layer;
    }
    /// The alphas of a layer, a row a line.
    static std::string Alphas(const GlyphBitmap& layer) {
        std::string rows;
        for (size_t i = 0; i < layer.PixelCount(); ++i) {
            if (i > 0 && i % static_cast<size_t>(layer.Width) == 0) rows += '/';
            rows += AlphaOf(layer.Pixels.get()[i]) == 0 ? '.' : '#';
        }
        return rows;
    }

    TitleRenderSettings render{};
    LayerSettings settings{render, BuiltInImageUtility(), 1.0F / 32};  // size 64: 10 are 8 pixels
    MetaFace face{.Enable = 1, .Color1 = 0x0000FF, .Color2 = 0x0000FF, .GradType = 1, .Alpha = 128, .BlurRadius = 0};
    MetaShadow shadow{1, 0, 0x332211, 0x332211, 0, 255, 0, 0, 0, 0};
};

TEST_F(LayersTest, BlurNeedsAMargin) {
    face.BlurRadius = 2;  // 2 / 32 * 25.6 = 1.6 and a little: a margin of 2
    face.Alpha = 255;
    GlyphBitmap layer{nullptr, 0, 0, 1, 2};
    BuildFaceLayer(settings, layer, Solid(4, 4), face);
    EXPECT_EQ(layer.Width, 8);
    EXPECT_EQ(layer.Height, 8);
    EXPECT_EQ(layer.X, -1);
    EXPECT_EQ(layer.Y, 0);
    render.ScaleX = 4;  // the smaller scale decides
    GlyphBitmap same{};
    BuildFaceLayer(settings, same, Solid(4, 4), face);
    EXPECT_EQ(same.Width, 8);
}

TEST_F(LayersTest, GradientsFillTheWholeLayer) {
    face.Color2 = 0x00FF00;
    face.Alpha = 255;
    CoverageMask mask = Solid(3, 3);
    mask.Bytes[4] = 0;
    GlyphBitmap layer{};
    BuildFaceLayer(settings, layer, mask, face);
    EXPECT_EQ(layer.Pixels[0], 0xFFFF0000U);
    EXPECT_EQ(layer.Pixels[4] & kColorMask, 0x7F7F00U) << "transparent pixels too";
    face.Color2 = face.Color1 | 0x01000000;  // equal but for the top byte: a gradient of one colour
    layer = {};
    BuildFaceLayer(settings, layer, mask, face);
    EXPECT_EQ(layer.Pixels[4], 0x00FF0000U);
    MetaBorder border{.Enable = 1, .Size = -1, .Color1 = 0, .Color2 = 0, .GradType = 0, .Alpha = 255, .BlurRadius = 0};
    GlyphBitmap none{};
    EXPECT_EQ(BuildBorderLayer(settings, none, mask, border), 1);
    EXPECT_FALSE(none.Pixels) << "a negative size draws no border";
    border.Size = 0;
    BuildBorderLayer(settings, none, mask, border);
    EXPECT_TRUE(none.Pixels);
}

TEST_F(LayersTest, ShadowsAreCastByFaceBorderOrBoth) {
    const CoverageMask dot = Solid(1, 1);
    GlyphBitmap layer = Shadow(dot, shadow);
    EXPECT_EQ(layer.Width, 1);
    EXPECT_EQ(layer.Pixels[0], 0xFF112233U);
    shadow.EnableBorder = 1;
    layer = Shadow(dot, shadow);
    EXPECT_EQ(Alphas(layer), ".###./#####/#####/#####/.###.");
    shadow.EnableFace = 0;
    EXPECT_EQ(Alphas(Shadow(dot, shadow)), ".###./#####/##.##/#####/.###.") << "a hole where the glyph is";
    shadow.EnableBorder = 0;
    EXPECT_FALSE(Shadow(dot, shadow).Pixels);
}

TEST_F(LayersTest, OffsetsMoveShadowsOrStretchThem) {
    render.ScaleX = 2;
    shadow.OffsetX = 1.25F;
    shadow.OffsetY = -3;
    GlyphBitmap layer = Shadow(Solid(1, 1), shadow);
    EXPECT_EQ(layer.X, 12.5F);
    EXPECT_EQ(layer.Y, 17);
    EXPECT_EQ(layer.Width, 1);

    render.ScaleX = 1;
    shadow.Height = 1;
    const struct {
        float dx, dy, x, y;
        const char* alphas;
        int32_t blur = 0;  // 1: a margin of 1, yet too small a radius to soften anything
    } cases[] = {
        {3, 0, 10, 20, ".###"},  // from one step away to the offset
        {0, -2, 10, 18, "#/#/."},
        {-2, -2, 8, 18, "#../.#./..."},
        {4, 2, 10, 20, ".#.../..##./....#"},  // rows t / 2, cut: 0, 1, 1, 2
        {0.5F, 0.9F, 10, 20, "."},            // below a step in both: nothing lands
        {2.5F, -2.5F, 10, 17.5F,
         ".##/.../..."},  // down or up before across: y 3 - 2.5 - 1 and 3 - 1.5 - 1, both cut to 0
        {0, -2, 9, 17, ".../.#./.#./.../...", 1},
        {-2, -2, 7, 17, "...../.#.../..#../...../.....", 1},
        {-2.5F, 0, 6.5F, 19, "...../##.../.....", 1},  // columns 5 - 2.5 - 1 - 1 and 1.5, cut
    };
    settings.SizeRatio = 1e-5F;
    for (const auto& c : cases) {
        shadow.OffsetX = c.dx;
        shadow.OffsetY = c.dy;
        shadow.BlurRadius = c.blur;
        layer = Shadow(Solid(1, 1), shadow);
        EXPECT_EQ(layer.X, c.x) << c.dx << ' ' << c.dy;
        EXPECT_EQ(layer.Y, c.y) << c.dx << ' ' << c.dy;
        EXPECT_EQ(Alphas(layer), c.alphas) << c.dx << ' ' << c.dy;
    }
    EXPECT_EQ(layer.Pixels[5], 0xFF000000U) << "the margin has no colour";
    EXPECT_EQ(layer.Pixels[6], 0xFF112233U);
    shadow.OffsetX = 1e9F;
    GlyphBitmap huge{};
    EXPECT_EQ(BuildShadowLayer(settings, huge, Solid(1, 1), *MakeBorderMasks(Solid(1, 1), 0, 0), shadow), 0);
    EXPECT_FALSE(huge.Pixels);
}

}  // namespace
}  // namespace captionfx::test
