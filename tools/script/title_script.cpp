#include "tools/script/title_script.h"

#include <algorithm>
#include <span>
#include <utility>

#include "tools/script/script_values.h"
#include "tools/text_encoding.h"

namespace captionfx {
namespace {

constexpr float kLargest = 1e9F;

FrameSize ReadFrame(const JsonValue& value) {
    constexpr std::string_view kExpected = R"(a size such as "1920x1080" or {"width": 1920, "height": 1080})";
    if (value.kind == JsonKind::kString) {
        const std::optional<FrameSize> size = ParseFrameSize(value.text);
        if (!size) FailExpected(value, kExpected);
        return *size;
    }
    if (value.kind != JsonKind::kObject) FailExpected(value, kExpected);
    CheckObject(value, kFrameKeys);
    const auto side = [&](std::string_view key) {
        constexpr int32_t kLargestSide = 16384;
        const JsonValue* const member = FindMember(value, key);
        if (member == nullptr) Fail(value, "the key '" + std::string(key) + "' is missing");
        const int32_t pixels = IntegerOf(*member, "pixels from 1 to 16384");
        if (pixels < 1 || pixels > kLargestSide) FailExpected(*member, "pixels from 1 to 16384");
        return pixels;
    };
    return {side("width"), side("height")};
}

std::u16string ReadText(const JsonValue& value) {
    if (value.kind != JsonKind::kString) FailExpected(value, "a text");
    if (value.text.find('\0') != std::string::npos) Fail(value, "a text cannot hold the character U+0000");
    return ParagraphsOf(value.text);
}

/// Reads one string after another, for a page of one size.
class StringReader {
public:
    StringReader(const StyleTable& styles, Page page) : styles_(styles), page_(page) {}

    [[nodiscard]] ScriptString Read(const JsonValue& value) const {
        CheckObject(value, Keys());
        ScriptString string = ReadSettings(value);
        TextStyle style = PlainStyle();
        styles_.Apply(value, style);
        string.runs = Merged(ReadRuns(value, style));
        if (string.runs.empty()) Fail(value, "the text is empty");
        return string;
    }

    /// A string without text.
    [[nodiscard]] ScriptString ReadCue(const JsonValue& value, TextStyle& style) const {
        std::vector<std::string_view> keys = Keys();
        constexpr std::array<std::string_view, 7> kOwnKeys{"text",   "runs",     "keys", "start",
                                                           "effect", "progress", "hold"};
        std::erase_if(keys, [&](std::string_view key) { return std::ranges::find(kOwnKeys, key) != kOwnKeys.end(); });
        CheckObject(value, keys);
        styles_.Apply(value, style);
        return ReadSettings(value);
    }

private:
    [[nodiscard]] static std::vector<std::string_view> Keys() {
        std::vector<std::string_view> keys(kStringKeys.begin(), kStringKeys.end());
        keys.insert(keys.end(), kStyleKeys.begin(), kStyleKeys.end());
        keys.insert(keys.end(), kTimelineKeys.begin(), kTimelineKeys.end());
        return keys;
    }

    [[nodiscard]] ScriptString ReadSettings(const JsonValue& value) const {
        ScriptString string;
        string.placement = ReadPlacement(value);
        string.paragraph = ReadParagraph(value, string.placement);
        string.timeline = ReadTimeline(value);
        if (const JsonValue* const effect = FindMember(value, "effect")) {
            if (string.timeline.isTimed) FailKey(*effect, "a string with a timeline has no effect besides");
            string.effect = ReadEffect(*effect);
        }
        if (const JsonValue* const progress = FindMember(value, "progress")) {
            if (FindMember(value, "effect") == nullptr) FailKey(*progress, "a progress needs an 'effect'");
            string.progress = NumberOf(*progress);
        }
        return string;
    }

    [[nodiscard]] Placement ReadPlacement(const JsonValue& value) const {
        Placement place;
        const JsonValue* const position = FindMember(value, "position");
        if (position != nullptr) {
            for (const std::string_view other : {"anchor", "margin"}) {
                if (const JsonValue* const member = FindMember(value, other))
                    FailKey(*member, "'position' says all about the place; one of the two must go");
            }
            place.corner = PairOf(*position, "a position [x, y]");
        }
        if (const JsonValue* const anchor = FindMember(value, "anchor"))
            place.anchor = WordOf(*anchor, std::span<const ScriptWord<Anchor>>(kAnchors));
        if (const JsonValue* const margin = FindMember(value, "margin")) place.margin = ReadMargin(*margin);
        if (const JsonValue* const rotate = FindMember(value, "rotate")) place.rotateDegree = NumberOf(*rotate);
        if (const JsonValue* const vertical = FindMember(value, "vertical")) place.isVertical = BooleanOf(*vertical);
        if (const JsonValue* const limit = FindMember(value, "widthLimit"))
            place.widthLimit = ReadLimit(*limit, place.isVertical ? page_.height : page_.width);
        return place;
    }

    [[nodiscard]] static Position ReadMargin(const JsonValue& value) {
        constexpr std::string_view kExpected = "percent of the frame, one number or [across, down]";
        if (value.kind == JsonKind::kArray) return PairOf(value, kExpected);
        const float margin = NumberOf(value, -kLargest, kLargest, kExpected);
        return {margin, margin};
    }

    [[nodiscard]] static float ReadLimit(const JsonValue& value, float pageLength) {
        constexpr std::string_view kExpected = "a length above 0, or percent of the frame such as \"80%\"";
        constexpr float kPercent = 100.0F, kSmallest = 1e-6F;
        if (value.kind != JsonKind::kString) return NumberOf(value, kSmallest, kLargest, kExpected);
        const std::string_view text = value.text;
        const std::optional<float> percent =
            text.ends_with('%') ? ParseNumber(text.substr(0, text.size() - 1)) : std::nullopt;
        if (!percent || *percent < kSmallest || *percent > kLargest) FailExpected(value, kExpected);
        return pageLength * *percent / kPercent;
    }

    /// Lines stand toward the edge that the string is anchored to.
    [[nodiscard]] static ParagraphSpec ReadParagraph(const JsonValue& value, const Placement& place) {
        constexpr uint32_t kAlignOf[] = {0, 6, 2};  // near, middle, far
        ParagraphSpec paragraph{};
        const int side = place.isVertical ? place.anchor.row : place.anchor.column;
        paragraph.Align = kAlignOf[place.corner ? 0 : side];
        if (const JsonValue* const align = FindMember(value, "align"))
            paragraph.Align = WordOf(*align, std::span<const ScriptWord<uint32_t>>(kAligns));
        for (const auto& [key, field] : kParagraphLengths) {
            if (const JsonValue* const length = FindMember(value, key)) paragraph.*field = NumberOf(*length);
        }
        return paragraph;
    }

    [[nodiscard]] std::vector<ScriptRun> ReadRuns(const JsonValue& value, const TextStyle& style) const {
        const JsonValue* const text = FindMember(value, "text");
        const JsonValue* const runs = FindMember(value, "runs");
        if (text != nullptr && runs != nullptr) FailKey(*runs, "'text' says the same; one of the two must go");
        if (text == nullptr && runs == nullptr) Fail(value, "the key 'text' is missing");
        if (text != nullptr) return {{ReadText(*text), style}};
        std::vector<ScriptRun> read;
        for (const JsonValue& run : ArrayOf(*runs, "an array of runs, each a text or an object with one")) {
            read.push_back(run.kind == JsonKind::kString ? ScriptRun{ReadText(run), style} : ReadRun(run, style));
        }
        return read;
    }

    [[nodiscard]] ScriptRun ReadRun(const JsonValue& value, const TextStyle& style) const {
        std::vector<std::string_view> keys(kStyleKeys.begin(), kStyleKeys.end());
        keys.insert(keys.end(), {"text", "style"});
        CheckObject(value, keys);
        const JsonValue* const text = FindMember(value, "text");
        if (text == nullptr) Fail(value, "the key 'text' is missing");
        ScriptRun run{ReadText(*text), style};
        styles_.Apply(value, run.style);
        return run;
    }

    const StyleTable& styles_;
    Page page_;
};

}  // namespace

Page PageOf(FrameSize frame, float scale) {
    return {static_cast<float>(frame.width) / scale, static_cast<float>(frame.height) / scale};
}

std::u16string ParagraphsOf(std::string_view text) {
    std::string paragraphs;
    for (const char c : text) {
        if (c == '\n' && !paragraphs.ends_with('\r')) paragraphs += '\r';
        paragraphs += c;
    }
    return Utf16FromUtf8(paragraphs).value_or(u"");  // readers of files have seen to UTF-8
}

TitleScript ReadTitleScript(std::string_view text, FrameSize usual) {
    constexpr float kSmallestScale = 0.001F, kLargestScale = 1000.0F, kLongest = 1e6F;
    const JsonValue document = ParseJson(text);
    CheckObject(document, kScriptKeys);
    TitleScript script;
    if (const JsonValue* const frame = FindMember(document, "frame")) script.frame = ReadFrame(*frame);
    if (const JsonValue* const scale = FindMember(document, "scale"))
        script.scale = NumberOf(*scale, kSmallestScale, kLargestScale, "a scale from 0.001 to 1000");
    if (const JsonValue* const duration = FindMember(document, "duration"))
        script.duration = NumberOf(*duration, 0.0F, kLongest, "seconds, 0 or more");
    const JsonValue* const styles = FindMember(document, "styles");
    const StyleTable table = styles == nullptr ? StyleTable() : StyleTable(*styles);
    const StringReader reader(table, PageOf(script.frame.value_or(usual), script.scale));

    const JsonValue* const strings = FindMember(document, "strings");
    if (const JsonValue* const cue = FindMember(document, "cue")) {
        if (strings != nullptr) FailKey(*cue, "a script has strings, a style for subtitles a cue; one must go");
        script.cueStyle = PlainStyle();
        script.cue = reader.ReadCue(*cue, script.cueStyle);
        return script;
    }
    if (strings == nullptr) Fail(document, "the key 'strings' is missing");
    for (const JsonValue& string : ArrayOf(*strings, "an array of strings")) {
        script.strings.push_back(reader.Read(string));
    }
    return script;
}

float DurationOf(const TitleScript& script) {
    if (script.duration) return *script.duration;
    float last = 0;
    for (const ScriptString& string : script.strings) last = std::max(last, string.timeline.End());
    return last;
}

std::vector<ScriptRun> Merged(std::vector<ScriptRun> runs) {
    std::vector<ScriptRun> merged;
    for (ScriptRun& run : runs) {
        if (run.text.empty()) continue;
        if (!merged.empty() && merged.back().style == run.style) {
            merged.back().text += run.text;
        } else {
            merged.push_back(std::move(run));
        }
    }
    return merged;
}

}  // namespace captionfx
