// Where lines end in strings with a width limit.
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/tools/process.h"
#include "tests/tools/scratch_folder.h"

namespace captionfx {
namespace {

using nlohmann::json;
using testing::ElementsAre;

class WordWrap : public testing::Test {
protected:
    /// The strings of a script as they come back from a title, of this one or of one that was saved as XML between.
    [[nodiscard]] json Strings(const json& strings, const char* between = "b.json") const {
        std::ofstream(scratch_ / "a.json") << json{{"frame", "800x600"}, {"strings", strings}};
        Convert("a.json", between);
        if (std::string(between) != "b.json") Convert(between, "b.json");
        std::ifstream file(scratch_ / "b.json");
        return json::parse(file).at("strings");
    }
    [[nodiscard]] static std::vector<std::string> LinesOf(const std::string& text) {
        std::istringstream stream(text);
        std::vector<std::string> lines;
        for (std::string line; std::getline(stream, line);) lines.push_back(line);
        return lines;
    }
    /// The width of a line at the size 20, by a title of its own that stands at the right edge.
    [[nodiscard]] double WidthOf(const std::string& line) const {
        const json right = Strings({{{"text", line}, {"size", 20}, {"anchor", "right"}}});
        return 800 - right[0].at("position")[0].get<double>();
    }

private:
    void Convert(const char* from, const char* to) const {
        const ProcessResult result =
            RunTool(scratch_, {"convert", (scratch_ / from).string(), (scratch_ / to).string()});
        ASSERT_EQ(result.exitCode, 0) << result.errors;
    }

    ScratchFolder scratch_;
};

// A line holds as many words as go in; the position of WidthOf is cut to whole units.
TEST_F(WordWrap, LinesHoldAllWordsThatFit) {
    const std::string words = "one line that is far too long for its limit ends between words, again and again";
    const json strings =
        Strings({{{"text", words}, {"size", 20}, {"widthLimit", 170}, {"align", "right"}}}, "between.xml");
    const std::vector<std::string> lines = LinesOf(strings[0].at("text"));
    ASSERT_GE(lines.size(), 4U);
    std::string joined;
    for (size_t i = 0; i < lines.size(); ++i) {
        EXPECT_LE(WidthOf(lines[i]), 171) << lines[i];
        joined += (i > 0 ? " " : "") + lines[i];
        if (i + 1 == lines.size()) continue;
        const std::string longer = lines[i] + " " + lines[i + 1].substr(0, lines[i + 1].find(' '));
        EXPECT_GT(WidthOf(longer), 170) << longer;
    }
    EXPECT_EQ(joined, words);
}

TEST_F(WordWrap, OnlyBlanksBecomeLineEnds) {
    const std::string longWord(35, 'm'), tall = "several words in one column";
    const json strings = Strings({{{"text", "a " + longWord + " b"}, {"size", 20}, {"widthLimit", 200}},
                                  {{"text", "なんでも折り返せる"}, {"size", 20}, {"widthLimit", 90}},
                                  {{"text", "free text is left as it is"}, {"size", 20}}});
    EXPECT_EQ(strings[0].at("text"), "a\n" + longWord + " b") << "a word longer than a line is cut";
    EXPECT_EQ(strings[1].at("text"), "なんでも折り返せる") << "the library wraps it well";
    EXPECT_EQ(strings[2].at("text"), "free text is left as it is");

    const json vertical = Strings({{{"text", tall}, {"size", 20}, {"widthLimit", 150}, {"vertical", true}}});
    EXPECT_THAT(LinesOf(vertical[0].at("text")), ElementsAre("several words", "in one column"));
    // Beside a horizontal string the letters stand upright, 23.3 units high: six of them to a column.
    const json both = Strings({{{"text", tall}, {"size", 20}, {"widthLimit", 150}, {"vertical", true}},
                               {{"text", "horizontal"}, {"size", 20}}});
    EXPECT_THAT(LinesOf(both[0].at("text")), ElementsAre("several", "words", "in one", "column"));
}

TEST_F(WordWrap, RunsKeepTheirCharacters) {
    const json strings = Strings({{{"runs", {"aaaa bbbb ", {{"text", "cccc dddd"}, {"bold", true}}, " eeee ffff"}},
                                   {"size", 20},
                                   {"widthLimit", 130}}});
    EXPECT_EQ(strings[0].at("runs")[0], "aaaa bbbb\n");
    EXPECT_EQ(strings[0].at("runs")[1].at("text"), "cccc dddd");
    EXPECT_EQ(strings[0].at("runs")[2], "\neeee ffff");
}

}  // namespace
}  // namespace captionfx
