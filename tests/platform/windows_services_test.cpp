// The services of Windows, as far as they can be held to rules on any machine. What fonts and titles look like is held
// to the other system's answers in tests/systems.
#include <algorithm>
#include <array>
#include <future>
#include <numeric>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/services.h"

namespace captionfx::test {
namespace {

LogFont Request(std::u16string_view face, int32_t weight = kRegularWeight) {
    LogFont request{};
    request.lfHeight = -2048;
    request.lfWeight = weight;
    request.lfCharSet = kDefaultCharSet;
    face.copy(request.lfFaceName, kFaceNameLength - 1);
    return request;
}

TEST(WindowsServicesTest, EnumeratedFamiliesAndTheDefaultHaveMetrics) {
    FontSystem& fonts = SystemServices().Fonts();
    std::set<std::u16string> families;
    fonts.EnumerateFamilies([&](std::u16string_view family) { families.emplace(family); });
    for (const char16_t* family : {u"DejaVu Sans", u"Liberation Sans", u"Droid Sans Fallback"})
        EXPECT_TRUE(families.contains(family)) << "scripts/install-dependencies installs it";
    EXPECT_TRUE(fonts.Realise(fonts.DefaultGuiFont())->Metrics());
    EXPECT_TRUE(fonts.Realise(Request(u"no such face"))->Metrics()) << "the default answers";
    EXPECT_THROW(fonts.EnumerateFamilies([](std::u16string_view /*family*/) { throw std::bad_alloc(); }),
                 std::bad_alloc);
}

// DejaVu Sans has 2048 units an em, so that its own numbers are the answers: win ascent and descent 1901 and 483,
// typographic 1556 and -492, advance of 'A' 1401. Its bold advances 1585.
TEST(WindowsServicesTest, FontsAnswerInUnitsOfTheEm) {
    FontSystem& fonts = SystemServices().Fonts();
    const auto font = fonts.Realise(Request(u"DejaVu Sans"));
    const OutlineMetrics metrics = font->Metrics().value();
    EXPECT_EQ(metrics.Height, 1901 + 483);
    EXPECT_EQ(metrics.InternalLeading, 1901 + 483 - 2048);
    EXPECT_EQ(metrics.Ascent, 1556);
    EXPECT_EQ(metrics.Descent, -492);
    EXPECT_EQ(font->Extent(u'A').cx, 1401);
    EXPECT_EQ(font->Extent(u'A').cy, 1901 + 483);
    EXPECT_EQ(fonts.Realise(Request(u"DejaVu Sans", kBoldWeight))->Extent(u'A').cx, 1585);
    EXPECT_EQ(fonts.Realise(Request(u"DejaVu Sans")), font) << "realised once";

    std::array<uint16_t, 5> glyphs{};
    EXPECT_TRUE(font->FindMissingGlyphs(u"A\u89C6\xD83D\xDE00Z", glyphs));
    EXPECT_NE(glyphs[0], 0);
    EXPECT_EQ(glyphs[1], 0);
    EXPECT_EQ(glyphs[2], 0) << "halves of a pair are lacking";
    EXPECT_EQ(glyphs[3], 0);
    EXPECT_FALSE(font->FindMissingGlyphs(u"AZ", std::span(glyphs).first(2)));
}

// 'H' of DejaVu Sans goes from (201, 0) to (1339, 1493), at 32 pixels an em from (3.1, 0) to (20.9, 23.3).
TEST(WindowsServicesTest, CoverageFollowsMatrixAndFormat) {
    const auto font = SystemServices().Fonts().Realise(Request(u"DejaVu Sans"));
    const int32_t scale = 65536 / 64;
    const struct {
        GlyphFormat format;
        uint8_t full;
    } rows[] = {{GlyphFormat::kGray8, 64}, {GlyphFormat::kGray4, 16}, {GlyphFormat::kGray2, 4}};
    for (const auto& row : rows) {
        const auto upright = font->Coverage(u'H', row.format, {scale, 0, 0, scale});
        ASSERT_TRUE(upright);
        EXPECT_EQ(upright->BlackBoxX, 18);
        EXPECT_EQ(upright->BlackBoxY, 24);
        EXPECT_EQ(upright->OriginX, 3);
        EXPECT_EQ(upright->OriginY, 24);
        EXPECT_EQ(upright->Bytes.size(), 20U * 24) << "rows of whole words";
        EXPECT_EQ(*std::ranges::max_element(upright->Bytes), row.full);
        const auto turned = font->Coverage(u'H', row.format, {0, scale, -scale, 0});  // a quarter, anticlockwise
        ASSERT_TRUE(turned);
        EXPECT_EQ(turned->BlackBoxX, 24);
        EXPECT_EQ(turned->BlackBoxY, 18);
        EXPECT_EQ(turned->OriginX, -24);
        EXPECT_EQ(turned->OriginY, 21);
    }
    const auto mono = font->Coverage(u'H', GlyphFormat::kMono, {scale, 0, 0, scale});
    ASSERT_TRUE(mono);
    EXPECT_EQ(mono->Bytes.size(), 4U * 24);
    EXPECT_FALSE(font->Coverage(u' ', GlyphFormat::kGray8, {scale, 0, 0, scale}));
    EXPECT_FALSE(font->Coverage(u'A', GlyphFormat::kGray8, {INT32_MAX, 0, 0, INT32_MAX})) << "67 million pixels a side";
}

TEST(WindowsServicesTest, ThreadsGetTheSameAnswers) {
    const auto ask = [] {
        const auto font = SystemServices().Fonts().Realise(Request(u"Liberation Serif"));
        int64_t sum = 0;
        for (char16_t unit = u'!'; unit < u'\u0180'; ++unit) {
            const auto glyph = font->Coverage(unit, GlyphFormat::kGray8, {1024, 0, 0, 1024});
            sum += font->Extent(unit).cx;
            if (glyph) sum = std::accumulate(glyph->Bytes.begin(), glyph->Bytes.end(), sum * 3);
        }
        return sum;
    };
    std::vector<std::future<int64_t>> answers;
    for (int i = 0; i < 4; ++i) answers.push_back(std::async(std::launch::async, ask));
    const int64_t expected = ask();
    for (auto& answer : answers) EXPECT_EQ(answer.get(), expected);
}

TEST(WindowsServicesTest, LinkedFontsShowTheCharacter) {
    const std::unique_ptr<FontLink> link = SystemServices().CreateFontLink();
    ASSERT_NE(link, nullptr);
    const LogFont base = Request(u"DejaVu Sans", kBoldWeight);
    const std::u16string text = u"\u65E5\u672C\u8A9E";
    const CodePageRun run = link->GetStrCodePages(text);
    EXPECT_EQ(run.Length, 3);
    for (const char16_t unit : text) {
        const auto mapped = link->MapFont(base, run.CodePages, unit);
        ASSERT_TRUE(mapped);
        EXPECT_EQ(mapped->lfHeight, base.lfHeight);
        uint16_t glyph = 0;
        EXPECT_FALSE(SystemServices().Fonts().Realise(*mapped)->FindMissingGlyphs({&unit, 1}, {&glyph, 1}));
    }
    EXPECT_FALSE(link->MapFont(base, 0, u'\xD83D')) << "half a pair";
    link->ResetFontMapping();
}

TEST(WindowsServicesTest, DocumentsStayInTheirText) {
    // Each entity is ten of the one before: ten thousand million characters.
    std::u16string nested = u"<!DOCTYPE a [<!ENTITY e0 'x'>";
    for (char16_t level = u'1'; level <= u'9'; ++level) {
        nested += std::u16string(u"<!ENTITY e") + level + u" '";
        for (int i = 0; i < 10; ++i) nested += std::u16string(u"&e") + static_cast<char16_t>(level - 1) + u";";
        nested += u"'>";
    }
    nested += u"]><a b='&e9;'/>";
    const struct {
        const char16_t* text;
        bool isLoaded;
        const char* attribute;  // "b" of the root "a", once it is loaded
    } rows[] = {{u"<?xml version='1.0' encoding='UTF-8'?><a b='\u00e9'/>", true, "\xC3\xA9"},
                {u"<a b='&#x1F600;'/>", true, "\xF0\x9F\x98\x80"},
                {u"<!DOCTYPE a [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><a b='&x;'/>", false, ""},
                {u"<!DOCTYPE a [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><a>&x;</a>", false, ""},
                {u"<!DOCTYPE a [<!ENTITY x 'y'>]><a b='&x;'/>", false, ""},
                {nested.c_str(), false, ""},
                {u"<a b=''", false, ""},
                {u"", false, ""}};
    for (const auto& row : rows) {
        const std::unique_ptr<XmlDocument> document = SystemServices().CreateXmlDocument();
        ASSERT_NE(document, nullptr);
        EXPECT_EQ(document->LoadText(row.text), row.isLoaded);
        if (!row.isLoaded) continue;
        const XmlNode root = document->Child(document->Document(), "a");
        EXPECT_EQ(document->Attribute(root, "b").value_or(""), row.attribute);
        EXPECT_FALSE(document->Attribute(root, "c"));
        EXPECT_FALSE(document->NodeOf(nullptr));
    }
}

TEST(WindowsServicesTest, ClockPagesAndProcessors) {
    PlatformServices& services = SystemServices();
    const uint32_t start = services.Time().Milliseconds();
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    EXPECT_NEAR(services.Time().Milliseconds() - start, 30, 25);
    EXPECT_EQ(services.Time().ProcessorCount(), static_cast<int32_t>(std::thread::hardware_concurrency()));
    const PageBlock block(services.Pages(), 100000);
    ASSERT_TRUE(block);
    EXPECT_TRUE(std::all_of(block.data(), block.data() + 100000, [](uint8_t byte) { return byte == 0; }));
    EXPECT_FALSE(PageBlock(services.Pages(), SIZE_MAX / 2));
    EXPECT_EQ(services.Modules().LoadBesideLibrary("kernel32"), nullptr) << "the system's folder is not ours";
}

}  // namespace
}  // namespace captionfx::test
