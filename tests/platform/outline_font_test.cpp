// Glyphs of realised fonts: synthetic styles, masks under extreme matrices, damaged files, many threads.
#include "platform/linux/outline_font.h"

#include <array>
#include <limits>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "platform/font_file_support.h"

namespace captionfx {
namespace {

constexpr GlyphMatrix kHalf{0x8000, 0, 0, 0x8000};

class OutlineFontTest : public testing::Test {
protected:
    void SetUp() override {
        const FontFamily* const family = FontRegistry::Instance().Catalog().Find(u"DejaVu Sans");
        if (family == nullptr) GTEST_SKIP() << "DejaVu Sans is not installed";
        face_ = ChooseFace(*family, {}).Face;
    }
    const FontFace* face_ = nullptr;
};

TEST_F(OutlineFontTest, SyntheticStylesKeepMetricsAndChangeShapes) {
    const OutlineFont plain({face_, false, false}), bold({face_, true, false}), oblique({face_, false, true});
    EXPECT_EQ(bold.Metrics()->InternalLeading, plain.Metrics()->InternalLeading);
    for (const char16_t unit : {u'g', u' ', u'\u0301', char16_t{0xD800}}) {
        EXPECT_EQ(bold.Extent(unit).cx, plain.Extent(unit).cx + 1);
        EXPECT_EQ(oblique.Extent(unit).cx, plain.Extent(unit).cx);
    }
    const auto upright = plain.Coverage(u'H', GlyphFormat::kGray8, kHalf);
    const auto slanted = oblique.Coverage(u'H', GlyphFormat::kGray8, kHalf);
    const auto heavy = bold.Coverage(u'H', GlyphFormat::kGray8, kHalf);
    ASSERT_TRUE(upright && slanted && heavy);
    // A lean of a quarter: the box grows by a quarter of its height. Bold adds a 24th of the em: 2048 / 24 / 2 = 42.7.
    EXPECT_EQ(slanted->BlackBoxY, upright->BlackBoxY);
    EXPECT_NEAR(slanted->BlackBoxX, upright->BlackBoxX + upright->BlackBoxY / 4.0, 1.0);
    EXPECT_NEAR(heavy->BlackBoxX, upright->BlackBoxX + 42.7, 1.5);
    EXPECT_NEAR(heavy->BlackBoxY, upright->BlackBoxY + 42.7, 1.5);
}

TEST_F(OutlineFontTest, MatricesWithoutUseGiveNothing) {
    const OutlineFont font({face_, true, true});
    EXPECT_FALSE(font.Coverage(u' ', GlyphFormat::kGray8, kHalf));
    EXPECT_FALSE(font.Coverage(u'A', GlyphFormat::kGray8, {0, 0x8000, 0, 0x8000}));    // x' = 0
    EXPECT_FALSE(font.Coverage(u'A', GlyphFormat::kMono, {0x8000, 0, 0x8000, 0}));     // y' = 0
    EXPECT_FALSE(font.Coverage(u'A', GlyphFormat::kGray8, {1 << 22, 0, 0, 1 << 22}));  // 64 ems of 2048 a side
    constexpr std::array kExtremes{std::numeric_limits<int32_t>::min(), -0x8000, 0, 1, 0x8000,
                                   std::numeric_limits<int32_t>::max()};
    for (size_t i = 0; i < size_t{6} * 6 * 6 * 6; ++i) {
        const GlyphMatrix matrix{kExtremes[i % 6], kExtremes[i / 6 % 6], kExtremes[i / 36 % 6], kExtremes[i / 216]};
        const auto mask = font.Coverage(u'g', GlyphFormat::kGray8, matrix);
        ASSERT_LE(mask ? mask->Bytes.size() : 0, size_t{1} << 26U);
    }
}

// One table at a time: damage everywhere would stop at the first broken hinting program and never reach the outlines.
TEST_F(OutlineFontTest, DamagedFilesGiveSoundAnswers) {
    const FontTables sound = DejaVuTables();
    std::mt19937 random(1);
    size_t drawn = 0;
    for (const auto& [tag, table] : sound) {
        for (int round = 0; round < 4 && !table.empty(); ++round) {
            FontTables damaged = sound;
            for (size_t i = 0; i < 2 + table.size() / 100; ++i) {
                damaged[tag][random() % table.size()] = static_cast<uint8_t>(random());
            }
            const TemporaryFont file(damaged);
            const std::optional<FontFace> face = file.Read();
            if (!face) continue;
            const OutlineFont font({&*face, round % 2 == 0, round > 1});
            for (char16_t unit = 0x20; unit < 0x180; ++unit) {
                const GlyphFormat format = unit % 5 == 0 ? GlyphFormat::kMono : GlyphFormat::kGray8;
                const auto mask = font.Coverage(unit, format, {1500, 200, 0, 1500});
                ASSERT_TRUE(!mask || (mask->BlackBoxX > 0 && mask->BlackBoxY > 0)) << tag;
                drawn += mask ? 1 : 0;
            }
        }
    }
    EXPECT_GT(drawn, 1000U);  // most damage is survived, or this test would show little
}

TEST_F(OutlineFontTest, ThreadsDrawTheSameBytes) {
    const auto drawAll = [](const OutlineFont& font) {
        Bytes all;
        for (char16_t unit = 0x21; unit < 0x250; ++unit) {
            const GlyphFormat format = unit % 3 == 0 ? GlyphFormat::kMono : GlyphFormat::kGray8;
            const auto mask = font.Coverage(unit, format, {1500, 300, -300, 1500});
            if (mask) all.insert(all.end(), mask->Bytes.begin(), mask->Bytes.end());
            all.push_back(static_cast<uint8_t>(font.Extent(unit).cx));
        }
        return all;
    };
    const OutlineFont alone({face_, true, false}), shared({face_, true, false});
    const Bytes expected = drawAll(alone);
    std::array<Bytes, 8> drawn;
    {
        std::vector<std::jthread> threads;
        threads.reserve(drawn.size());
        for (Bytes& bytes : drawn) threads.emplace_back([&] { bytes = drawAll(shared); });
    }
    for (const Bytes& bytes : drawn) EXPECT_TRUE(bytes == expected);
}

}  // namespace
}  // namespace captionfx
