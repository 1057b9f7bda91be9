// Fonts for characters that another font lacks: the order, the language of ideographs, and sessions of font linking.
#include "platform/linux/font_fallback.h"

#include <cstdlib>
#include <thread>

#include <gtest/gtest.h>

#include "platform/font_test_support.h"
#include "platform/linux/font_link.h"
#include "platform/linux/text_language.h"

namespace captionfx {
namespace {

TEST(TextLanguage, TextDecidesHowIdeographsAreDrawn) {
    struct Case {
        std::u16string_view Text, Language;
    };
    const Case cases[] = {
        {u"\u56FD", u"zh-cn"},
        {u"\u570B", u"zh-tw"},
        {u"\u56FD\u6C17", u"ja"},     // the second is Japanese
                                      // only
        {u"\u8FD9\u6C17", u"zh-cn"},  // no language has both
        {u"\u8FD9\u306E", u"ja"},     // kana
        {u"\uAC00\u570B", u"ko"},
        {u"\u3105\u56FD", u"zh-tw"},
        {u"\uAC00\u30A2", u"ja"},
        {u"", u"zh-cn"},
    };
    for (const Case& c : cases) {
        const std::string_view language = HanLanguageOf(c.Text);
        EXPECT_EQ(std::u16string(language.begin(), language.end()), c.Language);
    }
    EXPECT_EQ(LanguageOf(u'\u4E2D', "ko"), "ko");
    EXPECT_EQ(LanguageOf(u'\u3002', "ko"), "ko");  // ideographic full stop
    EXPECT_EQ(LanguageOf(u'\u3042', "ko"), "ja");
    EXPECT_EQ(LanguageOf(u'\u0627', "ja"), "ar");
    EXPECT_EQ(LanguageOf(u'\u0E01', "ja"), "th");
    EXPECT_EQ(LanguageOf(u'\u2603', "ja"), "en");
}

struct MadeFace {
    std::u16string Family;
    const char* Language;
    FontClass Class = FontClass::kSans;
    bool Bold = false, Colour = false, SymbolMap = false;
    int WidthClass = 5;
    uint32_t Characters = 100;
};

FontCatalog CatalogOf(const std::vector<MadeFace>& made) {
    std::vector<FontFace> faces;
    for (const MadeFace& m : made) {
        FontFace& face = faces.emplace_back();
        face.Names = {m.Family, {}, m.Family};
        face.Class = m.Class;
        face.Bold = m.Bold;
        face.Colour = m.Colour;
        face.SymbolMap = m.SymbolMap;
        face.WidthClass = m.WidthClass;
        face.CharacterCount = m.Characters;
        face.Languages.reset(FcLangSetCreate());
        FcLangSetAdd(face.Languages.get(), reinterpret_cast<const FcChar8*>(m.Language));
    }
    return FontCatalog(std::move(faces));
}

// Each list is in the expected order; the catalog gets it reversed and sorts by name anyway.
TEST(FallbackOrder, RulesFromTheStrongestToTheWeakest) {
    const auto sans = FontClass::kSans, serif = FontClass::kSerif, mono = FontClass::kMono;
    struct Case {
        const char* Language;
        FontStyle Style;
        std::vector<MadeFace> Order;
    };
    const Case cases[] = {
        // Language, then class (the base is serif), and colour last.
        {"th",
         {},
         {{u"Z", "th", serif},
          {u"Y", "th", sans},
          {u"X", "th", mono},
          {u"A", "en", serif},
          {u"B", "th", serif, false, true}}},
        // Region in the name: right, none, wrong; only whole words.
        {"zh-tw", {}, {{u"Z TC", "zh-tw", sans}, {u"ATC", "zh-tw", serif}, {u"A JP", "zh-tw", serif}}},
        // For other languages regions do not count, but the width and then the coverage do; the name comes last.
        {"ru",
         {},
         {{u"Z JP", "ru", serif, false, false, false, 5, 300},
          {u"A", "ru", serif},
          {u"B", "ru", serif},
          {u"C", "ru", serif, false, false, false, 3, 900}}},
        // A real bold before a made one.
        {"en", {true, false}, {{u"Z", "en", serif, true}, {u"A", "en", serif}}},
    };
    for (const Case& c : cases) {
        const FontCatalog catalog = CatalogOf({c.Order.rbegin(), c.Order.rend()});
        const auto order = OrderFallback(catalog, {serif, 5}, c.Style, c.Language);
        ASSERT_EQ(order.size(), c.Order.size());
        for (size_t i = 0; i < order.size(); ++i) EXPECT_EQ(order[i].Family->Name, c.Order[i].Family) << c.Language;
    }
}

TEST(FallbackOrder, PlainFacesFollowAndSymbolsStayOut) {
    const FontCatalog catalog = CatalogOf({{u"A", "en"},
                                           {u"A", "en", FontClass::kSans, true},
                                           {u"B", "en"},
                                           {u"S", "en", FontClass::kSans, false, false, true}});
    const auto order = OrderFallback(catalog, {FontClass::kSans, 5}, {true, false}, "en");
    ASSERT_EQ(order.size(), 3U);
    EXPECT_EQ(order[0].Family->Name, u"A");
    EXPECT_TRUE(order[0].Style.Bold);
    EXPECT_EQ(order[1].Family->Name, u"B");  // in the wanted style, though synthetic
    EXPECT_TRUE(order[1].Style.Bold && order[1].Choice.MakeBold);
    EXPECT_EQ(order[2].Family->Name, u"A");
    EXPECT_FALSE(order[2].Style.Bold);
}

/// Answers of a new session for each unit of a text over DejaVu Sans; none if no font is there.
std::string Answers(FontFallback& fallback, std::u16string_view text, FontStyle style) {
    const std::unique_ptr<FontLink> link = CreateFontconfigLink(fallback);
    const CodePageRun run = link->GetStrCodePages(text);
    std::string answers;
    for (const char16_t unit : text) {
        const auto font = link->MapFont(MakeLogFont(u"DejaVu Sans", style), run.CodePages, unit);
        if (!font) answers += "-";
        if (font) answers.append(FaceNameOf(*font).begin(), FaceNameOf(*font).end());
        answers += font && font->lfWeight == kBoldWeight ? "+;" : ";";
    }
    return answers;
}

constexpr std::u16string_view kMixed = u"\u4E2D\u6F22\u3042\uAC00\u0627\u05D0\u0E01\u2603\u30A2\uFF21";

TEST(FontLink, AnswersAFontThatHasTheCharacter) {
    FontRegistry& registry = FontRegistry::Instance();
    const std::unique_ptr<FontLink> link = CreateFontconfigLink();
    const CodePageRun run = link->GetStrCodePages(kMixed);
    EXPECT_EQ(run.Length, static_cast<int32_t>(kMixed.size()));
    EXPECT_NE(run.CodePages, 0U);
    int mapped = 0;
    for (const bool bold : {false, true}) {
        LogFont base = MakeLogFont(u"DejaVu Sans", {bold, bold});
        base.lfHeight = -2048;
        for (const char16_t unit : kMixed) {
            const std::optional<LogFont> font = link->MapFont(base, run.CodePages, unit);
            if (!font) continue;
            ++mapped;
            EXPECT_NE(registry.Catalog().Find(FaceNameOf(*font)), nullptr);
            EXPECT_EQ(font->lfCharSet, kDefaultCharSet);
            EXPECT_EQ(font->lfHeight, -2048);
            EXPECT_TRUE(StyleOf(*font) == FontStyle{} || StyleOf(*font) == StyleOf(base));
            uint16_t glyph = 0;
            EXPECT_FALSE(registry.Realise(*font)->FindMissingGlyphs({&unit, 1}, {&glyph, 1}));
        }
    }
    if (mapped == 0) GTEST_SKIP() << "no font for any of the characters is installed";
}

TEST(FontLink, BlanksControlsAndHalvesNeverFallBack) {
    EXPECT_EQ(Answers(FontFallback::Instance(), u" \r\n\t\x7F\x85\xD83D\xDE00\xE000\xFFFF", {}),
              "-;-;-;-;-;-;-;-;-;-;");
    EXPECT_EQ(CreateFontconfigLink()->GetStrCodePages({}).Length, 0);
    FontRegistry noFonts{FontCatalog()};
    FontFallback fallback(noFonts);
    EXPECT_EQ(Answers(fallback, u"A\u4E2D", {}), "-;-;");
}

TEST(FontLink, SessionsOnThreadsAnswerAlike) {
    const std::string expected = Answers(FontFallback::Instance(), kMixed, {true, false});
    EXPECT_EQ(Answers(FontFallback::Instance(), kMixed, {true, false}), expected);
    FontFallback fresh(FontRegistry::Instance());
    std::array<std::string, 4> answers;
    {
        std::vector<std::jthread> threads;
        threads.reserve(answers.size());
        for (std::string& answer : answers)
            threads.emplace_back([&] { answer = Answers(fresh, kMixed, {true, false}); });
    }
    for (const std::string& answer : answers) EXPECT_EQ(answer, expected);
}

// Fontconfig reads the locale once in a process, hence new processes. They run this test from its start, so that what
// is expected must reach them from outside.
TEST(FontLinkDeathTest, LocaleHasNoSay) {
    constexpr const char* kExpected = "CAPTIONFX_TEST_EXPECTED";
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto answers = [] { return Answers(FontFallback::Instance(), kMixed, {}); };
    setenv(kExpected, answers().c_str(), 0);
    for (const char* const locale : {"C", "ja_JP.UTF-8", "ko_KR.UTF-8", "zh_TW.UTF-8"}) {
        setenv("LC_ALL", locale, 1);
        setenv("FC_LANG", locale, 1);
        EXPECT_EXIT(std::_Exit(answers() == std::getenv(kExpected) ? 0 : 1), testing::ExitedWithCode(0), "");
    }
    for (const char* const name : {kExpected, "LC_ALL", "FC_LANG"}) unsetenv(name);
}

}  // namespace
}  // namespace captionfx
