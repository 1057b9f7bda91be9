#include "text/delete_text.h"

#include <algorithm>

#include "host/style_tables.h"
#include "layout/line_ends.h"
#include "layout/reflow.h"
#include "layout/string_layout.h"
#include "text/text_transaction.h"

namespace captionfx {
namespace {

/// The records that a deletion joins: lines from First to Keep become Keep, paragraphs likewise.
struct Joint {
    int32_t FirstLine, KeepLine;
    int32_t FirstParagraph, KeepParagraph;
};

/// What [first, end) joins. A deletion that cuts a CR LF takes its paragraph break away too.
Joint JointOf(const MetaString& string, int32_t first, int32_t end) {
    const auto lineOf = [&](int32_t i) { return At(string.Characters, i).LineIndex; };
    const auto paragraphOf = [&](int32_t line) { return At(string.Lines, line).ParagraphIndex; };
    const int32_t before = IsPairedLF(string.Characters, first) ? 1 : 0;
    const int32_t after = IsPairedCR(string.Characters, end - 1) ? 1 : 0;
    const int32_t keepParagraph = paragraphOf(lineOf(end - 1)) + after;
    return {.FirstLine = lineOf(first) - before,
            .KeepLine = At(string.Paragraphs, keepParagraph).LineEnd,
            .FirstParagraph = paragraphOf(lineOf(first)) - before,
            .KeepParagraph = keepParagraph};
}

template <class List>
void EraseRange(List& list, int32_t first, int32_t end) {
    list.erase(list.begin() + first, list.begin() + end);
}

/// Joins the paragraph records; the last one stays.
void JoinParagraphs(MetaString& string, const Joint& joint) {
    MetaParagraph& keep = At(string.Paragraphs, joint.KeepParagraph);
    keep.LineStart = At(string.Paragraphs, joint.FirstParagraph).LineStart;
    keep.LineEnd = keep.LineStart;
    const int32_t gone = joint.KeepParagraph - joint.FirstParagraph;
    for (int32_t l = joint.KeepLine; l < CountOf(string.Lines); ++l) At(string.Lines, l).ParagraphIndex -= gone;
    EraseRange(string.Paragraphs, joint.FirstParagraph, joint.KeepParagraph);
}

/// Joins the line records and lets the characters from `end` on follow.
void JoinLines(MetaString& string, const Joint& joint, int32_t end) {
    MetaLine& keep = At(string.Lines, joint.KeepLine);
    keep.CharStart = At(string.Lines, joint.FirstLine).CharStart;
    const int32_t gone = joint.KeepLine - joint.FirstLine;
    for (int32_t i = end; i < CountOf(string.Characters); ++i) {
        int32_t& line = At(string.Characters, i).LineIndex;
        line = i <= keep.CharEnd ? joint.FirstLine : line - gone;
    }
    EraseRange(string.Lines, joint.FirstLine, joint.KeepLine);
}

/// Closes the records where the end of the text was deleted, so that no reflow follows.
void CloseText(MetaString& string) {
    const bool isLastLineEmpty = string.Lines.back().CharStart >= CountOf(string.Characters);
    if (isLastLineEmpty) string.Lines.pop_back();
    string.Paragraphs.back().LineEnd = CountOf(string.Lines) - 1;
}

}  // namespace

void DeleteText(FontSystem& fonts, const TitleDefaults& defaults, MetaString& string, int32_t first, int32_t count) {
    const int32_t end = first + count;
    TextTransaction edit(string);
    ReleaseFontRange(string, first, count);
    ReleaseFaceRange(string, first, count);
    ReleaseBorderRange(string, first, count);
    ReleaseShadowRange(string, first, count);

    const Joint joint = JointOf(string, first, end);
    const int32_t tail = At(string.Lines, joint.KeepLine).CharEnd;
    JoinParagraphs(string, joint);
    JoinLines(string, joint, end);
    EraseRange(string.Characters, first, end);

    if (string.Characters.empty()) {
        string.Lines.clear();
        string.Paragraphs.clear();
    } else {
        MetaLine& joined = At(string.Lines, joint.FirstLine);
        joined.CharEnd = std::max(first - 1, joined.CharStart);
        if (first == CountOf(string.Characters)) CloseText(string);
        ReflowLines(string, first, tail - end + 1, defaults.DefaultString.Vertical != 0);
    }
    LayoutString(fonts, defaults.DefaultFont, string);
    EraseRange(string.GlyphLayersList, first, end);
    edit.Commit();
}

}  // namespace captionfx
