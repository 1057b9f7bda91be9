#include "tools/script/word_wrap.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace captionfx {
namespace {

/// A line that is full in the middle of a paragraph.
struct FullLine {
    size_t begin;  // of the full one
    size_t next;   // the character that had no room
};

std::vector<std::u16string*> TextsOf(ScriptString& string) {
    std::vector<std::u16string*> texts;
    for (ScriptRun& run : string.runs) texts.push_back(&run.text);
    return texts;
}

std::u16string TextOf(const ScriptString& string) {
    std::u16string text;
    for (const ScriptRun& run : string.runs) text += run.text;
    return text;
}

/// The first such line behind `from`, where a line begins. Where each line begins at one place, a character that is
/// back at this place begins one. Upright letters under each other may also run on beyond the limit: in a title that
/// runs both ways the library measures them across.
std::optional<FullLine> FindFullLine(const std::u16string& text, const std::vector<TitleRectF>& characters,
                                     const Placement& place, size_t from) {
    constexpr float kRounding = 0.01F;  // of sums of advances, document units
    const auto along = [&](size_t i) { return place.isVertical ? characters[i].y : characters[i].x; };
    const auto end = [&](size_t i) {
        return along(i) + (place.isVertical ? characters[i].height : characters[i].width);
    };
    size_t begin = from;
    bool hasMoved = false;  // characters without an advance stay at the beginning
    for (size_t i = from + 1; i < std::min(text.size(), characters.size()); ++i) {
        if (text[i - 1] == u'\n') {
            begin = i;
            hasMoved = false;
        } else if (text[i] != u'\r' && text[i] != u'\n') {
            const bool isBack = hasMoved && along(i) <= along(begin);
            const bool isBeyond = text[i] != u' ' && end(i) - along(begin) > place.widthLimit + kRounding;
            if (isBack || isBeyond) return FullLine{.begin = begin, .next = i};
            hasMoved = hasMoved || along(i) > along(begin);
        }
    }
    return std::nullopt;
}

bool IsIdeograph(char16_t unit) {
    constexpr char16_t kFirst = 0x2E80, kLast = 0xFAFF;  // radicals, kana, ideographs, syllables, surrogates
    return unit >= kFirst && unit <= kLast;
}

std::optional<size_t> BlankBefore(const std::u16string& text, const FullLine& line) {
    for (size_t i = line.next; i > line.begin; --i) {
        if (text[i] == u' ') return i;
        if (IsIdeograph(text[i])) return std::nullopt;
    }
    return std::nullopt;
}

}  // namespace

std::vector<size_t> BlanksToBreakAt(StringRuler& ruler, ScriptString string) {
    std::vector<size_t> blanks;
    std::u16string text = TextOf(string);
    if (string.placement.widthLimit >= Placement{}.widthLimit || text.find(u' ') == std::u16string::npos) return blanks;
    string.paragraph.Align = 0;
    std::vector<TitleRectF> characters = ruler.LayoutOf(string).characters;
    size_t from = 0;
    while (const auto line = FindFullLine(text, characters, string.placement, from)) {
        const std::optional<size_t> blank = BlankBefore(text, *line);
        from = line->next;
        if (!blank) continue;
        blanks.push_back(*blank - blanks.size());  // each one before made one character two
        BreakLines(TextsOf(string), {&*blank, 1});
        text.replace(*blank, 1, u"\r\n");
        from = *blank + 2;
        characters = ruler.LayoutOf(string).characters;
    }
    return blanks;
}

void BreakLines(std::span<std::u16string* const> texts, std::span<const size_t> blanks) {
    size_t begin = 0, next = 0;
    for (std::u16string* const text : texts) {
        const size_t end = begin + text->size();
        for (size_t made = 0; next < blanks.size() && blanks[next] < end; ++next, ++made)
            text->replace(blanks[next] - begin + made, 1, u"\r\n");
        begin = end;
    }
}

ScriptString WrappedAtWords(StringRuler& ruler, ScriptString string) {
    BreakLines(TextsOf(string), BlanksToBreakAt(ruler, string));
    return string;
}

}  // namespace captionfx
