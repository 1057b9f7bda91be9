// Title scripts: what a person means by a title, as a JSON document, and what the library is to do for it.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/argument_values.h"
#include "tools/script/text_style.h"
#include "tools/script/timeline.h"

namespace captionfx {

struct ScriptRun {
    std::u16string text;  ///< Paragraphs begin at CR LF.
    TextStyle style;
};

/// Which point of the frame a string stands at.
struct Anchor {
    int column = 1, row = 1;  ///< 0 left or top, 1 in the middle, 2 right or bottom.

    bool operator==(const Anchor&) const = default;
};

/// Where a string stands. Lengths are document units.
struct Placement {
    std::optional<Position> corner;  ///< Upper left corner, about which the string turns; without one it is anchored.
    Anchor anchor;
    Position margin{0.0F, 0.0F};  ///< Percent of the frame's width and height.
    float widthLimit = 1e9F;
    float rotateDegree = 0.0F;
    bool isVertical = false;
};

struct ScriptString {
    std::vector<ScriptRun> runs;  ///< No two neighbours of the same style, none empty.
    Placement placement;
    ParagraphSpec paragraph{};
    std::string effect = "PATH_NOEFFECT";  ///< In force without a timeline.
    float progress = 1.0F;
    Timeline timeline;
};

struct TitleScript {
    std::optional<FrameSize> frame;
    float scale = 1.0F;
    std::optional<float> duration;
    std::vector<ScriptString> strings;
    std::optional<ScriptString> cue;  ///< Of a style for subtitles; without text and with it alone.
    TextStyle cueStyle{};
};

/// The frame in document units.
struct Page {
    float width, height;
};
[[nodiscard]] Page PageOf(FrameSize frame, float scale);

inline constexpr std::array<std::string_view, 7> kScriptKeys{"$schema", "frame",   "scale", "duration",
                                                             "styles",  "strings", "cue"};
inline constexpr std::array<std::string_view, 2> kFrameKeys{"width", "height"};
/// The keys of a string besides those of style and timeline.
inline constexpr std::array<std::string_view, 17> kStringKeys{
    "text",   "runs",     "style",    "position",  "anchor",      "margin",     "widthLimit", "align",      "rotate",
    "effect", "vertical", "progress", "lineSpace", "beforeSpace", "afterSpace", "leftIndent", "rightIndent"};

/// The nine anchors.
inline constexpr std::array<ScriptWord<Anchor>, 9> kAnchors{{{"top-left", {0, 0}},
                                                             {"top", {1, 0}},
                                                             {"top-right", {2, 0}},
                                                             {"left", {0, 1}},
                                                             {"center", {1, 1}},
                                                             {"right", {2, 1}},
                                                             {"bottom-left", {0, 2}},
                                                             {"bottom", {1, 2}},
                                                             {"bottom-right", {2, 2}}}};
/// ParagraphSpec::Align. The first words stand for horizontal text, the last for vertical.
inline constexpr std::array<ScriptWord<uint32_t>, 6> kAligns{
    {{"left", 0}, {"center", 6}, {"right", 2}, {"top", 0}, {"middle", 6}, {"bottom", 2}}};

/// The lengths of a paragraph, document units.
inline constexpr std::array<ScriptWord<float ParagraphSpec::*>, 5> kParagraphLengths{
    {{"lineSpace", &ParagraphSpec::LineSpace},
     {"beforeSpace", &ParagraphSpec::BeforeSpace},
     {"afterSpace", &ParagraphSpec::AfterSpace},
     {"leftIndent", &ParagraphSpec::LeftIndent},
     {"rightIndent", &ParagraphSpec::RightIndent}}};

/// UTF-8 as the text of a title: a line feed begins a paragraph.
[[nodiscard]] std::u16string ParagraphsOf(std::string_view text);

/// Reads a script; `usual` is the frame of one that names none. Throws PlacedError.
[[nodiscard]] TitleScript ReadTitleScript(std::string_view text, FrameSize usual);

/// The end of the title in seconds: its own duration, or the end of its last string.
[[nodiscard]] float DurationOf(const TitleScript& script);

/// Puts runs together that have the same style, and drops empty ones.
[[nodiscard]] std::vector<ScriptRun> Merged(std::vector<ScriptRun> runs);

}  // namespace captionfx
