// Which face answers a request. Made-up faces for the rules, the system's own for the rest.
#include "platform/linux/font_registry.h"

#include <gtest/gtest.h>

#include "platform/font_test_support.h"

namespace captionfx {
namespace {

FontFace Face(std::u16string family, std::u16string fullName, bool bold = false, bool italic = false,
              int32_t revision = 0) {
    FontFace face;
    face.Names = {std::move(family), {}, std::move(fullName)};
    face.Bold = bold;
    face.Italic = italic;
    face.Revision = revision;
    return face;
}

template <class... Faces>
FontCatalog CatalogOf(Faces... faces) {
    std::vector<FontFace> list;
    (list.push_back(std::move(faces)), ...);
    return FontCatalog(std::move(list));
}

TEST(ChooseFace, TakesTheCheapestAndOfEqualsTheLast) {
    struct Case {
        const char* Faces;  // one word for each: r, b, i, z (bold italic)
        FontStyle Wanted;
        size_t Chosen;
        bool MakeBold, MakeOblique;
    };
    constexpr FontStyle kPlain{}, kBold{true, false}, kItalic{false, true}, kBoth{true, true};
    const Case cases[] = {
        {"rbiz", kPlain, 0, false, false}, {"rbiz", kBold, 1, false, false}, {"rbiz", kItalic, 2, false, false},
        {"rbiz", kBoth, 3, false, false},  {"ri", kBold, 0, true, false},   // 4 against 5
        {"rb", kItalic, 0, false, true},                                    // 8 against 12
        {"ri", kBoth, 1, true, false},                                      // the slant weighs more than the weight
        {"bi", kPlain, 1, false, false},                                    // unwanted italic 1, unwanted bold 4
        {"rr", kPlain, 0, false, false},                                    // a perfect one ends the search
        {"rr", kBold, 1, true, false},     {"b", kPlain, 0, false, false},  // unwanted bold stays
    };
    for (const Case& c : cases) {
        FontFamily family;
        for (const char kind : std::string_view(c.Faces)) {
            family.Faces.push_back(Face(u"F", u"F", kind == 'b' || kind == 'z', kind == 'i' || kind == 'z'));
        }
        const FaceChoice choice = ChooseFace(family, c.Wanted);
        EXPECT_EQ(choice.Face, &family.Faces[c.Chosen]) << c.Faces;
        EXPECT_EQ(choice.MakeBold, c.MakeBold) << c.Faces;
        EXPECT_EQ(choice.MakeOblique, c.MakeOblique) << c.Faces;
    }
}

TEST(FontCatalog, OfFacesWithOneFullNameTheNewestStays) {
    const FontCatalog catalog = CatalogOf(Face(u"A", u"A", false, false, 1), Face(u"A", u"A", false, false, 3),
                                          Face(u"A", u"A", false, false, 3), Face(u"A", u"A", false, true, 2));
    const FontFamily* const family = catalog.Find(u"A");
    ASSERT_TRUE(family);
    ASSERT_EQ(family->Faces.size(), 2U);  // upright and italic, though they share the name
    EXPECT_EQ(family->Faces[0].Revision, 3);
    EXPECT_TRUE(family->Faces[1].Italic);
}

TEST(FontCatalog, AliasNeverHidesAName) {
    FontFace a = Face(u"A", u"A"), b = Face(u"B", u"B");
    a.Names.Aliases = {u"B", u"\u660E"};
    const FontCatalog catalog = CatalogOf(std::move(a), std::move(b));
    EXPECT_EQ(catalog.Find(u"B")->Name, u"B");
    EXPECT_EQ(catalog.Find(u"\u660E")->Name, u"A");
    EXPECT_EQ(catalog.Names().size(), 3U);
    EXPECT_EQ(catalog.Find(u"b"), nullptr);
}

TEST(FontRegistry, UnknownFaceIsTheDefaultOne) {
    FontRegistry common(CatalogOf(Face(u"AAA", u"AAA"), Face(u"DejaVu Sans", u"DejaVu Sans")));
    EXPECT_EQ(FaceNameOf(common.DefaultGuiFont()), u"DejaVu Sans");
    EXPECT_EQ(common.Realise(Request("Nowhere")), common.Realise(Request("DejaVu Sans")));

    FontFace serif = Face(u"AAA", u"AAA");
    serif.Class = FontClass::kSerif;
    FontRegistry others(CatalogOf(std::move(serif), Face(u"BBB", u"BBB")));
    EXPECT_EQ(FaceNameOf(others.DefaultGuiFont()), u"BBB");  // sans before serif
}

TEST(FontRegistry, SymbolRequestMovesFromTextFacesOnly) {
    FontFace symbols = Face(u"Symbols", u"Symbols");
    symbols.SymbolSet = true;
    FontFace signs = Face(u"Signs", u"Signs");
    signs.SymbolSet = true;
    const FontRegistry registry(CatalogOf(std::move(symbols), std::move(signs), Face(u"DejaVu Sans", u"DejaVu Sans")));
    LogFont request = Request("DejaVu Sans");
    EXPECT_EQ(registry.FamilyOf(request)->Name, u"DejaVu Sans");
    request.lfCharSet = kSymbolCharSet;
    EXPECT_EQ(registry.FamilyOf(request)->Name, u"Signs");
    request = Request("Symbols");
    request.lfCharSet = kSymbolCharSet;
    EXPECT_EQ(registry.FamilyOf(request)->Name, u"Symbols");
}

TEST(FontRegistry, WithoutAnyFontAnswersNothing) {
    FontRegistry registry{FontCatalog()};
    registry.EnumerateFamilies([](std::u16string_view) { ADD_FAILURE(); });
    EXPECT_EQ(FaceNameOf(registry.DefaultGuiFont()), u"");
    const std::shared_ptr<const PlatformFont> font = registry.Realise(Request("Liberation Sans"));
    ASSERT_TRUE(font);
    EXPECT_FALSE(font->Metrics());
    uint16_t glyph = 7;
    EXPECT_TRUE(font->FindMissingGlyphs(u"A", {&glyph, 1}));
    EXPECT_FALSE(font->Coverage(u'A', GlyphFormat::kGray8, {0x10000, 0, 0, 0x10000}));
}

TEST(FontRegistry, OneFontForEachFaceAndStyle) {
    FontRegistry registry(
        CatalogOf(Face(u"DejaVu Sans", u"DejaVu Sans")));  // a font opens its file at the first glyph only
    const std::shared_ptr<const PlatformFont> font = registry.Realise(Request("DejaVu Sans"));
    for (int i = 0; i < 10'000; ++i) ASSERT_EQ(registry.Realise(Request("DejaVu Sans")), font);
    LogFont varied = Request("DejaVu Sans", 550);  // still not bold
    varied.lfHeight = 24;
    varied.lfUnderline = 1;
    varied.lfCharSet = 128;  // the name decides
    EXPECT_EQ(registry.Realise(varied), font);
    EXPECT_NE(registry.Realise(Request("DejaVu Sans", 551)), font);
    EXPECT_NE(registry.Realise(Request("DejaVu Sans", 400, true)), font);
}

}  // namespace
}  // namespace captionfx
