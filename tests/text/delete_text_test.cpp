// Deletion by its stated cases; the model test beside this has the rest.
#include <gtest/gtest.h>

#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

struct DeleteTextTest : testing::Test {
    TestTitle owner;
    IKVT_CaptionFx& title = owner.Title;
};

TEST_F(DeleteTextTest, RefusesWhatDoesNotLieInTheText) {
    owner.Add(u"abc");
    for (const auto& [first, count] :
         {std::pair{-1, 1}, {3, 1}, {0, 4}, {2, 2147483647}, {0, 0}, {0, -1}, {1, -2147483647 - 1}}) {
        EXPECT_EQ(title.DeleteText(0, first, count), 3) << first << ' ' << count;
    }
    EXPECT_EQ(title.DeleteText(7, 0, 1), 0);
    EXPECT_EQ(StructureFault(owner.String()), "");
}

TEST_F(DeleteTextTest, JoinedTextTakesTheLaterParagraph) {
    const struct {
        int32_t first, count;
        std::vector<float> spaces;  // LineSpace of the paragraphs that stay, 1 to 3 at first
    } cases[] = {
        {1, 2, {2, 3}},  // a pair
        {1, 1, {2, 3}},  // only its CR
        {2, 1, {2, 3}},  // only its LF
        {0, 7, {3}},    {4, 1, {1, 3}}, {0, 1, {1, 2, 3}}, {7, 1, {1, 2, 3}},
    };
    for (const auto& c : cases) {
        TestTitle fresh;
        fresh.Add(u"a\r\nb\r\ncd");
        for (size_t p = 0; p < 3; ++p) fresh.String().Paragraphs[p].LineSpace = static_cast<float>(p + 1);
        EXPECT_EQ(fresh.Title.DeleteText(0, c.first, c.count), 8 - c.count);
        EXPECT_EQ(StructureFault(fresh.String()), "") << c.first;
        std::vector<float> spaces;
        for (const MetaParagraph& p : fresh.String().Paragraphs) spaces.push_back(p.LineSpace);
        EXPECT_EQ(spaces, c.spaces) << c.first << ' ' << c.count;
    }
}

TEST_F(DeleteTextTest, EveryCharacterDrawsItsOwnGlyphAfterAnEdit) {
    for (const int32_t cached : {0, 1}) {
        TestTitle fresh;
        fresh.ChangeSettings([&](TitleRenderSettings& s) { s.GlyphCacheEnabled = cached; });
        fresh.Add(u" a b");  // spaces have no pixels
        std::vector<uint32_t> frame(320UL * 240);
        fresh.Title.RenderFrame(frame.data(), 0);
        fresh.Title.DeleteText(0, 0, 1);
        fresh.ChangeSettings([](TitleRenderSettings& s) { s.GlyphCacheEnabled = 1; });
        std::ranges::fill(frame, 0U);
        fresh.Title.RenderFrame(frame.data(), 0);
        const auto ink = [&](size_t x) { return frame[40 * 320 + x] != 0; };
        EXPECT_TRUE(ink(10) && !ink(40) && ink(58)) << "a, blank, b; cache " << cached;
    }
}

}  // namespace
}  // namespace captionfx::test
