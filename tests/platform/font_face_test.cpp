// What is read from a font file: names, metrics from odd tables, symbol maps. Each case exchanges tables of a real
// font.
#include <string_view>

#include <gtest/gtest.h>

#include "platform/font_file_support.h"
#include "platform/linux/outline_font.h"

namespace captionfx {
namespace {

class FontFile : public testing::Test {
protected:
    void SetUp() override {
        if (tables_.empty()) GTEST_SKIP() << "DejaVu Sans is not installed";
    }
    FontTables tables_ = DejaVuTables();
};

struct NameRecord {
    size_t Platform, Encoding, Language, Id;
    std::string Text;
};

std::string Utf16(std::u16string_view text) {
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit >> 8U);
        bytes += static_cast<char>(unit);
    }
    return bytes;
}

Bytes NameTable(const std::vector<NameRecord>& records) {
    Bytes table, strings;
    PutU16(table, 0);
    PutU16(table, records.size());
    PutU16(table, 6 + 12 * records.size());
    for (const NameRecord& record : records) {
        for (const size_t field : {record.Platform, record.Encoding, record.Language, record.Id}) PutU16(table, field);
        PutU16(table, record.Text.size());
        PutU16(table, strings.size());
        strings.insert(strings.end(), record.Text.begin(), record.Text.end());
    }
    table.insert(table.end(), strings.begin(), strings.end());
    return table;
}

TEST_F(FontFile, FamilyNameIsEnglishAndOthersAreAliases) {
    const NameRecord mac{1, 0, 0, 1, "Caf\x8E"}, japanese{3, 1, 0x411, 1, Utf16(u"\u660E\u671D")};
    const NameRecord british{3, 1, 0x809, 1, Utf16(u"Colour")}, american{3, 1, 0x409, 1, Utf16(u"Color")};
    const NameRecord typographic{3, 1, 0x409, 16, Utf16(u"Wide Family")};
    const NameRecord full{3, 1, 0x409, 4, Utf16(u"Color Bold")};
    const NameRecord longName{3, 1, 0x409, 1, Utf16(u"0123456789012345678901234567890123456789")};
    const std::u16string kanji = u"\u660E\u671D";
    using Names = std::vector<std::u16string>;
    struct Case {
        std::vector<NameRecord> Records;
        std::u16string Family;
        Names Aliases;
    };
    const Case cases[] = {
        {{mac, japanese, british, american, typographic, full}, u"Color", {u"Colour", kanji}},
        {{japanese, british, mac}, u"Colour", {kanji}},
        {{japanese, mac}, u"Caf\u00E9", {kanji}},
        {{japanese}, kanji, {}},
        {{longName}, u"0123456789012345678901234567890", {}},  // 31 units
    };
    for (const Case& c : cases) {
        tables_["name"] = NameTable(c.Records);
        const std::optional<FontFace> face = TemporaryFont(tables_).Read();
        ASSERT_TRUE(face);
        EXPECT_EQ(face->Names.Family, c.Family);
        EXPECT_EQ(face->Names.Aliases, c.Aliases);
        EXPECT_EQ(face->Names.FullName, c.Records.size() == 6 ? u"Color Bold" : u"");
    }
}

TEST_F(FontFile, WithoutWindowsTableOrNamesDoesNotExist) {
    FontTables nameless = tables_;
    nameless["name"] = NameTable({});
    EXPECT_FALSE(TemporaryFont(nameless).Read());
    tables_.erase("OS/2");
    EXPECT_FALSE(TemporaryFont(tables_).Read());
    EXPECT_FALSE(TemporaryFont(Bytes{1, 2, 3}).Read());
}

// At 1000 units the scale is 134218 / 65536 after rounding: 1052 units are 2154.501 pixels, 52 are 106.50 and 1000 are
// 2048.004. The unrounded scale would give 2154.496.
TEST_F(FontFile, CellComesFromWinValuesElseFromHhea) {
    constexpr size_t kUnitsPerEm = 18, kHheaAscender = 4, kHheaDescender = 6, kHheaLineGap = 8, kWinAscent = 74;
    struct Case {
        int WinAscent, WinDescent, LineGap;
        int32_t Height, Internal, External;
    };
    const Case cases[] = {
        {1052, 0, 0, 2155, 106, 0},             // a single 0 stays; the leading is not Height - 2048
        {0, 1052, 0, 2155, 106, 0},             //
        {500, -552, 0, 1024 + 1130, 106, 0},    // a negative descent counts as positive: 1024.002 + 1130.499
        {0, 0, 0, 1638 + 410, 0, 0},            // hhea: 800 + 200 = 1638.403 + 409.6
        {900, 200, 200, 1843 + 410, 205, 205},  // 200 - (1100 - 1000) = 100 units
        {65136, 0, 0, 133399, 131351, 0},       // unsigned
    };
    SetU16(tables_["head"], kUnitsPerEm, 1000);
    SetU16(tables_["hhea"], kHheaAscender, 800);
    SetU16(tables_["hhea"], kHheaDescender, -200);
    for (const Case& c : cases) {
        SetU16(tables_["hhea"], kHheaLineGap, c.LineGap);
        SetU16(tables_["OS/2"], kWinAscent, c.WinAscent);
        SetU16(tables_["OS/2"], kWinAscent + 2, c.WinDescent);
        const std::optional<FontFace> face = TemporaryFont(tables_).Read();
        ASSERT_TRUE(face);
        EXPECT_EQ(face->Metrics.Height, c.Height);
        EXPECT_EQ(face->Metrics.InternalLeading, c.Internal);
        EXPECT_EQ(face->Metrics.ExternalLeading, c.External);
    }
    tables_.erase("post");
    EXPECT_EQ(TemporaryFont(tables_).Read()->Metrics.UnderscoreSize, 0);
}

/// A map of the one code F041 to `glyph`, as symbol fonts have it.
Bytes SymbolMap(size_t glyph) {
    Bytes table;
    for (const size_t field : {size_t{0}, size_t{1}, size_t{3}, size_t{0}, size_t{0}, size_t{12}}) PutU16(table, field);
    const size_t delta = (glyph - 0xF041U) & 0xFFFFU;
    for (const size_t field :
         {size_t{4}, size_t{32}, size_t{0}, size_t{4}, size_t{4}, size_t{1}, size_t{0}, size_t{0xF041}, size_t{0xFFFF},
          size_t{0}, size_t{0xF041}, size_t{0xFFFF}, delta, size_t{1}, size_t{0}, size_t{0}}) {
        PutU16(table, field);
    }
    return table;
}

TEST_F(FontFile, SymbolFaceAnswersLowCodesToo) {
    constexpr uint16_t kGlyph = 36;
    tables_["cmap"] = SymbolMap(kGlyph);
    const TemporaryFont file(tables_);
    const std::optional<FontFace> face = file.Read();
    ASSERT_TRUE(face);
    EXPECT_TRUE(face->SymbolMap);
    const OutlineFont font({&*face, false, false});
    std::array<uint16_t, 4> glyphs{};
    EXPECT_TRUE(font.FindMissingGlyphs(u"A\uF041B\u0141", glyphs));
    EXPECT_EQ(glyphs, (std::array<uint16_t, 4>{kGlyph, kGlyph, 0, 0}));
    EXPECT_FALSE(font.FindMissingGlyphs(u"A\uF041", glyphs));
}

}  // namespace
}  // namespace captionfx
