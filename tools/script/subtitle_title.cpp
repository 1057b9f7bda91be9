#include "tools/script/subtitle_title.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "tools/colors.h"
#include "tools/script/script_title.h"
#include "tools/script/word_wrap.h"

namespace captionfx {
namespace {

/// A run of a cue, and when it appears.
struct TimedRun {
    ScriptRun run;
    float time;
};

std::vector<TimedRun> RunsOf(const SubtitleCue& cue, const TextStyle& style) {
    std::vector<TimedRun> runs;
    for (const CuePiece& piece : cue.pieces) {
        TimedRun timed{{ParagraphsOf(piece.text), style}, piece.time};
        if (piece.bold) timed.run.style.font.Bold = 1;
        if (piece.italic) timed.run.style.font.Italic = 1;
        if (piece.color) {
            timed.run.style.face.Color1 = timed.run.style.face.Color2 = StyleColor(*piece.color);
            timed.run.style.face.GradType = 0;
        }
        runs.push_back(std::move(timed));
    }
    return runs;
}

std::vector<ScriptRun> WholeOf(const std::vector<TimedRun>& timed) {
    std::vector<ScriptRun> runs;
    for (const TimedRun& run : timed) runs.push_back(run.run);
    return Merged(std::move(runs));
}

/// From `start` to `end`; an entrance and an exit that do not fit are shortened alike.
Timeline TimelineOf(const Timeline& style, float start, float end) {
    Timeline timeline = style;
    const float in = style.in ? style.in->seconds : 0.0F, out = style.out ? style.out->seconds : 0.0F;
    const float length = end - start, moving = in + out;
    const float part = moving > length ? length / moving : 1.0F;
    if (timeline.in) timeline.in->seconds *= part;
    if (timeline.out) timeline.out->seconds *= part;
    timeline.start = start;
    constexpr double kMicrosecond = 1e-6;  // what a file keeps
    const double rest = static_cast<double>(length) - static_cast<double>(moving * part);
    timeline.hold = static_cast<float>(std::max(0.0, std::round(rest / kMicrosecond) * kMicrosecond));
    timeline.isTimed = true;
    return timeline;
}

/// Gives each cue a place that no cue shown at the same time covers. Cues come by rising start.
class CueStack {
public:
    explicit CueStack(bool growsDown) : growsDown_(growsDown) {}

    /// How far a cue that would stand from `top` to `bottom` must move down, in whole units, negative for up.
    float Place(const SubtitleCue& cue, float top, float bottom) {
        std::erase_if(shown_, [&](const Shown& other) { return other.end <= cue.start; });
        float move = 0;
        const auto covers = [&](const Shown& other) { return top + move < other.bottom && other.top < bottom + move; };
        for (auto other = shown_.begin(); (other = std::ranges::find_if(shown_, covers)) != shown_.end();)
            move = growsDown_ ? std::ceil(other->bottom - top) : std::floor(other->top - bottom);
        shown_.push_back({cue.end, top + move, bottom + move});
        return move;
    }

private:
    struct Shown {
        float end, top, bottom;
    };
    bool growsDown_;
    std::vector<Shown> shown_;
};

/// Characters of one line that appear together.
struct WordPiece {
    size_t begin, end;
    float time;
};

/// Splits a laid-out cue where the time or the line changes; line ends belong to none.
std::vector<WordPiece> WordsOf(const std::vector<TimedRun>& runs, const StringRuler::Layout& layout) {
    const auto lineOf = [&](size_t character) {
        const TitleRectF& rect = layout.characters[character];
        const auto isAbove = [&](const TitleRectF& line) { return line.y <= rect.y + rect.height / 2.0F; };
        return std::ranges::count_if(layout.lines, isAbove);
    };
    std::vector<WordPiece> words;
    std::ptrdiff_t line = 0;
    size_t at = 0;
    for (const TimedRun& timed : runs) {
        for (const char16_t unit : timed.run.text) {
            const size_t character = at++;
            if (unit == u'\r' || unit == u'\n') continue;
            const bool goesOn = !words.empty() && words.back().end == character && words.back().time == timed.time &&
                                line == lineOf(character);
            if (goesOn) {
                words.back().end = at;
            } else {
                words.push_back({character, at, timed.time});
                line = lineOf(character);
            }
        }
    }
    return words;
}

std::vector<ScriptRun> RunsBetween(const std::vector<TimedRun>& runs, size_t begin, size_t end) {
    std::vector<ScriptRun> between;
    size_t start = 0;
    for (const TimedRun& timed : runs) {
        const size_t stop = start + timed.run.text.size();
        const size_t from = std::max(begin, start), to = std::min(end, stop);
        if (from < to) between.push_back({timed.run.text.substr(from - start, to - from), timed.run.style});
        start = stop;
    }
    return Merged(between);
}

/// Makes strings of cues, one after another.
class SubtitleWriter {
public:
    SubtitleWriter(const TitleScript& style, Page page)
        : cue_(*style.cue),
          style_(style.cueStyle),
          page_(page),
          ruler_(style.cue->placement.isVertical),
          stack_(!style.cue->placement.corner && style.cue->placement.anchor.row == 0) {}

    void Add(const SubtitleCue& cue, std::vector<ScriptString>& strings) {
        std::vector<TimedRun> runs = RunsOf(cue, style_);
        ScriptString whole = cue_;
        whole.runs = WholeOf(runs);
        std::vector<std::u16string*> texts;
        for (TimedRun& timed : runs) texts.push_back(&timed.run.text);
        BreakLines(texts, BlanksToBreakAt(ruler_, whole));
        whole.runs = WholeOf(runs);
        whole.timeline = TimelineOf(cue_.timeline, cue.start, cue.end);

        Position corner = CornerOf(ruler_, whole, page_);
        const TitleRectF box = ruler_.BoxOf(whole);
        corner.y += stack_.Place(cue, corner.y + box.y, corner.y + box.y + box.height);
        whole.placement.corner = corner;

        const bool isTimed = std::ranges::any_of(runs, [&](const TimedRun& timed) { return timed.time > cue.start; });
        if (isTimed && !whole.placement.isVertical && whole.placement.rotateDegree == 0.0F) {
            AddWords(cue, runs, whole, corner, strings);
        } else {
            strings.push_back(std::move(whole));
        }
    }

private:
    void AddWords(const SubtitleCue& cue, const std::vector<TimedRun>& runs, const ScriptString& whole, Position corner,
                  std::vector<ScriptString>& strings) {
        const StringRuler::Layout layout = ruler_.LayoutOf(whole);
        for (const WordPiece& word : WordsOf(runs, layout)) {
            if (word.time >= cue.end) continue;
            ScriptString string;
            string.runs = RunsBetween(runs, word.begin, word.end);
            string.timeline = TimelineOf(cue_.timeline, word.time, cue.end);
            const TitleRectF& there = layout.characters[word.begin];
            const TitleRectF here = ruler_.LayoutOf(string).characters.front();
            string.placement.corner = Position{corner.x + there.x - here.x, corner.y + there.y - here.y};
            strings.push_back(std::move(string));
        }
    }

    const ScriptString& cue_;
    const TextStyle& style_;
    Page page_;
    StringRuler ruler_;
    CueStack stack_;
};

}  // namespace

std::string_view UsualSubtitleStyle() {
    return R"({
  "frame": "1920x1080",
  "cue": {
    "size": 56,
    "border": {"color": "#000000", "size": 2},
    "shadow": {"offset": [2, 3], "blur": 3},
    "anchor": "bottom",
    "margin": [5, 6],
    "widthLimit": "90%",
    "in": {"effect": "fade", "seconds": 0.2},
    "out": {"effect": "fade", "seconds": 0.2}
  }
})";
}

TitleScript ScriptOfSubtitles(std::vector<SubtitleCue> cues, const TitleScript& style, FrameSize usual) {
    TitleScript script;
    script.frame = style.frame;
    script.scale = style.scale;
    std::ranges::stable_sort(cues, {}, &SubtitleCue::start);
    SubtitleWriter writer(style, PageOf(style.frame.value_or(usual), style.scale));
    for (const SubtitleCue& cue : cues) writer.Add(cue, script.strings);
    return script;
}

}  // namespace captionfx
