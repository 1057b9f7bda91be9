// Vetting of font requests and measuring of fonts.
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

struct FontEnvironmentTest : testing::Test {
    MetaFont Measure(float size, int32_t& status) {
        MetaFont font{};
        status = MeasureFont(fonts, kEmSize, size, LogFontOf(Font(u"Box"), -2048), font);
        return font;
    }
    FakeFonts fonts;
};

TEST_F(FontEnvironmentTest, SizesBecomeRatios) {
    const struct {
        float size, ratio;
        int32_t status;
    } cases[] = {
        {24, 0.01171875F, kTitleOk},
        {-24, 0.01171875F, kTitleOk},
        {1638, 1638.0F / 2048, kTitleOk},
        {1638.5F, 1638.0F / 2048, kTitleFailure},
        {-2000, 1638.0F / 2048, kTitleFailure},
        {0, 0, kTitleOk},
        {std::numeric_limits<float>::infinity(), 1638.0F / 2048, kTitleFailure},
        {std::numeric_limits<float>::quiet_NaN(), 1638.0F / 2048, kTitleFailure},
    };
    for (const auto& c : cases) {
        int32_t status = -1;
        const MetaFont font = Measure(c.size, status);
        EXPECT_EQ(font.SizeRatio, c.ratio) << c.size;
        EXPECT_EQ(status, c.status) << c.size;
        EXPECT_EQ(font.LogFont.lfHeight, -2048) << c.size;
    }
    int32_t status = -1;
    EXPECT_TRUE(std::signbit(Measure(0, status).SizeRatio));
}

TEST_F(FontEnvironmentTest, BrokenMetricsAreReplaced) {
    OutlineMetrics& metrics = fonts.Families[u"Box"].Metrics;
    metrics.Ascent = metrics.Descent = 0;
    metrics.Height = 8000;
    int32_t status = -1;
    MetaFont font = Measure(2048.0F / 4, status);
    EXPECT_EQ(font.Ascent, 1491.0F / 4);
    EXPECT_EQ(font.Descent, -431.0F / 4);
    EXPECT_EQ(font.IntLead, 256.0F / 4);
    metrics.Descent = -1;
    metrics.Height = 8001;
    font = Measure(2048.0F / 4, status);
    EXPECT_EQ(font.Ascent, 0);
    EXPECT_EQ(font.IntLead, 353.0F / 4);
    EXPECT_EQ(status, kTitleOk);
    fonts.Families[u"Box"].HasOutlines = false;
    font = Measure(2048.0F / 4, status);
    EXPECT_EQ(status, kTitleFailure);
    EXPECT_EQ(font.Ascent, 1491.0F / 4);
}

TEST_F(FontEnvironmentTest, RequestsAreVetted) {
    const InstalledFonts installed = ListInstalledFonts(fonts);
    EXPECT_EQ(installed.size(), 6U);
    FontSpec request = Font(u"Tall", 12);
    request.CharSet = 200;
    request.Bold = request.Italic = request.Underline = request.Strikeout = 1;
    const FontSpec kept = VetFont(fonts, installed, request);
    EXPECT_EQ(std::memcmp(&kept, &request, sizeof kept), 0);
    for (const char16_t* unusable : {u"tall", u"Missing", u"Bitmap", u""}) {
        SetText(request.FaceName, unusable);
        const FontSpec vetted = VetFont(fonts, installed, request);
        EXPECT_EQ(TextOf(vetted.FaceName), u"Box");
        EXPECT_EQ(vetted.CharSet, 0U);
        EXPECT_EQ(vetted.Size, 12);
        EXPECT_EQ(vetted.Bold + vetted.Italic + vetted.Underline + vetted.Strikeout, 4);
    }
}

TEST_F(FontEnvironmentTest, ANameMayFillItsField) {
    FontSpec request = Font(u"Box");
    std::fill(std::begin(request.FaceName), std::end(request.FaceName), u'x');  // without a terminating zero
    EXPECT_EQ(TextOf(VetFont(fonts, ListInstalledFonts(fonts), request).FaceName), u"Box");
    EXPECT_EQ(TextOf(LogFontOf(request, 1).lfFaceName).size(), 31U);
}

}  // namespace
}  // namespace captionfx::test
