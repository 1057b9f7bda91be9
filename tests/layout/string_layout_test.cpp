// Positions and extents. "Box" at size 64: advance 32, height 72, ascent 48, leadings 8 and 4, so a line of it is
// 8 + 72 + 4 = 84 high with its characters at 48 + 8 - 48 = 8. "Tall": height 88, ascent 64, so 100 high.
#include <array>

#include <gtest/gtest.h>

#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

struct StringLayoutTest : testing::Test {
    void Append(std::u16string_view face, const char16_t* text) {
        const FontSpec font = Font(face);
        owner.Title.SetDefaultFont(&font);
        owner.Title.InsertText(0, owner.Title.GetCharCount(0), text);
    }
    const MetaLine& Line(size_t l) { return owner.String().Lines.at(l); }
    const MetaCharacter& Char(size_t c) { return owner.String().Characters.at(c); }

    TestTitle owner;
};

TEST_F(StringLayoutTest, AlignsBaselinesOfMixedFonts) {
    owner.Add(u"a");
    Append(u"Tall", u"b");
    EXPECT_EQ(Char(0).Left, 0);
    EXPECT_EQ(Char(1).Left, 32);
    EXPECT_EQ(Char(0).Top, 24);  // 64 + 8 - 48
    EXPECT_EQ(Char(1).Top, 8);
    EXPECT_EQ(Line(0).Height, 100);  // 8 + 88 + 4
    EXPECT_EQ(Line(0).Width, 64);
}

TEST_F(StringLayoutTest, LineEndsHaveNoSayInHeightsUnlessAlone) {
    owner.Add(u"a");
    Append(u"Tall", u"\r\n");
    EXPECT_EQ(Line(0).Height, 84);   // the tall CR is left out
    EXPECT_EQ(Line(1).Height, 100);  // the tall LF is all that its paragraph has
    Append(u"Box", u"b");
    EXPECT_EQ(Line(1).Height, 84);
    EXPECT_EQ(Char(2).Top, -8);  // yet it stands on the baseline: 48 + 8 - 64
}

TEST_F(StringLayoutTest, AnEmptyParagraphHasTheHeightOfItsTwoLineEnds) {
    for (const int32_t vertical : {0, 1}) {
        owner.Title.RemoveAllStrings();
        owner.ChangeDefaultString([&](StringSpec& string) { string.Vertical = vertical; });
        owner.Add(u"");
        Append(u"Box", u"a\r");
        Append(u"Tall", u"\n");  // LF CR, the LF tall
        Append(u"Box", u"\r\n");
        Append(u"Tall", u"\r");  // LF CR, the CR tall
        Append(u"Box", u"\nb");
        std::vector<float> extents;
        for (const MetaLine& line : owner.String().Lines) extents.push_back(vertical != 0 ? line.Width : line.Height);
        EXPECT_EQ(extents, (std::vector<float>{84, 100, 100, 84})) << vertical;
        EXPECT_EQ(Line(1).Width * Line(1).Height, 0) << "no advance";
    }
}

// No extent is below 0 for the string, and none of a paragraph is cut off at 0.
TEST_F(StringLayoutTest, NegativeMetricsAndLimits) {
    OutlineMetrics& metrics = owner.Platform.FontsOfBoxes.Families[u"Box"].Metrics;
    metrics.Ascent = -1536;
    metrics.InternalLeading = -256;
    metrics.ExternalLeading = -128;
    owner.ChangeDefaultString([](StringSpec& string) { string.WidthLimit = -10; });
    owner.Add(u"a");
    EXPECT_EQ(Line(0).Height, 72);  // the largest leadings are 0
    EXPECT_EQ(Char(0).Top, 48);     // 0 + 0 - -48
    EXPECT_EQ(owner.String().Paragraphs[0].Width, -10);
    EXPECT_EQ(owner.String().Width, 0);
}

TEST_F(StringLayoutTest, StacksLinesAndParagraphs) {
    const ParagraphSpec spaced{0, 10, 5, 7, 0, 0};
    owner.Title.SetDefaultParagraph(&spaced);
    owner.ChangeDefaultString([](StringSpec& string) { string.WidthLimit = 64; });
    owner.Add(u"abc\r\nd");
    const MetaString& string = owner.String();
    EXPECT_EQ(Line(1).Top, 94);  // 84 + 10, relative to the paragraph
    EXPECT_EQ(string.Paragraphs[0].Top, 5);
    EXPECT_EQ(string.Paragraphs[0].Height, 188);  // the space after the last line counts
    EXPECT_EQ(string.Paragraphs[1].Top, 205);     // 5 + 188 + 7 + 5
    EXPECT_EQ(string.Height, 306);                // 205 + 94 + 7
    EXPECT_EQ(string.Width, 64);
}

TEST_F(StringLayoutTest, AlignsLinesInTheWidestParagraph) {
    const struct {
        uint32_t align;
        float left;  // of a line of 32 in a string of 20 + 96 + 4, of which the indents take 24
    } cases[] = {{0, 0}, {2, 64}, {6, 32}, {4, 0}, {1, 0}, {3, 64}, {0xFFFFFFFE, 32}};
    for (const auto& c : cases) {
        TestTitle title;
        const ParagraphSpec paragraph{c.align, 0, 0, 0, 20, 4};
        title.Title.SetDefaultParagraph(&paragraph);
        title.Add(u"a\r\nbcd");
        EXPECT_EQ(title.String().Width, 120);
        EXPECT_EQ(title.String().Lines[0].Left, c.left) << c.align;
        EXPECT_EQ(title.String().Lines[1].Left, 0) << c.align;
        EXPECT_EQ(title.String().Paragraphs[0].Left, 0) << "indents do not shift";
    }
}

TEST_F(StringLayoutTest, StretchAndSpacing) {
    const CharSpacing spacing{.WidthScale = 1.5F, .Spacing = 4};
    owner.Title.SetDefaultCharSpacing(&spacing);
    owner.Add(u"wb");
    EXPECT_EQ(Char(1).Left, 102);  // (64 + 4) 1.5
    EXPECT_EQ(Line(0).Width, 156);
    owner.Title.RemoveAllStrings();
    owner.ChangeDefaultString([](StringSpec& string) { string.Vertical = 1; });
    owner.Add(u"wb");
    EXPECT_EQ(Char(1).Top, 68) << "no stretch downward";
}

// Below U+0080 the extents are crossed: 72 across the column, 32 along it. A column of them is 8 + 72 + 4 wide and puts
// its characters at (48 - 8) - 48 = -8.
TEST_F(StringLayoutTest, VerticalColumnsGoLeftward) {
    owner.ChangeDefaultString([](StringSpec& string) { string.Vertical = 1; });
    const ParagraphSpec spaced{2, 10, 5, 7, 0, 0};
    owner.Title.SetDefaultParagraph(&spaced);
    owner.Add(u"a\x7f\x80\r\nc");  // the third stands upright: 72 along
    const MetaString& string = owner.String();
    EXPECT_EQ(Char(1).Top, 32);
    EXPECT_EQ(Char(2).Top, 64);
    EXPECT_EQ(Char(2).Left, -8);
    EXPECT_EQ(Line(0).Height, 136);
    EXPECT_EQ(Line(0).Width, 84);
    EXPECT_EQ(Line(1).Top, 104);  // right-aligned is at the bottom: 136 - 32
    EXPECT_EQ(string.Paragraphs[0].Left, -5);
    EXPECT_EQ(string.Paragraphs[1].Left, -111);  // -(5 + 7 + 94 + 5)
    EXPECT_EQ(string.Width, 212);                // 111 + 7 + 94
    EXPECT_EQ(string.Height, 136);
}

TEST_F(StringLayoutTest, VerticalRuleForLineEnds) {
    owner.ChangeDefaultString([](StringSpec& string) { string.Vertical = 1; });
    owner.Add(u"a");
    Append(u"Tall", u"\r\n");
    EXPECT_EQ(Line(0).Width, 84);
    EXPECT_EQ(Line(1).Width, 100);  // the string's last character counts
    Append(u"Box", u"b");
    EXPECT_EQ(Line(1).Width, 84);
    TestTitle alone;
    alone.ChangeDefaultString([](StringSpec& string) { string.Vertical = 1; });
    alone.Add(u"\r\n");
    EXPECT_EQ(alone.String().Lines[0].Width, 84) << "a CR that is the string's first character counts";
}

TEST_F(StringLayoutTest, AnEmptyStringHasTheExtentOfABlank) {
    owner.Add(u"");
    EXPECT_EQ(owner.String().Width, 16);
    EXPECT_EQ(owner.String().Height, 84);
    EXPECT_EQ(owner.String().PathChanged, 0);
    owner.ChangeDefaultString([](StringSpec& string) { string.Vertical = 1; });
    const int32_t vertical = owner.Title.AddString();
    EXPECT_EQ(owner.String(vertical).Width, 84);
    EXPECT_EQ(owner.String(vertical).Height, 16);
    owner.Title.InsertText(0, 0, u"a");
    EXPECT_EQ(owner.String().PathChanged, 1);
}

TEST_F(StringLayoutTest, ReadsBackInPixels) {
    const CharSpacing spacing{.WidthScale = 1.5F, .Spacing = 0};
    owner.Title.SetDefaultCharSpacing(&spacing);
    owner.Add(u"a\r\nbc", 100, 50);
    owner.ChangeSettings([](TitleRenderSettings& settings) {
        settings.ScaleX = 2;
        settings.ScaleY = 3;
    });
    IKVT_CaptionFx& title = owner.Title;
    const auto equal = [](const TitleRectF& r, float x, float y, float w, float h) {
        EXPECT_EQ((std::array{r.x, r.y, r.width, r.height}), (std::array{x, y, w, h}));
    };
    TitleRectF rect{};
    EXPECT_EQ(title.GetStringRect(0, &rect), kTitleOk);
    equal(rect, 200, 150, 192, 504);  // 96 wide, two lines of 84
    EXPECT_EQ(title.GetParagraphRect(0, 1, &rect), kTitleOk);
    equal(rect, 200, 402, 192, 252);  // (50 + 84) 3
    EXPECT_EQ(title.GetLineRect(0, 0, &rect), kTitleOk);
    equal(rect, 200, 150, 96, 252);
    EXPECT_EQ(title.GetCharRect(0, 4, &rect, 0), kTitleOk);
    equal(rect, 296, 426, 96, 216);  // (100 + 48) 2, (50 + 84 + 8) 3
    EXPECT_EQ(title.GetCharRect(0, 2, &rect, 0), kTitleInvalidArgument);
    equal(rect, 0, 0, 0, 0);
    EXPECT_EQ(title.GetCharRect(0, 2, &rect, 1), kTitleOk);
    equal(rect, 200, 426, 96, 216);
    for (const int32_t bad : {-1, 5}) {
        rect = {1, 1, 1, 1};
        EXPECT_EQ(title.GetCharRect(0, bad, &rect, 1), kTitleInvalidArgument);
        equal(rect, 0, 0, 0, 0);
        EXPECT_EQ(title.GetLineRect(0, bad, &rect), kTitleInvalidArgument);
        EXPECT_EQ(title.GetParagraphRect(0, bad, &rect), kTitleInvalidArgument);
        EXPECT_EQ(title.GetStringRect(bad, &rect), kTitleInvalidArgument);
    }
}

}  // namespace
}  // namespace captionfx::test
