// Which character belongs to which line and paragraph. Every character of "Box" at size 64 advances 32.
#include "layout/reflow.h"

#include <random>

#include <gtest/gtest.h>

#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

/// The text with '|' where a line begins by wrapping and '#' where a paragraph begins; CR and LF as 'R' and 'N'.
std::string Flow(const MetaString& string) {
    std::string flow;
    for (int32_t l = 0; l < CountOf(string.Lines); ++l) {
        const MetaLine& line = At(string.Lines, l);
        const bool opensParagraph = At(string.Paragraphs, line.ParagraphIndex).LineStart == l;
        if (l > 0) flow += opensParagraph ? '#' : '|';
        for (int32_t c = line.CharStart; c <= line.CharEnd; ++c) {
            const uint32_t unit = At(string.Characters, c).Value;
            flow += unit == '\r' ? 'R' : unit == '\n' ? 'N' : static_cast<char>(unit);
        }
    }
    return flow;
}

struct ReflowTest : testing::Test {
    /// A string of a width limit, in characters of 32 units.
    MetaString& Make(float charactersALine, std::u16string_view text) {
        owner.ChangeDefaultString([&](StringSpec& string) { string.WidthLimit = charactersALine * 32; });
        return owner.String(owner.Add(text));
    }
    std::string After(int32_t position, const char16_t* text) {
        owner.Title.InsertText(0, position, text);
        EXPECT_EQ(StructureFault(owner.String()), "");
        return Flow(owner.String());
    }
    TestTitle owner;
};

TEST_F(ReflowTest, WrapsByCharacterAndBreaksOnlyAtPairs) {
    const struct {
        float limit;
        const char16_t* text;
        const char* flow;
        float spacing = 0;
    } cases[] = {
        {2, u"abcde", "ab|cd|e"},
        {2.99F, u"abcde", "ab|cd|e"},
        {0.1F, u"abc", "a|b|c"},          // a line always takes one character
        {1e7F, u"a b\nc\rd", "a bNcRd"},  // alone they are ordinary characters
        {2, u"a\nb", "aN|b"},             // which advance
        {2, u"ab\r\ncd", "abR#Ncd"},      // a pair does not
        {9, u"\r\n\r\n", "R#NR#N"},
        {9, u"a\r\r\nb", "aRR#Nb"},
        {9, u"a\n\rb", "aNRb"},
        {-1, u"abc", "abc", -40},  // a run of -8 takes one more, whatever the limit
    };
    for (const auto& c : cases) {
        TestTitle title;
        title.ChangeDefaultString([&](StringSpec& string) { string.WidthLimit = c.limit * 32; });
        const CharSpacing spacing{.WidthScale = 1, .Spacing = c.spacing};
        title.Title.SetDefaultCharSpacing(&spacing);
        const int32_t index = title.Add(c.text);
        EXPECT_EQ(Flow(title.String(index)), c.flow);
        EXPECT_EQ(StructureFault(title.String(index)), "") << c.flow;
    }
}

TEST_F(ReflowTest, InsertionPushesTextOn) {
    Make(2, u"ab\r\ncdef");
    EXPECT_EQ(After(0, u"X"), "Xa|bR#Ncd|ef");  // the wrap falls behind what was inserted
    EXPECT_EQ(After(2, u"YZ"), "Xa|YZ|bR#Ncd|ef");
    EXPECT_EQ(After(5, u"\r\n"), "Xa|YZ|bR#NR#Ncd|ef");
    EXPECT_EQ(After(6, u"\r\n"), "Xa|YZ|bRR#NNR#Ncd|ef");  // into a pair: its halves are lone now
}

TEST_F(ReflowTest, PairsMadeAndBrokenByInsertion) {
    Make(2, u"ab\nc");
    EXPECT_EQ(Flow(owner.String()), "ab|Nc");
    EXPECT_EQ(After(2, u"\r"), "abR#Nc");   // the LF stood on a line of its own already, but only by a wrap
    EXPECT_EQ(After(3, u"x"), "abR|xN|c");  // the pair is cut: the CR gains its width where it stands
}

TEST_F(ReflowTest, ParagraphsKeepTheirSettings) {
    MetaString& string = Make(9, u"a\r\nb\r\nc");
    for (size_t p = 0; p < 3; ++p) string.Paragraphs[p].LineSpace = static_cast<float>(p + 1);
    const auto settings = [&] {
        std::vector<float> spaces;
        for (const MetaParagraph& p : string.Paragraphs) spaces.push_back(p.LineSpace);
        return spaces;
    };
    After(1, u"x\r\ny");  // a new paragraph takes the settings of the one it was split from
    EXPECT_EQ(settings(), (std::vector<float>{1, 1, 2, 3}));
    After(0, u"\n");
    After(0, u"\r");  // a pair of two insertions
    EXPECT_EQ(settings(), (std::vector<float>{1, 1, 1, 2, 3}));
    EXPECT_EQ(Flow(string), "R#NaxR#NyR#NbR#Nc");

    const struct {
        const char16_t *text, *inserted;
        std::vector<float> spaces;  // LineSpace of the paragraphs, 1, 2 and so on at first
    } cases[] = {
        {u"a\rb\r\nc", u"\n", {1, 1, 2}},        // completes a pair: the next paragraph keeps its own
        {u"a\r\nb\r\nc\r\nd", u"x", {1, 2, 3}},  // cuts one: the settings behind it move up
    };
    for (const auto& c : cases) {
        owner.Title.ClearString(0);
        After(0, c.text);
        for (size_t p = 0; p < string.Paragraphs.size(); ++p)
            string.Paragraphs[p].LineSpace = static_cast<float>(p + 1);
        After(2, c.inserted);
        EXPECT_EQ(settings(), c.spaces);
    }
}

TEST_F(ReflowTest, TheTitlesDirectionDecides) {
    // A vertical string whose title has gone back to horizontal wraps by widths, which are its cell heights of 72.
    owner.ChangeDefaultString([](StringSpec& string) {
        string.Vertical = 1;
        string.WidthLimit = 100;
    });
    const int32_t index = owner.Title.AddString();
    owner.ChangeDefaultString([](StringSpec& string) { string.Vertical = 0; });
    owner.Title.InsertText(index, 0, u"abc");
    EXPECT_EQ(Flow(owner.String()), "a|b|c");  // 72 + 72 is beyond 100; by heights 32 + 32 + 32 would fit
}

TEST_F(ReflowTest, IndentsShortenLinesAndRangesAreChecked) {
    const ParagraphSpec indented{0, 0, 0, 0, 32, 32};
    owner.Title.SetDefaultParagraph(&indented);
    MetaString& string = Make(4, u"abcd");
    EXPECT_EQ(Flow(string), "ab|cd");
    EXPECT_EQ(ReflowLines(string, 4, 0, false), 0);
    EXPECT_EQ(ReflowLines(string, -1, 1, false), 0);
    EXPECT_EQ(ReflowLines(string, 3, 2, false), 0);
    EXPECT_EQ(ReflowLines(string, 3, 1, false), 1);
    EXPECT_EQ(InsertLineRecord(string, 3), 2);
    EXPECT_EQ(InsertLineRecord(string, 2), 3);
    EXPECT_EQ(InsertParagraphRecord(string, -1, indented), 1);
}

// Text appended piece by piece, and text inserted anywhere, against what holds for any text: the structure is sound,
// and appending gives what typing it at once gives.
TEST_F(ReflowTest, RandomInsertions) {
    constexpr std::u16string_view kUnits = u"ab \r\n\n\r";
    for (uint32_t seed = 1; seed <= 150; ++seed) {
        std::mt19937 random(seed);
        const auto upTo = [&](int32_t n) { return static_cast<int32_t>(random() % static_cast<uint32_t>(n)); };
        TestTitle title;
        title.ChangeDefaultString([&](StringSpec& string) { string.WidthLimit = static_cast<float>(20 + upTo(200)); });
        const int32_t appended = title.Add(u""), edited = title.Title.AddString();
        std::u16string whole;
        for (int32_t step = 0; step < 12; ++step) {
            std::u16string piece;
            for (int32_t n = 1 + upTo(4); n > 0; --n) {
                piece += kUnits[static_cast<size_t>(upTo(static_cast<int32_t>(kUnits.size())))];
            }
            title.Title.InsertText(appended, static_cast<int32_t>(whole.size()), piece.c_str());
            whole += piece;
            title.Title.InsertText(edited, upTo(CountOf(title.String(edited).Characters) + 1), piece.c_str());
            ASSERT_EQ(StructureFault(title.String(edited)), "") << "seed " << seed << " step " << step;
        }
        const int32_t typed = title.Title.AddString();
        title.Title.InsertText(typed, 0, whole.c_str());
        // A CR that ends one piece gains its LF with the next: it has then wrapped as an ordinary character would.
        if (whole.find(u'\r') == std::u16string::npos) {
            ASSERT_EQ(Flow(title.String(appended)), Flow(title.String(typed))) << "seed " << seed;
        }
        ASSERT_EQ(title.Title.GetParagraphCount(appended), title.Title.GetParagraphCount(typed)) << "seed " << seed;
    }
}

}  // namespace
}  // namespace captionfx::test
