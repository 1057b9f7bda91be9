#include "layout/reflow.h"

#include "layout/line_ends.h"

namespace captionfx {
namespace {

/// The walk of one reflow. Line and paragraph records are taken over one after the other as the walk needs them: of a
/// line only the count matters, since all its fields are set again, but a paragraph carries settings, so that a record
/// goes on only to the paragraph that its LF opened before the edit.
class Reflow {
public:
    Reflow(MetaString& string, int32_t first, bool vertical)
        : string_(string),
          vertical_(vertical),
          line_(At(string.Characters, first).LineIndex),
          paragraph_(At(string.Lines, line_).ParagraphIndex) {
        for (const MetaLine& line : string.Lines) paragraphBefore_.push_back(line.ParagraphIndex);
        for (int32_t i = Line().CharStart; i < first; ++i) run_ += Advance(i);
        if (first > 0) previousParagraphBefore_ = ParagraphBefore(first - 1);
    }

    void Place(int32_t i) {
        const int32_t paragraphBefore = ParagraphBefore(i);
        const bool openedBefore = i > 0 && paragraphBefore != previousParagraphBefore_;
        previousParagraphBefore_ = paragraphBefore;
        if (IsPairedLF(string_.Characters, i)) {
            OpenParagraph(i, openedBefore);
        } else if (run_ <= 0 || run_ + Advance(i) <= LineLimit(string_, Paragraph())) {
            Stay(i);
        } else {
            Wrap(i);
        }
    }

    void Finish() {
        Paragraph().LineEnd = line_;
        string_.Lines.resize(static_cast<size_t>(line_) + 1);
        string_.Paragraphs.resize(static_cast<size_t>(paragraph_) + 1);
    }

private:
    MetaLine& Line() { return At(string_.Lines, line_); }
    MetaParagraph& Paragraph() { return At(string_.Paragraphs, paragraph_); }
    [[nodiscard]] float Advance(int32_t i) const { return AdvanceOf(string_.Characters, i, vertical_); }
    [[nodiscard]] int32_t ParagraphBefore(int32_t i) const {
        return At(paragraphBefore_, At(string_.Characters, i).LineIndex);
    }

    void OpenParagraph(int32_t i, bool openedBefore) {
        const int32_t lineOfCR = At(string_.Characters, i - 1).LineIndex;
        if (lineOfCR < line_) {
            line_ = lineOfCR;
            paragraph_ = Line().ParagraphIndex;
        }
        Line().CharEnd = i - 1;
        Paragraph().LineEnd = line_;
        if (!openedBefore || paragraph_ + 1 == CountOf(string_.Paragraphs)) {
            ParagraphSpec settings{};
            CopyParagraphSettings(settings, Paragraph());
            InsertParagraphRecord(string_, paragraph_ + 1, settings);
        }
        ++paragraph_;
        OpenLine(i);
        Paragraph().LineStart = line_;
    }

    void Stay(int32_t i) {
        run_ += Advance(i);
        Line().CharEnd = i;
        At(string_.Characters, i).LineIndex = line_;
    }

    void Wrap(int32_t i) {
        Line().CharEnd = i - 1;
        OpenLine(i);
    }

    /// Moves on to the next line, which character `i` opens.
    void OpenLine(int32_t i) {
        ++line_;
        if (line_ == CountOf(string_.Lines)) InsertLineRecord(string_, line_);
        Line().CharStart = Line().CharEnd = i;
        Line().ParagraphIndex = paragraph_;
        At(string_.Characters, i).LineIndex = line_;
        run_ = Advance(i);
    }

    MetaString& string_;
    bool vertical_;
    int32_t line_;
    int32_t paragraph_;
    float run_ = 0;                         // advance of the line so far, document units
    std::vector<int32_t> paragraphBefore_;  // of each line, before this edit
    int32_t previousParagraphBefore_ = -1;  // of the character before the one to place
};

}  // namespace

int32_t InsertLineRecord(MetaString& string, int32_t index) {
    if (index >= 0 && index <= CountOf(string.Lines)) string.Lines.insert(string.Lines.begin() + index, MetaLine{});
    return CountOf(string.Lines);
}

int32_t InsertParagraphRecord(MetaString& string, int32_t index, const ParagraphSpec& settings) {
    if (index >= 0 && index <= CountOf(string.Paragraphs)) {
        MetaParagraph paragraph{};
        CopyParagraphSettings(paragraph, settings);
        string.Paragraphs.insert(string.Paragraphs.begin() + index, paragraph);
    }
    return CountOf(string.Paragraphs);
}

int32_t ReflowLines(MetaString& string, int32_t first, int32_t count, bool vertical) {
    const int32_t length = CountOf(string.Characters);
    if (!IsIndexOf(string.Characters, first) || int64_t{first} + count > length) return 0;
    Reflow reflow(string, first, vertical);
    for (int32_t i = first; i < length; ++i) reflow.Place(i);
    reflow.Finish();
    return 1;
}

}  // namespace captionfx
