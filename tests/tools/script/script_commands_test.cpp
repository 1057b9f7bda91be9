// Title scripts and subtitles as users of the tool meet them: converted, shown and drawn.
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/tools/process.h"
#include "tests/tools/scratch_folder.h"
#include "tools/png_file.h"

namespace captionfx {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kExamples = CAPTIONFX_SOURCE_DIR "/examples/";

struct Box {
    double width, height, x, y;
};

class ScriptCommands : public testing::Test {
protected:
    std::string Write(const std::string& name, const std::string& text) const {
        std::ofstream(scratch_ / name, std::ios::binary) << text;
        return (scratch_ / name).string();
    }
    [[nodiscard]] std::string Read(const std::string& name) const {
        std::ifstream file(scratch_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    [[nodiscard]] std::string Path(const std::string& name) const { return (scratch_ / name).string(); }

    /// Runs without an error; returns what was noted.
    std::string Convert(const std::string& from, const std::string& to, std::vector<std::string> more = {}) const {
        more.insert(more.begin(), {"convert", from, Path(to)});
        const ProcessResult result = RunTool(scratch_, more);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return result.errors;
    }
    /// The boxes of the strings of a title.
    [[nodiscard]] std::vector<Box> BoxesOf(const std::string& title) const {
        const ProcessResult shown = RunTool(scratch_, {"show", title});
        EXPECT_EQ(shown.exitCode, 0) << shown.errors;
        std::vector<Box> boxes;
        std::istringstream lines(shown.output);
        for (std::string line; std::getline(lines, line);) {
            Box box{};
            if (std::sscanf(line.c_str(), "string %*d: %lf x %lf at (%lf, %lf)", &box.width, &box.height, &box.x,
                            &box.y) == 4)
                boxes.push_back(box);
        }
        return boxes;
    }
    [[nodiscard]] PngImage Frame(const std::string& title, const std::string& time,
                                 std::vector<std::string> more = {}) const {
        more.insert(more.begin(), {"render", title, "--at", time, "-o", Path("frame.png")});
        const ProcessResult result = RunTool(scratch_, more);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return ReadPng(scratch_ / "frame.png");
    }

    ScratchFolder scratch_;
};

/// How many pixels of columns [from, to) are solid.
size_t Ink(const PngImage& image, int32_t from, int32_t to) {
    size_t ink = 0;
    for (size_t i = 0; i < image.pixels.size(); ++i) {
        const auto x = static_cast<int32_t>(i % static_cast<size_t>(image.width));
        if (x >= from && x < to && image.pixels[i] >> 24U > 200) ++ink;
    }
    return ink;
}

TEST_F(ScriptCommands, ExamplesComeBackAsTheyWere) {
    for (const char* name : {"hello", "lower-third", "keyframes", "showcase"}) {
        EXPECT_THAT(Convert(std::string(kExamples) + name + ".json", "a.xml"), IsEmpty());
        EXPECT_THAT(Convert(Path("a.xml"), "b.json"), IsEmpty()) << name << ": all of it can be said";
        EXPECT_THAT(Convert(Path("b.json"), "c.xml"), IsEmpty());
        EXPECT_EQ(Read("a.xml"), Read("c.xml")) << name;
    }
    EXPECT_THAT(Read("b.json"), HasSubstr("\"in\": {\"effect\": \"trance-center\", \"seconds\": 0.8}"));
}

TEST_F(ScriptCommands, StylesTextsAndTurnsComeBackAsTheyWere) {
    const std::string script = Write("a.json", R"({"frame": "640x360", "strings": [
        {"text": "世 one 界\ntwo", "size": 33.3, "stretch": 1.25, "spacing": -1.5, "widthLimit": "30%", "lineSpace": 3,
         "face": {"visible": false, "color": "#123456", "opacity": 0.3}, "rotate": 33, "anchor": "bottom-right"},
        {"runs": [{"text": "a", "border": {"size": 4, "to": "#FF0000", "gradient": "up-left"}, "italic": true},
                  {"text": "b", "shadow": {"extrude": true, "casts": "border", "offset": [0.5, -7]}}, "c"],
         "border": {"color": "#00FF00", "visible": false}, "shadow": {"blur": 9}, "effect": "fade", "progress": 0.25},
        {"text": "x", "keys": [{"time": 0.1, "effect": "nothing", "progress": 0}, {"time": 3, "effect": "PATH_WAVE", "progress": 0.3}]}
    ]})");
    EXPECT_THAT(Convert(script, "a.xml"), IsEmpty());
    EXPECT_THAT(Convert(Path("a.xml"), "b.json"), IsEmpty());
    Convert(Path("b.json"), "c.xml");
    EXPECT_EQ(Read("a.xml"), Read("c.xml"));
    EXPECT_THAT(Read("b.json"), HasSubstr("\"text\": \"世 one 界\\ntwo\"")) << "characters of other fonts are no runs";
}

TEST_F(ScriptCommands, WhatAScriptCannotSayIsNoted) {
    Convert(Write("a.json", R"({"strings": [{"text": "ab", "size": 32}]})"), "a.xml");
    std::string xml;
    for (const char c : Read("a.xml")) {
        if (c > 0) xml += c;  // ASCII in UTF-16
    }
    xml.erase(0, xml.find("?>") + 2);
    const std::string mask = "MaskFile=\"";
    xml.insert(xml.find(mask) + mask.size(), "m.png");
    EXPECT_THAT(Convert(Write("b.xml", xml), "b.json"),
                testing::EndsWith("note: string 0: a script cannot say all of MetaString MaskFile\n"));
}

TEST_F(ScriptCommands, AnchorsPutTheMeasuredTextIntoTheFrame) {
    std::string strings;
    for (const char* row :
         {"top-left", "top", "top-right", "left", "center", "right", "bottom-left", "bottom", "bottom-right"})
        strings += std::string(strings.empty() ? "" : ",") +
                   R"({"text": "HOH", "size": 30, "margin": [10, 5], "anchor": ")" + row + "\"}";
    const std::vector<Box> boxes =
        BoxesOf(Write("a.json", R"({"frame": "800x400", "scale": 2, "strings": [)" + strings + "]}"));
    ASSERT_EQ(boxes.size(), 9U);
    // The page is 400 by 200 units, the margins 40 and 10.
    for (size_t i = 0; i < boxes.size(); ++i) {
        const Box& box = boxes[i];
        const double column[] = {40, (400 - box.width) / 2, 360 - box.width};
        const double row[] = {10, (200 - box.height) / 2, 190 - box.height};
        EXPECT_EQ(box.x, std::floor(column[i % 3])) << i;
        EXPECT_EQ(box.y, std::floor(row[i / 3])) << i;
    }
    // Turned by a quarter the text reaches down from its corner, and to the left by its height.
    const Box turned = BoxesOf(Write("b.json", R"({"frame": "400x200", "strings": [
        {"text": "HOH", "size": 30, "anchor": "top-right", "rotate": 90}]})"))
                           .at(0);
    EXPECT_NEAR(turned.x, 400, 1.01);
    EXPECT_NEAR(turned.y, 0, 1.01);
}

// Two columns at each edge: the letters lie beside their columns, and none may be cut.
TEST_F(ScriptCommands, AnchorsKeepVerticalTextInTheFrame) {
    const std::string text = R"("text": "縦書\n書縦", "size": 30, "vertical": true, "anchor": )";
    const PngImage frame = Frame(
        Write("a.json", R"({"frame": "300x150", "strings": [{)" + text + R"("left"}, {)" + text + "\"right\"}]}"), "0");
    EXPECT_GT(Ink(frame, 0, 60), 500U);
    EXPECT_EQ(Ink(frame, 0, 150), Ink(frame, 150, 300));
    EXPECT_GT(Ink(frame, 290, 300), 0U) << "up to the edge";
    EXPECT_GT(Ink(frame, 0, 10), 0U);
}

TEST_F(ScriptCommands, AllStringsAtRestAreInEveryFrame) {
    const std::string script = Write("a.json", R"({"frame": "200x60", "strings": [
        {"text": "II", "size": 40, "anchor": "left"}, {"text": "II", "size": 40, "anchor": "right"}]})");
    const ProcessResult result =
        RunTool(scratch_, {"render", script, "--from", "0", "--to", "3", "--fps", "1", "-o", Path("%d.png")});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    for (const char* name : {"0.png", "1.png", "2.png"}) {
        const PngImage frame = ReadPng(scratch_ / name);
        EXPECT_GT(Ink(frame, 0, 100), 100U) << name;
        EXPECT_GT(Ink(frame, 100, 200), 100U) << name;
    }
}

TEST_F(ScriptCommands, TheTitleEndsWhereItsDurationSays) {
    for (const auto& [duration, frames] : {std::pair{"1.5", 3}, {"3", 6}}) {
        const std::string script = Write("a.json", std::string(R"({"frame": "64x36", "duration": )") + duration +
                                                       R"(, "strings": [{"text": "I", "hold": 2}]})");
        const ProcessResult result =
            RunTool(scratch_, {"render", script, "--fps", "2", "--format", "bgra", "-o", "-", "--quiet"});
        EXPECT_EQ(result.output.size(), static_cast<size_t>(frames) * 64 * 36 * 4) << duration;
    }
}

TEST_F(ScriptCommands, FrameAskedForShowsTheWholeTitleSmaller) {
    const std::string script = Write("a.json", R"({"frame": "400x200", "strings": [
        {"text": "H", "size": 80, "anchor": "right"}]})");
    const PngImage whole = Frame(script, "0");
    EXPECT_EQ(whole.width, 400);
    const PngImage half = Frame(script, "0", {"--frame", "200x100"});
    EXPECT_EQ(half.width, 200);
    EXPECT_EQ(Ink(half, 0, 160), 0U);
    EXPECT_NEAR(static_cast<double>(Ink(half, 160, 200)) * 4, static_cast<double>(Ink(whole, 320, 400)), 250);
}

TEST_F(ScriptCommands, TitlesOfManyStringsAreDrawnAsTheStringsThatAreSeen) {
    std::string srt;
    for (int i = 0; i < 20; ++i) {
        srt += "\n00:00:0" + std::to_string(i / 4) + "," + std::to_string(i % 4 * 25) + "0 --> 00:00:09,000\nNo " +
               std::to_string(i) + "\n\n";
    }
    const std::string many = Write("many.srt", srt);
    const std::string few = Write("few.srt", srt.substr(0, srt.find("No 4")) + "No 4\n");
    EXPECT_EQ(Frame(many, "1.1", {"--frame", "480x270"}).pixels, Frame(few, "1.1", {"--frame", "480x270"}).pixels);
    EXPECT_EQ(BoxesOf(many).size(), 20U);
}

TEST_F(ScriptCommands, OverlappingSubtitlesStackAwayFromTheirEdge) {
    const std::string talk =
        Write("a.srt",
              "\n00:01,000 --> 00:05,000\nfirst\n\n\n00:02,000 --> 00:06,000\nsecond\nof two lines\n\n"
              "\n00:03,000 --> 00:04,000\nthird\n\n\n00:05,500 --> 00:09,000\nfourth\n");
    for (const bool isTop : {false, true}) {
        const std::string style =
            Write("style.json", std::string(R"({"frame": "800x450", "cue": {"size": 30, "anchor": ")") +
                                    (isTop ? "top" : "bottom") + R"(", "in": {"effect": "fade"}}})");
        Convert(talk, "a.xml", {"--style", style});
        const std::vector<Box> boxes = BoxesOf(Path("a.xml"));
        ASSERT_EQ(boxes.size(), 4U);
        EXPECT_NEAR(isTop ? boxes[0].y : boxes[0].y + boxes[0].height, isTop ? 0 : 450, 1);
        for (size_t i = 1; i < 3; ++i) {
            const Box &upper = boxes[isTop ? i - 1 : i], &lower = boxes[isTop ? i : i - 1];
            EXPECT_LE(upper.y + upper.height, lower.y);
            EXPECT_GT(upper.y + upper.height, lower.y - 1.01) << "stacked without a gap";
        }
        EXPECT_EQ(boxes[3].y, boxes[0].y) << "the first one's place is free again";
    }
}

TEST_F(ScriptCommands, SubtitlesAreDrawnInTheirStyleWithoutAFileBetween) {
    const std::string talk = std::string(kExamples) + "talk.srt", style = std::string(kExamples) + "subtitles.json";
    Convert(talk, "a.json", {"--style", style});
    const PngImage wanted = Frame(Path("a.json"), "2.5", {"--frame", "480x270"});
    EXPECT_EQ(Frame(talk, "2.5", {"--frame", "480x270", "--style", style}).pixels, wanted.pixels);
    EXPECT_NE(Frame(talk, "2.5", {"--frame", "480x270"}).pixels, wanted.pixels) << "the usual style";
    for (const char* name : {"a.png", "b.png"}) {
        const std::string title = name[0] == 'a' ? talk : Path("a.json");
        std::vector<std::string> preview{"preview", title, "--at", "2.5", "-o", Path(name)};
        if (title == talk) preview.insert(preview.end(), {"--style", style});
        EXPECT_EQ(RunTool(scratch_, preview).errors, "");
    }
    EXPECT_EQ(Read("a.png"), Read("b.png"));
}

// The times of the example are tenths of seconds less two passages of 0.15 s, which floats do not add up to.
TEST_F(ScriptCommands, SubtitlesBecomeScriptsWithPlainTimes) {
    for (const char* name : {"talk.srt", "talk.vtt"}) {
        Convert(std::string(kExamples) + name, "a.json", {"--style", std::string(kExamples) + "subtitles.json"});
        const nlohmann::json script = nlohmann::json::parse(Read("a.json"));
        for (const nlohmann::json& string : script.at("strings")) {
            ASSERT_TRUE(string.contains("hold")) << string.at("text");
            EXPECT_LE(string.at("hold").dump().size(), 3U) << string.at("text");
        }
    }
}

TEST_F(ScriptCommands, TimedWordsStandWhereTheWholeTextHasThem) {
    const std::string style =
        Write("style.json", R"({"frame": "480x270", "cue": {"size": 30, "widthLimit": 300, "anchor": "bottom"}})");
    Convert(Write("a.vtt",
                  "WEBVTT\n\n00:01.000 --> 00:09.000\nmany words <00:02.000>that <i>need</i> <00:03.000>two lines\n"),
            "a.xml", {"--style", style});
    Convert(Write("b.srt", "\n00:00:01,000 --> 00:00:09,000\nmany words that <i>need</i> two lines\n"), "b.xml",
            {"--style", style});
    EXPECT_GE(BoxesOf(Path("a.xml")).size(), 3U);
    const std::vector<std::string> size{"--frame", "480x270"};
    const PngImage words = Frame(Path("a.xml"), "4", size), whole = Frame(Path("b.xml"), "4", size);
    for (size_t i = 0; i < whole.pixels.size(); ++i) {
        // Sums of positions in another order may move a weight by its last bit.
        ASSERT_NEAR(static_cast<double>(words.pixels[i] >> 24U), static_cast<double>(whole.pixels[i] >> 24U), 2) << i;
    }
    EXPECT_LT(Ink(Frame(Path("a.xml"), "2.5", size), 0, 480), Ink(whole, 0, 480)) << "the last words are yet to come";
}

TEST_F(ScriptCommands, WrongFilesGiveOneLine) {
    const std::string talk = std::string(kExamples) + "talk.srt", hello = std::string(kExamples) + "hello.json";
    const struct {
        std::vector<std::string> arguments;
        std::string error;
    } rows[] = {
        {{"render", Write("a.json", "{\n\"strings\": 1}"), "-o", Path("a.png")}, "a.json:2:12: strings: expected"},
        {{"show", Write("b.srt",
                        "\xFF\xFE"
                        "1")},
         "b.srt:1:1: the text is UTF-16; save it as UTF-8"},
        {{"show", Write("a.srt", "1\n")}, "a.srt:1:1: expected times"},
        {{"show", std::string(kExamples) + "subtitles.json"}, "subtitles.json:1:1: this is a style for subtitles"},
        {{"convert", talk, Path("a.xml"), "--style", hello}, "hello.json:1:1: this is a title, not a style"},
        {{"convert", hello, Path("a.xml"), "--style", hello}, "hello.json: a style is for subtitles"},
        {{"render", hello, "--style", hello, "-o", Path("a.png")}, "hello.json: a style is for subtitles"},
        {{"convert", hello, Path("a.yaml")}, "a.yaml' must end in .xml or .json"},
        {{"convert", Path("none.json"), Path("a.xml")}, "none.json: cannot be opened: No such file"},
    };
    for (const auto& row : rows) {
        const ProcessResult result = RunTool(scratch_, row.arguments);
        EXPECT_NE(result.exitCode, 0);
        EXPECT_EQ(result.ErrorLines(), 1) << result.errors;
        EXPECT_THAT(result.errors, HasSubstr(row.error));
    }
    EXPECT_FALSE(std::filesystem::exists(scratch_ / "a.xml"));
}

}  // namespace
}  // namespace captionfx
