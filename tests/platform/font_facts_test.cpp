// Holds the fonts to answers that were measured: what GDI says of the same font files at an em of 2048. One instance
// for each family; a family that is not installed is skipped.
#include <string>

#include <gtest/gtest.h>

#include "platform/font_test_support.h"

namespace captionfx {
namespace {

class FontFacts : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        if (!IsInstalled(GetParam())) GTEST_SKIP() << GetParam() << " is not installed";
    }

    [[nodiscard]] static std::vector<MeasuredRow> Rows(const std::string& file) {
        std::vector<MeasuredRow> rows = ReadMeasured(file, GetParam());
        EXPECT_FALSE(rows.empty()) << "no rows of " << GetParam() << " in " << file;
        return rows;
    }

    [[nodiscard]] static std::shared_ptr<const PlatformFont> Realise(const MeasuredRow& row) {
        return FontRegistry::Instance().Realise(row.Font());
    }
};

TEST_P(FontFacts, Metrics) {
    for (const MeasuredRow& row : Rows("font_metrics.csv")) {
        SCOPED_TRACE(row.Text());
        const std::optional<OutlineMetrics> metrics = Realise(row)->Metrics();
        ASSERT_TRUE(metrics);
        EXPECT_EQ(metrics->Height, row.Decimal(4));
        EXPECT_EQ(metrics->InternalLeading, row.Decimal(7));
        EXPECT_EQ(metrics->ExternalLeading, row.Decimal(8));
        EXPECT_EQ(metrics->Ascent, row.Decimal(9));
        EXPECT_EQ(metrics->Descent, row.Decimal(10));
        EXPECT_EQ(metrics->StrikeoutSize, row.Decimal(12));
        EXPECT_EQ(metrics->StrikeoutPosition, row.Decimal(13));
        EXPECT_EQ(metrics->UnderscoreSize, row.Decimal(14));
        EXPECT_EQ(metrics->UnderscorePosition, row.Decimal(15));
    }
}

TEST_P(FontFacts, Extents) {
    for (const MeasuredRow& row : Rows("font_extents.csv")) {
        const TextExtent extent = Realise(row)->Extent(row.Unit(3));
        EXPECT_EQ(extent.cx, row.Decimal(4)) << row.Text();
        EXPECT_EQ(extent.cy, row.Decimal(5)) << row.Text();
    }
}

TEST_P(FontFacts, GlyphIndices) {
    for (const MeasuredRow& row : Rows("font_glyph_indices.csv")) {
        const char16_t unit = row.Unit(3);
        uint16_t glyph = 0xFFFF;
        EXPECT_EQ(Realise(row)->FindMissingGlyphs({&unit, 1}, {&glyph, 1}), row.Hex(4) != 0) << row.Text();
        EXPECT_EQ(glyph, row.Decimal(5)) << row.Text();
    }
}

std::optional<GlyphCoverage> Draw(const PlatformFont& font, const MeasuredRow& row) {
    const int32_t code = row.Decimal(4);  // 1, 4, 5, 6: the order of GlyphFormat
    const auto format = code == 1 ? GlyphFormat::kMono : static_cast<GlyphFormat>(code - 3);
    return font.Coverage(row.Unit(3), format, {row.Fixed(5), row.Fixed(6), row.Fixed(7), row.Fixed(8)});
}

uint64_t Fnv1a(const std::vector<uint8_t>& bytes) {
    uint64_t hash = 0xcbf29ce484222325U;
    for (const uint8_t byte : bytes) hash = (hash ^ byte) * 0x100000001b3U;
    return hash;
}

// Bytes only with the FreeType that the rows were measured with: others differ by a level here and there.
TEST_P(FontFacts, Masks) {
    int major = 0, minor = 0, patch = 0;
    FT_Library_Version(NewFreeTypeLibrary().get(), &major, &minor, &patch);
    const bool isMeasuredVersion = major == 2 && minor == 12 && patch == 1;
    for (const MeasuredRow& row : Rows("font_masks.csv")) {
        SCOPED_TRACE(row.Text());
        const std::optional<GlyphCoverage> mask = Draw(*Realise(row), row);
        ASSERT_TRUE(mask);
        EXPECT_EQ(mask->Bytes.size(), static_cast<size_t>(row.Decimal(9)));
        EXPECT_EQ(mask->BlackBoxX, row.Decimal(10));
        EXPECT_EQ(mask->BlackBoxY, row.Decimal(11));
        EXPECT_EQ(mask->OriginX, row.Decimal(12));
        EXPECT_EQ(mask->OriginY, row.Decimal(13));
        EXPECT_TRUE(!isMeasuredVersion || Fnv1a(mask->Bytes) == row.Hex(15));
    }
}

// All styles of Liberation are real faces, those of DejaVu Sans Light all synthetic.
INSTANTIATE_TEST_SUITE_P(Families, FontFacts,
                         testing::Values("Liberation Sans", "Liberation Serif", "Liberation Mono", "DejaVu Sans",
                                         "DejaVu Sans Mono", "DejaVu Serif", "DejaVu Sans Light"),
                         [](const auto& family) {
                             std::string name = family.param;
                             std::erase(name, ' ');
                             return name;
                         });

}  // namespace
}  // namespace captionfx
