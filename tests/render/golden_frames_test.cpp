// Small frames that a person has looked at, one feature each, on the fonts of boxes: the same bytes on every system.
#include <gtest/gtest.h>

#include "support/fake_platform.h"
#include "support/image_compare.h"

namespace captionfx::test {
namespace {

constexpr int32_t kWidth = 160, kHeight = 90;
constexpr uint32_t kRed = 0x2030E0, kGold = 0x30C0F0, kBlue = 0xC06020, kWhite = 0xFFFFFF;  // 0x00BBGGRR

struct GoldenFramesTest : testing::Test {
    GoldenFramesTest() {
        const FontSpec font = Font(u"Box", 48);
        owner.Title.SetDefaultFont(&font);
        owner.ChangeSettings([](TitleRenderSettings& s) {
            s.Width = kWidth;
            s.Height = kHeight;
            s.ClipRect = {0, 0, kWidth, kHeight};
            s.DestinationAlpha = 1;
        });
    }
    void SetFace(uint32_t color1, uint32_t color2, int32_t gradient, int32_t blur = 0) {
        MetaFace face = FaceOf(color1);
        face.Color2 = color2;
        face.GradType = gradient;
        face.BlurRadius = blur;
        owner.Title.SetDefaultFace(&face);
    }
    void SetBorder(int32_t size, uint32_t color, int32_t blur = 0) {
        MetaBorder border = BorderOf(size, color);
        border.BlurRadius = blur;
        owner.Title.SetDefaultBorder(&border);
    }
    void SetShadow(float offset, int32_t blur, int32_t extruded, uint32_t color2 = 0) {
        MetaShadow shadow = ShadowAt(offset, offset);
        shadow.Color2 = color2;
        shadow.GradType = 1;
        shadow.Alpha = 200;
        shadow.BlurRadius = blur;
        shadow.Height = extruded;
        owner.Title.SetDefaultShadow(&shadow);
    }
    testing::AssertionResult FrameMatches(const char* name) {
        std::vector<uint32_t> pixels(kWidth * kHeight);
        EXPECT_EQ(owner.Title.RenderFrame(pixels.data(), 0), kTitleOk);
        return MatchesGolden(name, pixels, kWidth, kHeight);
    }
    TestTitle owner;
};

TEST_F(GoldenFramesTest, GradientFaceBorderAndSoftShadow) {
    SetFace(kGold, kRed, 7);
    SetBorder(6, kBlue);
    SetShadow(5, 6, 0);
    owner.Add(u"abcd", 20, 12);
    EXPECT_TRUE(FrameMatches("gradient_border_shadow"));
}

TEST_F(GoldenFramesTest, ExtrudedShadow) {
    SetFace(kWhite, kWhite, 0);
    SetShadow(14, 0, 1, kRed);
    owner.Add(u"abc", 20, 8);
    EXPECT_TRUE(FrameMatches("extruded_shadow"));
}

TEST_F(GoldenFramesTest, RotatedAndFaded) {
    owner.ChangeDefaultString([](StringSpec& string) {
        string.RotateDegree = 25;
        SetText(string.PathID, "PATH_FADE");
        string.PathProgress = 0.6F;
    });
    SetFace(kRed, kGold, 3);
    SetBorder(4, kWhite);
    owner.Add(u"abc", 45, -12);
    EXPECT_TRUE(FrameMatches("rotated_faded"));
}

TEST_F(GoldenFramesTest, VerticalColumnsInYuv) {
    owner.ChangeDefaultString([](StringSpec& string) { string.Vertical = 1; });
    owner.ChangeSettings([](TitleRenderSettings& s) { s.PixelFormat = 1; });
    const FontSpec font = Font(u"Box", 32);
    owner.Title.SetDefaultFont(&font);
    SetFace(kRed, kGold, 1);
    owner.Add(u"ab\u4e00\r\ncde", 100, 4);
    EXPECT_TRUE(FrameMatches("vertical_yuv"));
}

TEST_F(GoldenFramesTest, SoftFaceUnderPostFilter) {
    owner.ChangeSettings([](TitleRenderSettings& s) {
        s.PostFilter = 1;
        s.AntialiasMode = 2;
    });
    SetFace(kWhite, kGold, 2, 8);
    SetBorder(3, kBlue, 10);
    owner.Add(u"ab", 30.5F, 10.25F);
    owner.Add(u"c", 110, 30);
    EXPECT_TRUE(FrameMatches("soft_post_filter"));
}

}  // namespace
}  // namespace captionfx::test
