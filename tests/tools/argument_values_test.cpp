// How values of the command line are read, where a wrong reading would not show as an error.
#include "tools/argument_values.h"

#include <string>

#include <gtest/gtest.h>

#include "tools/frame_times.h"

namespace captionfx {
namespace {

TEST(ArgumentValues, LineEndsOfEveryKindBecomeParagraphs) {
    EXPECT_EQ(ParseText("a\\nb\n"), u"a\r\nb\r\n");
    EXPECT_EQ(ParseText("a\r\nb"), u"a\r\nb") << "a pair must not become two paragraphs";
    EXPECT_EQ(ParseText("a\\\\nb"), u"a\\nb");
    EXPECT_EQ(ParseText("50\\% \\"), u"50\\% \\");
}

TEST(ArgumentValues, TextBecomesUtf16) {
    EXPECT_EQ(ParseText("\xC3\xA9 \xE5\xAD\x97 \xF0\x9F\x8E\xAC"), u"\u00E9 \u5B57 \U0001F3AC");
    EXPECT_FALSE(ParseText("\xC3(")) << "broken sequence";
    EXPECT_FALSE(ParseText("\xC0\xAF")) << "overlong";
    EXPECT_FALSE(ParseText("\xED\xA0\x80")) << "surrogate";
    EXPECT_FALSE(ParseText("a\xE5\xAD")) << "cut off";
}

TEST(ArgumentValues, ColorsNameRedFirst) {
    EXPECT_EQ(ParseColor("FF8001"), (Rgb{.red = 0xFF, .green = 0x80, .blue = 0x01}));
    EXPECT_EQ(ParseColor("#00ff7f"), (Rgb{.red = 0x00, .green = 0xFF, .blue = 0x7F}));
    for (const char* wrong : {"", "#", "FF80", "FF80011", "0x1234", "-12345", "GG0000", " FF8001", "##FF800"})
        EXPECT_FALSE(ParseColor(wrong)) << wrong;
}

TEST(ArgumentValues, NamesAreCountedInTheUnitsOfTheirFields) {
    // 15 pairs of surrogates are 30 units; the field has room for 31.
    std::string clapperboards;
    for (int i = 0; i < 15; ++i) clapperboards += "\xF0\x9F\x8E\xAC";
    EXPECT_TRUE(ParseFontName(clapperboards + "a"));
    EXPECT_FALSE(ParseFontName(clapperboards + "ab"));
}

TEST(ArgumentValues, Keyframes) {
    EXPECT_EQ(ParseKeyframe("0.5:PATH_FADE:-1"), (Keyframe{0.5F, "PATH_FADE", -1}));
    EXPECT_EQ(ParseKeyframe("1:wipe-left:1e2"), (Keyframe{1, "PATH_WIPELEFT", 100}));
    for (const char* wrong :
         {"", "1", "1:2", "1:PATH_FADE:", ":fade:1", "1::1", "nan:fade:1", "1:fade:in:1", "1:\xC3\xA9:1"})
        EXPECT_FALSE(ParseKeyframe(wrong)) << wrong;
}

TEST(FrameTimes, CountsTimesAndFiles) {
    EXPECT_EQ(FrameCount(0, 4, 25), 100) << "the end is not drawn";
    EXPECT_EQ(FrameCount(0, 0.1F, 30), 3) << "0.1f is a little more than a tenth";
    EXPECT_EQ(FrameCount(1, 1.001F, 25), 1);
    EXPECT_EQ(FrameCount(1, 1, 25), 0);
    EXPECT_EQ(FrameCount(0, 1e30F, 1000), 0);
    EXPECT_EQ(FrameTime(1, 25, 90000), 3601);
    EXPECT_EQ(FrameFile("100%%/%04d.png", 7), "100%/0007.png");
    EXPECT_EQ(FrameFile("%03d", 12345), "12345");
    for (const char* wrong : {"a.png", "%d%d", "%s.png", "%d%", "%%d.png"})
        EXPECT_FALSE(IsFramePattern(wrong)) << wrong;
}

}  // namespace
}  // namespace captionfx
