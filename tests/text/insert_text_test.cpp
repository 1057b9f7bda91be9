// From plain text to characters with fonts, styles and extents.
#include <gtest/gtest.h>

#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

struct InsertTextTest : testing::Test {
    std::u16string FaceOf(int32_t character) {
        FontSpec font{};
        owner.Title.GetCharFont(0, character, &font);
        return std::u16string(TextOf(font.FaceName));
    }
    TestTitle owner;
    IKVT_CaptionFx& title = owner.Title;
};

TEST_F(InsertTextTest, PositionsAndCounts) {
    EXPECT_EQ(title.InsertText(0, 0, u"a"), 0) << "no string yet";
    const int32_t string = title.AddString();
    EXPECT_EQ(title.InsertText(string, 0, u""), 0);
    EXPECT_EQ(title.InsertText(string, 0, nullptr), 0);
    EXPECT_EQ(title.GetParagraphCount(string), 0) << "no text, no paragraph";
    EXPECT_EQ(title.InsertText(string, 1, u"a"), 0);
    EXPECT_EQ(title.InsertText(string, -1, u"a"), 0);
    EXPECT_EQ(title.InsertText(string, 0, u"ad"), 2);
    EXPECT_EQ(title.GetParagraphCount(string), 1);
    EXPECT_EQ(title.GetLineCount(string), 1);
    EXPECT_EQ(title.InsertText(string, 3, u"x"), 2);
    EXPECT_EQ(title.InsertText(string, 1, u"bc"), 4);
    EXPECT_EQ(title.InsertText(string, 4, u"\xD83D\xDE00"), 6) << "a surrogate pair is two characters";
    char16_t text[7];
    EXPECT_EQ(title.GetStringText(string, nullptr), 6);
    EXPECT_EQ(title.GetStringText(string, text), 6);
    EXPECT_TRUE(std::u16string_view(text) == u"abcd\xD83D\xDE00");
    EXPECT_EQ(title.GetStringText(5, text), 0);
}

TEST_F(InsertTextTest, MissingCharactersGetLinkedFontsOneByOne) {
    for (const int32_t runLength : {0, 3, 1, -5, 1000}) {
        TestTitle fresh;
        fresh.Platform.LinkedRunLength = runLength;
        fresh.Add(u"a\u4e00 \u4e01b\u0600");
        std::u16string faces;
        for (int32_t i = 0; i < 6; ++i) {
            FontSpec font{};
            fresh.Title.GetCharFont(0, i, &font);
            faces += font.FaceName[0];
        }
        EXPECT_EQ(faces, u"BHBHBB") << runLength;  // Box, Han; nobody has the last one
        EXPECT_EQ(fresh.String().Fonts.size(), 2U);
        EXPECT_EQ(fresh.Platform.MappingsInUse, 0);
        EXPECT_EQ(fresh.String().Characters[1].Width, 64) << "the linked face keeps the size";
    }
}

TEST_F(InsertTextTest, SpacesAndSymbolsDoNotFallBack) {
    owner.Platform.FontsOfBoxes.Families[u"Box"].First = u'a';  // has no space
    owner.Add(u"a \u3000");
    EXPECT_EQ(FaceOf(1), u"Box");
    EXPECT_EQ(FaceOf(2), u"Han");

    FontSpec signs = Font(u"Signs");
    signs.CharSet = kSymbolCharSet;
    title.SetDefaultFont(&signs);
    title.InsertText(0, 0, u"A\u00ff\u4e00");
    EXPECT_EQ(FaceOf(0), u"Signs");
    EXPECT_EQ(FaceOf(1), u"Signs");
    EXPECT_EQ(FaceOf(2), u"Han");
}

TEST_F(InsertTextTest, EqualStylesAreStoredOnce) {
    owner.Add(u"ab");
    title.InsertText(0, 1, u"c");
    const MetaString& string = owner.String();
    EXPECT_EQ(string.Fonts.size(), 1U);
    EXPECT_EQ(string.Faces.size() + string.Borders.size() + string.Shadows.size(), 3U);
    MetaFace red = test::FaceOf(255, 9);
    title.SetDefaultFace(&red);
    MetaFace face{};
    title.GetCharFace(0, 0, &face);
    EXPECT_NE(face.Alpha, 9) << "text that is there keeps its look";
    title.InsertText(0, 3, u"d");
    EXPECT_EQ(string.Faces.size(), 2U);
    title.GetCharFace(0, 3, &face);
    EXPECT_EQ(face.Alpha, 9);
    FontSpec underlined = Font(u"Box");
    underlined.Underline = underlined.Strikeout = 1;
    title.SetDefaultFont(&underlined);
    title.InsertText(0, 0, u"e");
    EXPECT_EQ(string.Fonts.size(), 1U) << "underlines are never applied";
}

TEST_F(InsertTextTest, WithoutFontLinkNothingIsInserted) {
    owner.Add(u"ab");
    owner.Platform.HasFontLink = false;
    EXPECT_EQ(title.InsertText(0, 1, u"cd"), 2);
    EXPECT_EQ(StructureFault(owner.String()), "");
}

}  // namespace
}  // namespace captionfx::test
