#include "layout/mend_structure.h"

#include <algorithm>
#include <utility>

#include "layout/line_ends.h"
#include "layout/reflow.h"

namespace captionfx {
namespace {

/// Whether the ranges [start, end] of the records follow each other from 0 to `count` - 1, none of them empty.
template <class Record>
bool Partition(const std::vector<Record>& records, int32_t Record::*start, int32_t Record::*end, int32_t count) {
    int32_t next = 0;
    for (const Record& record : records) {
        if (record.*start != next || record.*end < next || record.*end >= count) return false;
        next = record.*end + 1;
    }
    return next == count;
}

bool CharactersNameTheirLines(const MetaString& string) {
    for (int32_t l = 0; l < CountOf(string.Lines); ++l) {
        const MetaLine& line = At(string.Lines, l);
        for (int32_t i = line.CharStart; i <= line.CharEnd; ++i) {
            if (At(string.Characters, i).LineIndex != l) return false;
        }
    }
    return true;
}

bool LinesNameTheirParagraphs(const MetaString& string) {
    for (int32_t p = 0; p < CountOf(string.Paragraphs); ++p) {
        const MetaParagraph& paragraph = At(string.Paragraphs, p);
        for (int32_t l = paragraph.LineStart; l <= paragraph.LineEnd; ++l) {
            if (At(string.Lines, l).ParagraphIndex != p) return false;
        }
    }
    return true;
}

/// Whether each paragraph but the first begins at the LF of a pair, and each such LF begins one.
bool ParagraphsAreThoseOfThePairs(const MetaString& string) {
    int32_t pairs = 0;
    for (int32_t i = 0; i < CountOf(string.Characters); ++i) pairs += IsPairedLF(string.Characters, i) ? 1 : 0;
    return pairs + 1 == CountOf(string.Paragraphs) &&
           std::all_of(string.Paragraphs.begin() + 1, string.Paragraphs.end(), [&](const MetaParagraph& paragraph) {
               return IsPairedLF(string.Characters, At(string.Lines, paragraph.LineStart).CharStart);
           });
}

bool IsSound(const MetaString& string) {
    if (string.Characters.empty()) return string.Lines.empty() && string.Paragraphs.empty();
    return Partition(string.Lines, &MetaLine::CharStart, &MetaLine::CharEnd, CountOf(string.Characters)) &&
           Partition(string.Paragraphs, &MetaParagraph::LineStart, &MetaParagraph::LineEnd, CountOf(string.Lines)) &&
           CharactersNameTheirLines(string) && LinesNameTheirParagraphs(string) && ParagraphsAreThoseOfThePairs(string);
}

/// A paragraph with the settings of the record that a character names.
MetaParagraph ParagraphOf(const MetaString& string, int32_t character, const ParagraphSpec& settings) {
    MetaParagraph paragraph{};
    CopyParagraphSettings(paragraph, settings);
    const int32_t line = At(string.Characters, character).LineIndex;
    if (!IsIndexOf(string.Lines, line)) return paragraph;
    const int32_t named = At(string.Lines, line).ParagraphIndex;
    if (IsIndexOf(string.Paragraphs, named)) CopyParagraphSettings(paragraph, At(string.Paragraphs, named));
    return paragraph;
}

}  // namespace

void MendStructure(MetaString& string, const ParagraphSpec& settings, bool vertical) {
    if (IsSound(string)) return;
    std::vector<MetaLine> lines;
    std::vector<MetaParagraph> paragraphs;
    for (int32_t i = 0; i < CountOf(string.Characters); ++i) {
        if (i == 0 || IsPairedLF(string.Characters, i)) {
            MetaParagraph paragraph = ParagraphOf(string, i, settings);
            paragraph.LineStart = paragraph.LineEnd = CountOf(lines);
            MetaLine line{};
            line.CharStart = i;
            line.ParagraphIndex = CountOf(paragraphs);
            paragraphs.push_back(paragraph);
            lines.push_back(line);
        }
        lines.back().CharEnd = i;
    }
    string.Lines = std::move(lines);
    string.Paragraphs = std::move(paragraphs);
    for (int32_t l = 0; l < CountOf(string.Lines); ++l) {
        const MetaLine& line = At(string.Lines, l);
        for (int32_t i = line.CharStart; i <= line.CharEnd; ++i) At(string.Characters, i).LineIndex = l;
    }
    ReflowLines(string, 0, CountOf(string.Characters), vertical);
}

}  // namespace captionfx
