// Titles on a machine with other fonts: the fast way is the plain one, character by character; and what needs no change
// gets none.
#include "text/refont.h"

#include <random>

#include <gtest/gtest.h>

#include "host/built_in_defaults.h"
#include "layout/mend_structure.h"
#include "layout/string_layout.h"
#include "persist/title_xml_manager.h"
#include "support/fake_platform.h"
#include "support/title_text.h"

namespace captionfx::test {
namespace {

/// A string of many fonts, sizes, spacings and breaks, typed and deleted at random.
void Type(TestTitle& title, std::mt19937& random) {
    constexpr std::u16string_view kFaces[] = {u"Box", u"Tall", u"Narrow"};
    constexpr std::u16string_view kUnits = u"abw \r\n\r\n\u4e00";
    const auto upTo = [&](size_t n) { return static_cast<int32_t>(random() % n); };
    title.ChangeDefaultString([&](StringSpec& string) {
        string.Vertical = upTo(4) == 0 ? 1 : 0;
        string.WidthLimit = upTo(4) == 0 ? 1e9F : static_cast<float>(40 + upTo(300));
    });
    title.Title.AddString();
    for (int n = 0; n < 12; ++n) {
        FontSpec font = Font(kFaces[upTo(3)], static_cast<float>(16 + 8 * upTo(6)));
        font.Bold = upTo(2);
        title.Title.SetDefaultFont(&font);
        const CharSpacing spacing{.WidthScale = 1, .Spacing = static_cast<float>(upTo(3) * 6 - 10)};
        title.Title.SetDefaultCharSpacing(&spacing);
        std::u16string text;
        for (int k = 1 + upTo(6); k > 0; --k) text += kUnits[random() % kUnits.size()];
        title.Title.InsertText(0, upTo(1 + static_cast<size_t>(title.Title.GetCharCount(0))), text.c_str());
        if (upTo(3) == 0) title.Title.DeleteText(0, upTo(static_cast<size_t>(title.Title.GetCharCount(0))), 1);
    }
}

/// Without "Tall", and with a wider "Narrow".
void MakeOther(FakePlatform& platform) {
    platform.FontsOfBoxes.Families.erase(u"Tall");
    platform.FontsOfBoxes.Families[u"Narrow"].Advance = 700;
}

/// Loads the first string of `text` with each character given its font in turn.
MetaString LoadedPlainly(FakePlatform& platform, const std::string& text, int32_t vertical) {
    TitleDefaults defaults = BuiltInDefaults();
    defaults.DefaultString.Vertical = vertical;
    const InstalledFonts installed = ListInstalledFonts(platform.Fonts());
    int32_t status = kTitleOk;
    TitleXMLManager manager(platform, status);
    std::vector<MetaString> strings;
    EXPECT_EQ(manager.LoadFromBuffer(std::u16string(text.begin(), text.end()), strings), kTitleOk);
    MetaString& string = strings.at(0);
    string.GlyphLayersList.resize(string.Characters.size());
    for (int32_t i = 0; i < CountOf(string.Characters); ++i) {
        const MetaFont& font = At(string.Fonts, At(string.Characters, i).FontIndex);
        defaults.DefaultFont = RequestOf(platform.Fonts(), installed, font);
        RefontCharacter(platform, defaults, string, i, 1);
    }
    return std::move(string);
}

TEST(RefontTest, TheFastWayIsThePlainOne) {
    for (uint32_t seed = 1; seed <= 400; ++seed) {
        std::mt19937 random(seed);
        TestTitle title;
        Type(title, random);
        const std::string saved = SavedText(title.Title);
        const int32_t vertical = seed % 5 == 0 ? 1 : 0;  // whatever the string's own direction
        TestTitle other, plain;
        MakeOther(other.Platform);
        MakeOther(plain.Platform);
        CCaptionFx fast(other.Platform);  // lists its fonts now
        StringSpec settings = other.DefaultString();
        settings.Vertical = vertical;
        fast.SetDefaultString(&settings);
        ASSERT_EQ(LoadText(fast, saved), kTitleOk);
        // A string without a character in need of another font stays as it was saved.
        if (SavedText(fast) == saved) continue;
        plain.Title.Strings().push_back(LoadedPlainly(plain.Platform, saved, vertical));
        ASSERT_EQ(SavedText(fast), SavedText(plain.Title)) << "seed " << seed;
    }
}

TEST(RefontTest, AMissingFaceIsReplacedAtItsSize) {
    TestTitle title, other;
    FontSpec font = Font(u"Tall", 32);
    title.Title.SetDefaultFont(&font);
    title.Add(u"a\u4e00");
    MakeOther(other.Platform);
    CCaptionFx there(other.Platform);
    ASSERT_EQ(LoadText(there, SavedText(title.Title)), kTitleOk);
    there.GetCharFont(0, 0, &font);
    EXPECT_EQ(TextOf(font.FaceName), u"Box");
    EXPECT_EQ(font.Size, 32);
    there.GetCharFont(0, 1, &font);
    EXPECT_EQ(TextOf(font.FaceName), u"Han") << "still there";
}

// A ratio of 24/2048 is 0.01171875, kept as 0.011719: measured with that, the line would be a little wider than its
// limit, which is its width exactly.
TEST(RefontTest, SixDecimalsMoveNothing) {
    for (const float size : {24.0F, 72.0F, 31.7F, 0.0F, 1638.0F}) {
        TestTitle title, other;
        title.ChangeDefaultString([&](StringSpec& string) { string.WidthLimit = 3 * (size / 2048 * 1024); });
        const FontSpec font = Font(u"Box", size);
        title.Title.SetDefaultFont(&font);
        title.Add(u"abcdefg");
        title.Title.DeleteText(0, 3, 1);  // leaves a line that the next character would fit on
        const std::string saved = SavedText(title.Title);
        ASSERT_EQ(LoadText(other.Title, saved), kTitleOk);
        EXPECT_EQ(SavedText(other.Title), saved) << size;
        for (int32_t i = 0; i < title.Title.GetCharCount(0); ++i) {
            TitleRectF before{}, after{};
            title.Title.GetCharRect(0, i, &before, 1);
            other.Title.GetCharRect(0, i, &after, 1);
            EXPECT_NEAR(before.x, after.x, 0.01) << size;
            EXPECT_NEAR(before.y, after.y, 0.01) << size;
        }
    }
}

}  // namespace
}  // namespace captionfx::test
