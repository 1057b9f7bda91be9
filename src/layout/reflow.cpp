#include "layout/reflow.h"

#include <utility>

#include "layout/line_ends.h"

namespace captionfx {
namespace {

/// The walk of one reflow. Line records are taken over one after the other as the walk needs them, since all their
/// fields are set again. A paragraph record carries settings: one whose LF opened a paragraph before the edit takes
/// over the next record that is left, others get a copy of the settings of the paragraph before. So a pair that an
/// insertion cuts leaves its record to the next pair.
class Reflow {
public:
    Reflow(MetaString& string, int32_t first, bool vertical, std::span<const float> formerAdvances = {})
        : string_(string),
          vertical_(vertical),
          formerAdvances_(formerAdvances),
          line_(At(string.Characters, first).LineIndex) {
        for (const MetaLine& line : string.Lines) paragraphBefore_.push_back(line.ParagraphIndex);
        if (first > 0) previousParagraphBefore_ = ParagraphBefore(first - 1);
        // An LF that opens a paragraph is placed from the line of its CR.
        if (IsPairedLF(string.Characters, first)) line_ = At(string.Characters, first - 1).LineIndex;
        nextRecord_ = static_cast<size_t>(Line().ParagraphIndex) + 1;
        paragraphs_.assign(string.Paragraphs.begin(), string.Paragraphs.begin() + Line().ParagraphIndex + 1);
        for (int32_t i = Line().CharStart; i < first; ++i) run_ += Advance(i);
    }

    void Place(int32_t i) {
        const int32_t paragraphBefore = ParagraphBefore(i);
        const bool openedBefore = i > 0 && paragraphBefore != previousParagraphBefore_;
        previousParagraphBefore_ = paragraphBefore;
        if (IsPairedLF(string_.Characters, i)) {
            OpenParagraph(i, openedBefore);
        } else if (run_ <= 0 || Fits(i)) {
            Stay(i);
        } else {
            Wrap(i);
        }
    }

    void Finish() {
        paragraphs_.back().LineEnd = line_;
        string_.Lines.resize(static_cast<size_t>(line_) + 1);
        string_.Paragraphs = std::move(paragraphs_);
    }

private:
    MetaLine& Line() { return At(string_.Lines, line_); }
    [[nodiscard]] float Advance(int32_t i) const { return AdvanceOf(string_.Characters, i, vertical_); }
    [[nodiscard]] int32_t ParagraphBefore(int32_t i) const {
        return At(paragraphBefore_, At(string_.Characters, i).LineIndex);
    }

    /// Whether a character still fits on the line. One that changed last stood behind a line of changed characters with
    /// its former extent first; where it had to wrap then, it stayed.
    [[nodiscard]] bool Fits(int32_t i) const {
        const float limit = LineLimit(string_, paragraphs_.back());
        return run_ + Advance(i) <= limit && (formerAdvances_.empty() || run_ + At(formerAdvances_, i) <= limit);
    }

    void OpenParagraph(int32_t i, bool openedBefore) {
        Line().CharEnd = i - 1;
        paragraphs_.back().LineEnd = line_;
        MetaParagraph paragraph{};
        if (openedBefore && nextRecord_ < string_.Paragraphs.size()) {
            paragraph = string_.Paragraphs[nextRecord_++];
        } else {
            CopyParagraphSettings(paragraph, paragraphs_.back());
        }
        paragraphs_.push_back(paragraph);
        OpenLine(i);
        paragraphs_.back().LineStart = line_;
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
        Line().ParagraphIndex = CountOf(paragraphs_) - 1;
        At(string_.Characters, i).LineIndex = line_;
        run_ = Advance(i);
    }

    MetaString& string_;
    bool vertical_;
    std::span<const float> formerAdvances_;
    int32_t line_;
    float run_ = 0;                          // advance of the line so far, document units
    std::vector<MetaParagraph> paragraphs_;  // as they will be, up to the one that is open
    size_t nextRecord_ = 0;                  // the next paragraph record of before the edit
    std::vector<int32_t> paragraphBefore_;   // of each line, before the edit
    int32_t previousParagraphBefore_ = -1;   // of the character before the one to place
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

void ReflowChanged(MetaString& string, std::span<const float> formerAdvances, bool vertical) {
    Reflow reflow(string, 0, vertical, formerAdvances);
    for (int32_t i = 0; i < CountOf(string.Characters); ++i) reflow.Place(i);
    reflow.Finish();
}

}  // namespace captionfx
