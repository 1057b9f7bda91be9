// Title scripts as they are read: what a person writes becomes what the library is asked for, and what is wrong is told
// in one line with its place.
#include "tools/script/title_script.h"

#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tools/effect_list.h"
#include "tools/script/effect_names.h"

namespace captionfx {
namespace {

using testing::ElementsAre;

constexpr FrameSize kFrame{400, 200};

std::string ErrorOf(const std::string& text) try {
    static_cast<void>(ReadTitleScript(text, kFrame));
    return "";
} catch (const PlacedError& error) {
    return error.what();
}

/// A script with one string, "A", with more keys.
std::string WithKeys(const std::string& keys) {
    return R"({"strings": [{"text": "A", )" + keys + "}]}";
}

ScriptString StringWith(const std::string& keys) {
    return ReadTitleScript(WithKeys(keys), kFrame).strings.at(0);
}

TEST(TitleScript, WhatIsWrongIsToldWithPlaceKeyAndWhatWasExpected) {
    // Keys of the one string begin at column 28, their values behind the key, a colon and a space.
    const std::string known = ": strings[0].";
    const struct {
        std::string script, error;
    } rows[] = {
        {"{\n \"strings\": [}",
         "2:14: syntax error while parsing value - unexpected '}'; expected '[', '{', or a literal"},
        {"{\"strings\": [], nul}",
         "1:20: syntax error while parsing object key - invalid literal; expected a key in double quotes"},
        {"{\"strings\": [],}",
         "1:16: syntax error while parsing object key - unexpected '}'; expected a key in double quotes"},
        {"{\"scale\": 1 \"strings\": []}",
         "1:21: syntax error while parsing object - unexpected string literal; expected ',' or '}'"},
        {"[]", "1:1: expected an object, found an array of 0"},
        {"{}", "1:1: the key 'strings' is missing"},
        {"{\"strings\": [], \"strings\": []}", "1:17: the key 'strings' is there twice"},
        {"{\"strings\": [],\n\n  \"stiles\": {}}", "3:3: stiles: this key is not known here; is 'styles' meant?"},
        {"{\"strings\": [], \"zebra\": 1}", "1:17: zebra: this key is not known here"},
        {"{\"strings\": {}}", "1:13: strings: expected an array of strings, found an object"},
        {"{\"strings\": [{}]}", "1:14: strings[0]: the key 'text' is missing"},
        {"{\"strings\": [], \"cue\": {}}", "1:17: cue: a script has strings, a style for subtitles a cue; one must go"},
        {"{\"frame\": \"big\", \"strings\": []}",
         "1:11: frame: expected a size such as \"1920x1080\" or {\"width\": 1920, \"height\": 1080}, found 'big'"},
        {"{\"frame\": {\"width\": 0, \"height\": 9}, \"strings\": []}",
         "1:21: frame.width: expected pixels from 1 to 16384, found 0"},
        {"{\"scale\": 0, \"strings\": []}", "1:11: scale: expected a scale from 0.001 to 1000, found 0"},
        {"{\"styles\": {\"a\": {\"extends\": \"b\"}, \"b\": {\"extends\": \"a\"}}, \"strings\": []}",
         "1:53: styles.b.extends: the style 'a' extends itself"},
        {"{\"styles\": {\"lower\": {}}, \"strings\": [{\"text\": \"A\", \"style\": \"lowr\"}]}",
         "1:62: strings[0].style: there is no style 'lowr'; is 'lower' meant?"},
        {WithKeys("\"text\": \"B\""), "1:28: strings[0]: the key 'text' is there twice"},
        {WithKeys("\"runs\": []"), "1:28" + known + "runs: 'text' says the same; one of the two must go"},
        {"{\"strings\": [{\"runs\": [\"a\",\n\"b\", {\"text\": 7}]}]}",
         "2:15: strings[0].runs[2].text: expected a text, found 7"},
        {"{\"strings\": [{\"text\": \"\"}]}", "1:14: strings[0]: the text is empty"},
        {"{\"strings\": [{\"text\": \"a\\u0000b\"}]}",
         "1:23: strings[0].text: a text cannot hold the character U+0000"},
        {WithKeys("\"colour\": 1"), "1:28" + known + "colour: this key is not known here"},
        {WithKeys("\"face\": \"blue\""),
         "1:36" + known + "face: expected a colour #RRGGBB, such as \"#FFCC00\", found 'blue'"},
        {WithKeys("\"face\": 7"), "1:36" + known + "face: expected a colour #RRGGBB, \"none\" or an object, found 7"},
        {WithKeys("\"face\": {\"colr\": \"#FFFFFF\"}"),
         "1:37" + known + "face.colr: this key is not known here; is 'color' meant?"},
        {WithKeys("\"face\": {\"opacity\": 50}"),
         "1:48" + known + "face.opacity: expected an opacity from 0 to 1, found 50"},
        {WithKeys("\"border\": {\"size\": 2.5}"),
         "1:47" + known + "border.size: expected a whole number, 10 for one eighth of the font's size, found 2.5"},
        {WithKeys("\"shadow\": {\"offset\": [1]}"),
         "1:49" + known + "shadow.offset: expected an offset [right, down], found an array of 1"},
        {WithKeys("\"size\": 2000"), "1:36" + known + "size: expected a font size from 0 to 1638, found 2000"},
        {WithKeys("\"font\": \"\""), "1:36" + known + "font: expected a font name of 1 to 31 characters, found ''"},
        {WithKeys("\"bold\": \"yes\""), "1:36" + known + "bold: expected true or false, found 'yes'"},
        {WithKeys("\"anchor\": \"centre\""),
         "1:38" + known +
             "anchor: expected one of top-left, top, top-right, left, center, right, bottom-left, bottom, "
             "bottom-right, found 'centre'"},
        {WithKeys("\"position\": [1, 2], \"margin\": 5"),
         "1:48" + known + "margin: 'position' says all about the place; one of the two must go"},
        {WithKeys("\"widthLimit\": \"80 %\""),
         "1:42" + known +
             "widthLimit: expected a length above 0, or percent of the frame such as \"80%\", found '80 %'"},
        {WithKeys("\"in\": {\"effect\": \"slideleft\", \"secs\": 1}"),
         "1:58" + known + "in.secs: this key is not known here"},
        {WithKeys("\"in\": {\"effect\": \"slide-lift\"}"),
         "1:45" + known + "in.effect: there is no effect 'slide-lift'; is 'slide-left' meant?"},
        {WithKeys("\"out\": {\"seconds\": 1}"), "1:35" + known + "out: the key 'effect' is missing"},
        {WithKeys("\"hold\": -1"), "1:36" + known + "hold: expected seconds, 0 or more, found -1"},
        {WithKeys("\"hold\": 1, \"keys\": []"),
         "1:28" + known + "hold: 'keys' says all about time; one of the two must go"},
        {WithKeys("\"keys\": [{\"time\": 1, \"effect\": \"fade\", \"progress\": 0},\n"
                  "{\"time\": 1, \"effect\": \"fade\", \"progress\": 1}]"),
         "2:10" + known + "keys[1].time: expected a time after that of the keyframe before"},
        {WithKeys("\"effect\": \"fade\", \"hold\": 1"),
         "1:28" + known + "effect: a string with a timeline has no effect besides"},
    };
    EXPECT_GE(std::size(rows), 30U);
    for (const auto& row : rows) EXPECT_EQ(ErrorOf(row.script), row.error) << row.script;
    EXPECT_EQ(ErrorOf(std::string(1000, '[')), "1:33: values are nested too deep");
    EXPECT_EQ(ErrorOf("{\"\xC3\xA4\xC3\xB6\": 1}"), "1:2: \xC3\xA4\xC3\xB6: this key is not known here");
}

TEST(TitleScript, StylesAreLaidOverEachOther) {
    const TitleScript script = ReadTitleScript(R"({
        "styles": {"base": {"size": 40, "border": {"color": "#102030", "size": 5}},
                   "loud": {"extends": "base", "face": {"color": "#FF0000", "to": "#00FF00", "opacity": 0.5}, "bold": true}},
        "strings": [{"style": "loud", "border": {"size": 2}, "runs": [
            "a", {"text": "b"}, {"text": "c", "style": "base", "border": "none", "face": "#0000FF"}]}]})",
                                               kFrame);
    const std::vector<ScriptRun>& runs = script.strings.at(0).runs;
    ASSERT_EQ(runs.size(), 2U) << "a and b look alike";
    EXPECT_EQ(runs[0].text, u"ab");
    const TextStyle& loud = runs[0].style;
    EXPECT_EQ(loud.font.Size, 40.0F);
    EXPECT_EQ(loud.font.Bold, 1);
    EXPECT_EQ(loud.face.Color1, 0x0000FFU) << "red is in the lowest byte";
    EXPECT_EQ(loud.face.Color2, 0x00FF00U);
    EXPECT_EQ(loud.face.GradType, 1) << "downward";
    EXPECT_EQ(loud.face.Alpha, 128) << "255 / 2, rounded";
    EXPECT_EQ(loud.border.Enable, 1);
    EXPECT_EQ(loud.border.Color1, 0x302010U);
    EXPECT_EQ(loud.border.Size, 2);
    const TextStyle& quiet = runs[1].style;
    EXPECT_EQ(quiet.border.Enable, 0);
    EXPECT_EQ(quiet.font.Bold, 1) << "what a run does not say stays";
    EXPECT_EQ(quiet.face.Color2, 0xFF0000U) << "a colour alone is flat";
    EXPECT_EQ(quiet.face.Alpha, 128);
}

std::vector<std::string> KeysOf(const std::string& keys, float duration) {
    std::vector<std::string> told;
    for (const Keyframe& key : KeyframesOf(StringWith(keys).timeline, duration)) {
        // Times to the hundredth: keys that are put next to each other show the same time.
        told.push_back(std::to_string(std::lround(100.0F * key.time)) + " " + NameOfEffect(key.effect) + " " +
                       std::to_string(std::lround(key.progress)));
    }
    return told;
}

TEST(TitleScript, TimelinesBecomeKeyframes) {
    const std::string in = R"("in": {"effect": "wipe-left", "seconds": 0.5})",
                      out = R"("out": {"effect": "PATH_FADE"})";
    EXPECT_THAT(KeysOf(R"("size": 20)", 9), ElementsAre());
    EXPECT_THAT(KeysOf(in + ", \"hold\": 2, " + out, 9),
                ElementsAre("0 wipe-left 0", "50 wipe-left 1", "250 fade 1", "350 fade 0"));
    EXPECT_THAT(KeysOf("\"start\": 1, " + in, 9), ElementsAre("100 wipe-left 0", "150 wipe-left 1", "900 wipe-left 1"))
        << "without a hold the string stays to the end";
    EXPECT_THAT(KeysOf(in + ", " + out, 9), ElementsAre("0 wipe-left 0", "50 wipe-left 1", "800 fade 1", "900 fade 0"));
    EXPECT_THAT(KeysOf("\"hold\": 2", 9), ElementsAre("0 none 1", "200 none 1"));
    EXPECT_THAT(KeysOf(in + R"(, "hold": 0, "out": {"effect": "wipe-left"})", 9),
                ElementsAre("0 wipe-left 0", "50 wipe-left 1", "150 wipe-left 0"));
    EXPECT_THAT(KeysOf(in + ", \"hold\": 0, " + out, 9),
                ElementsAre("0 wipe-left 0", "50 wipe-left 1", "50 fade 1", "150 fade 0"));
    const std::vector<Keyframe> keys = KeyframesOf(StringWith(in + ", \"hold\": 0, " + out).timeline, 9);
    EXPECT_GT(keys[2].time, keys[1].time) << "of two at one time the first alone would count";
    EXPECT_LE(keys[2].time, keys[1].time + 2e-6F);
}

TEST(TitleScript, TimelinesComeBackFromKeyframes) {
    for (const char* const keys :
         {R"("in": {"effect": "fade", "seconds": 0.3}, "hold": 1.7, "out": {"effect": "wave"})",
          R"("start": 100.1, "hold": 0.2)", R"("start": 0.7, "hold": 0, "in": {"effect": "flip"})"}) {
        const std::vector<Keyframe> wanted = KeyframesOf(StringWith(keys).timeline, 0);
        const auto timeline = PassagesOf(wanted);
        ASSERT_TRUE(timeline) << keys;
        EXPECT_EQ(KeyframesOf(*timeline, 0), wanted) << keys;
    }
    EXPECT_FALSE(PassagesOf({{0, "PATH_FADE", 0}, {1, "PATH_FADE", 0.5F}})) << "half an entrance is none";
}

TEST(TitleScript, EveryEffectHasAReadableName) {
    std::set<std::string> names;
    for (const EffectInfo& effect : EffectList()) {
        const std::string name = NameOfEffect(effect.name);
        EXPECT_EQ(EffectOfName(name), effect.name);
        EXPECT_EQ(EffectOfName(effect.name), effect.name);
        names.insert(name);
    }
    EXPECT_EQ(names.size(), EffectList().size());
    for (const char* name : {"slide-left", "trance-ccw",
                             "double"
                             "vision-h",
                             "perspective-scroll", "march", "flip", "none"})
        EXPECT_TRUE(names.contains(name)) << name;
}

TEST(TitleScript, ScriptsOfTheDocumentationAreRight) {
    std::ifstream file(CAPTIONFX_SOURCE_DIR "/docs/title-scripts.md");
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    const std::string_view begin = "```json\n", end = "```\n";
    int count = 0;
    for (size_t at = 0; (at = page.find(begin, at)) != std::string::npos; ++count) {
        at += begin.size();
        EXPECT_EQ(ErrorOf(page.substr(at, page.find(end, at) - at)), "") << "script " << count;
    }
    EXPECT_GE(count, 5);
}

// The schema lists every key once more, for editors: both lists must stay one.
TEST(TitleScript, SchemaKnowsTheKeysOfTheReader) {
    std::ifstream file(CAPTIONFX_SOURCE_DIR "/docs/title-script.schema.json");
    const nlohmann::json schema = nlohmann::json::parse(file);
    const auto keysOf = [&](const char* pointer) {
        std::set<std::string> keys;
        for (const auto& [key, value] : schema.at(nlohmann::json::json_pointer(pointer)).at("properties").items())
            keys.insert(key);
        return keys;
    };
    const auto joined = [](std::initializer_list<std::span<const std::string_view>> lists) {
        std::set<std::string> keys;
        for (const auto& list : lists) keys.insert(list.begin(), list.end());
        return keys;
    };
    constexpr std::string_view kExtends[]{"extends"}, kRunKeys[]{"text", "style"};
    EXPECT_EQ(keysOf(""), joined({kScriptKeys}));
    EXPECT_EQ(keysOf("/$defs/string"), joined({kStringKeys, kStyleKeys, kTimelineKeys}));
    EXPECT_EQ(keysOf("/$defs/style"), joined({kStyleKeys, kExtends}));
    EXPECT_EQ(keysOf("/$defs/run/anyOf/1"), joined({kStyleKeys, kRunKeys}));
    EXPECT_EQ(keysOf("/$defs/face/anyOf/1"), joined({kFaceKeys}));
    EXPECT_EQ(keysOf("/$defs/border/anyOf/1"), joined({kBorderKeys}));
    EXPECT_EQ(keysOf("/$defs/shadow/anyOf/1"), joined({kShadowKeys}));
    EXPECT_EQ(keysOf("/$defs/passage"), joined({kPassageKeys}));
    EXPECT_EQ(keysOf("/$defs/keyframe"), joined({kKeyframeKeys}));
}

}  // namespace
}  // namespace captionfx
