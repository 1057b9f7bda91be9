// From a character to its layers: matrices, gray levels, radii, positions, what is built when.
#include "render/glyph_layers.h"

#include <algorithm>
#include <limits>

#include <gtest/gtest.h>

#include "render/image_utility.h"
#include "render/pixel.h"
#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

/// A font system whose one glyph is what the test says.
struct OneGlyph final : FontSystem, PlatformFont {
    void EnumerateFamilies(const std::function<void(std::u16string_view)>&) override {}
    LogFont DefaultGuiFont() override { return {}; }
    std::shared_ptr<const PlatformFont> Realise(const LogFont&) override {
        return {std::shared_ptr<const PlatformFont>(), this};
    }
    std::optional<OutlineMetrics> Metrics() const override { return std::nullopt; }
    TextExtent Extent(char16_t) const override { return {}; }
    bool FindMissingGlyphs(std::u16string_view, std::span<uint16_t>) const override { return false; }
    std::optional<GlyphCoverage> Coverage(char16_t, GlyphFormat format, const GlyphMatrix& matrix) const override {
        AskedFormat = format;
        AskedMatrix = matrix;
        return Glyph;
    }

    std::optional<GlyphCoverage> Glyph;
    mutable GlyphFormat AskedFormat{};
    mutable GlyphMatrix AskedMatrix{};
};

struct GlyphRasterTest : testing::Test {
    GlyphRasterTest() {
        render.ScaleX = render.ScaleY = 1;
        font.SizeRatio = 1.0F / 32;
    }
    std::optional<RasterizedGlyph> Raster(char16_t unit = u'a', GlyphTransform transform = {1, 1, 0}) {
        return RasterizeGlyph(settings, unit, font, transform);
    }
    OneGlyph fonts;
    TitleRenderSettings render{};
    GlyphSettings settings{fonts, render, false};
    MetaFont font{};
};

TEST_F(GlyphRasterTest, LevelsBecomeCoverage) {
    const struct {
        int32_t mode;
        GlyphFormat format;
        std::vector<uint8_t> levels, coverage;
    } cases[] = {
        {0, GlyphFormat::kGray8, {0, 1, 64, 65}, {0, 3, 255, 3}},  // a level above the top wraps
        {1, GlyphFormat::kGray4, {0, 1, 16, 8}, {0, 15, 255, 127}},
        {7, GlyphFormat::kGray4, {0, 1, 16, 8}, {0, 15, 255, 127}},
        {2, GlyphFormat::kGray2, {0, 1, 4, 2}, {0, 63, 255, 127}},
    };
    for (const auto& c : cases) {
        render.AntialiasMode = c.mode;
        fonts.Glyph = {c.levels, 3, 1, -2, 5};
        const std::optional<RasterizedGlyph> glyph = Raster();
        ASSERT_TRUE(glyph);
        EXPECT_EQ(fonts.AskedFormat, c.format);
        EXPECT_EQ(glyph->Mask.Bytes, c.coverage);
        EXPECT_EQ(glyph->Mask.Width, 4);
        EXPECT_EQ(glyph->OriginX, -2);
        EXPECT_EQ(glyph->OriginY, 5);
    }
    render.AntialiasMode = 3;
    fonts.Glyph = {{0xA0, 0, 0, 0, 0x01, 0, 0, 0x80}, 8, 2, 0, 0};
    const std::optional<RasterizedGlyph> mono = Raster();
    EXPECT_EQ(mono->Mask.Width, 32);
    EXPECT_EQ(mono->Mask.Row(0)[0] + mono->Mask.Row(0)[2] + mono->Mask.Row(1)[7] + mono->Mask.Row(1)[24], 4 * 255);
    EXPECT_EQ(std::ranges::count(mono->Mask.Bytes, 255), 4);
}

TEST_F(GlyphRasterTest, RowsAreAsLongAsTheByteCountAllows) {
    fonts.Glyph = {std::vector<uint8_t>(24, 16), 3, 2, 0, 0};  // padded to 12, where a multiple of 4 would be 4
    EXPECT_EQ(Raster()->Mask.Width, 4) << "24 is a multiple of 4";
    fonts.Glyph = {std::vector<uint8_t>(30, 16), 3, 2, 0, 0};  // 30 % 4, % 8: grows to 12, and 16 would not fit
    EXPECT_EQ(Raster()->Mask.Width, 12);
    fonts.Glyph = {std::vector<uint8_t>(7, 16), 4, 2, 0, 0};  // too short
    EXPECT_FALSE(Raster());
    fonts.Glyph = {std::vector<uint8_t>(8, 16), 0, 2, 0, 0};
    EXPECT_FALSE(Raster());
    fonts.Glyph = {{}, 4, 2, 0, 0};
    EXPECT_FALSE(Raster());
}

TEST_F(GlyphRasterTest, Matrices) {
    fonts.Glyph = {std::vector<uint8_t>(8, 16), 4, 2, 0, 0};
    render.ScaleX = 2;
    Raster(u'a', {1.5F, 1, 0});  // x: 2 * 1.5 / 32 = 3 / 32 of 65536 = 6144; y: 2048
    EXPECT_EQ(fonts.AskedMatrix.eM11, 6144);
    EXPECT_EQ(fonts.AskedMatrix.eM12, 0);
    EXPECT_EQ(fonts.AskedMatrix.eM22, 2048);
    Raster(u'a', {1, 1, 30});  // clockwise: x goes down. sin(-30) 4096 = -2048, cut; cos(30) 2048 = 1773.6
    EXPECT_NEAR(fonts.AskedMatrix.eM12, -2048, 1);
    EXPECT_NEAR(fonts.AskedMatrix.eM21, 1024, 1);
    EXPECT_EQ(fonts.AskedMatrix.eM22, 1773);
    EXPECT_TRUE(Raster(u'a', {1, 1, 90})) << "a zero diagonal is not degenerate";
    EXPECT_FALSE(Raster(u'a', {0, 1, 0}));
    EXPECT_FALSE(Raster(u'a', {1, 0.0001F, 0})) << "cut to zero";
    const GlyphSettings vertical{fonts, render, true};
    EXPECT_TRUE(RasterizeGlyph(vertical, u'\x7f', font, {1, 1, 0}));  // laid on its side
    EXPECT_EQ(fonts.AskedMatrix.eM11, 0);
    EXPECT_EQ(fonts.AskedMatrix.eM12, 4096);
    EXPECT_TRUE(RasterizeGlyph(vertical, u'\x80', font, {1, 1, 0}));
    EXPECT_EQ(fonts.AskedMatrix.eM12, 0);
}

struct GlyphLayersTest : testing::Test {
    int32_t Build(GlyphLayers& layers, GlyphTransform transform = {1, 1, 0}, int32_t character = 0) {
        TitleRenderSettings settings{};
        owner.Title.GetRenderSettings(&settings);
        return BuildGlyphLayers({owner.Platform.FontsOfBoxes, settings, false}, BuiltInImageUtility(), owner.String(),
                                character, layers, transform);
    }
    TestTitle owner;
};

TEST_F(GlyphLayersTest, PositionsAndSizes) {
    const MetaBorder border = BorderOf(10, 0);
    owner.Title.SetDefaultBorder(&border);
    const MetaShadow shadow = ShadowAt(3, 4);
    owner.Title.SetDefaultShadow(&shadow);
    const CharSpacing wide{.WidthScale = 1.5F, .Spacing = 0};
    owner.Title.SetDefaultCharSpacing(&wide);
    owner.Add(u"a");
    owner.ChangeSettings([](TitleRenderSettings& s) {
        s.ScaleX = 2;
        s.ScaleY = 0.5F;
    });
    GlyphLayers layers;
    ASSERT_EQ(Build(layers, {1.5F, 1, 0}), 1);
    EXPECT_EQ(layers.DirtyMask, 0);
    // The box is 24 * 2 * 1.5 by 32 / 2 on the baseline, which lies the ascent of 48 / 2 below the character: its top
    // at 8.
    EXPECT_EQ(layers.Face.Width, 72);
    EXPECT_EQ(layers.Face.Height, 16);
    EXPECT_EQ(layers.Face.X, 0);
    EXPECT_EQ(layers.Face.Y, 8);
    // Radii of 8 * 2 * 1.5 + 0.00001 and 8 / 2 + 0.00001 reach 25 and 5 pixels.
    EXPECT_EQ(layers.Border.Width, 122);
    EXPECT_EQ(layers.Border.Height, 26);
    EXPECT_EQ(layers.Border.X, -25);
    EXPECT_EQ(layers.Border.Y, 3);
    EXPECT_EQ(layers.Shadow.Width, 122);
    EXPECT_EQ(layers.Shadow.X, -19);  // 3 * 2 to the right
    EXPECT_EQ(layers.Shadow.Y, 5);    // 4 / 2 down
    EXPECT_EQ(AlphaOf(layers.Border.Pixels[13 * 122 + 61]), 0U) << "the ring is hollow";
}

TEST_F(GlyphLayersTest, OnlyDirtyLayersAreBuilt) {
    owner.Add(u"a ");
    GlyphLayers layers;
    layers.DirtyMask = kFaceDirty;
    EXPECT_EQ(Build(layers), 1);
    EXPECT_TRUE(layers.Face.Pixels);
    EXPECT_FALSE(layers.Border.Pixels);
    const uint32_t* const pixels = layers.Face.Pixels.get();
    EXPECT_EQ(Build(layers), 1) << "clean";
    EXPECT_EQ(layers.Face.Pixels.get(), pixels);

    constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();
    for (const GlyphTransform bad : {GlyphTransform{0, 1, 0}, {1, -1, 0}, {1, kNotANumber, 0}}) {
        GlyphLayers failed;
        Build(failed);
        failed.DirtyMask = kAllLayersDirty;
        EXPECT_EQ(Build(failed, bad), 0);
        EXPECT_FALSE(failed.Face.Pixels) << "what was there is freed";
    }
    for (const int32_t bad : {-1, 2}) {
        GlyphLayers failed;
        EXPECT_EQ(Build(failed, {1, 1, 0}, bad), 0);
        EXPECT_EQ(failed.DirtyMask, kAllLayersDirty);
    }
    GlyphLayers space;
    EXPECT_EQ(Build(space, {1, 1, 0}, 1), 0);
    EXPECT_EQ(space.DirtyMask, 0) << "not tried again";
}

}  // namespace
}  // namespace captionfx::test
