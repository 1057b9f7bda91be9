#include "layout/string_layout.h"

#include <algorithm>
#include <span>

#include "layout/line_ends.h"
#include "text/font_environment.h"

namespace captionfx {
namespace {

// Text runs along one axis and lines stack along the other. `Along` and `Across` name the fields by that, so that the
// steps which are the same for both directions are written once.
struct Axes {
    bool Vertical;

    [[nodiscard]] float& AlongPosition(auto& record) const { return Vertical ? record.Top : record.Left; }
    [[nodiscard]] float& AlongExtent(auto& record) const { return Vertical ? record.Height : record.Width; }
    [[nodiscard]] float& AcrossPosition(auto& record) const { return Vertical ? record.Left : record.Top; }
    [[nodiscard]] float& AcrossExtent(auto& record) const { return Vertical ? record.Width : record.Height; }

    /// Lines stack downward; columns stack leftward.
    [[nodiscard]] float Stacked(float run) const { return Vertical ? -run : run; }
};

std::span<MetaLine> LinesOf(MetaString& string, const MetaParagraph& paragraph) {
    const auto first = static_cast<size_t>(paragraph.LineStart), last = static_cast<size_t>(paragraph.LineEnd);
    return std::span(string.Lines).subspan(first, last - first + 1);
}

const MetaFont& FontOf(const MetaString& string, int32_t i) {
    return At(string.Fonts, At(string.Characters, i).FontIndex);
}

/// Whether a character has no say in the height of its line: a line end, unless nothing else gives an empty paragraph
/// its height.
bool IsLeftOut(const std::vector<MetaCharacter>& text, const MetaLine& line, int32_t i) {
    if (line.CharStart == line.CharEnd) return false;
    if (IsPairedCR(text, i)) return UnitAt(text, i - 1) != u'\n';
    if (IsPairedLF(text, i)) return UnitAt(text, i + 1) != u'\r';
    return false;
}

/// The rule for the width of a column differs: a column of one character is no exception, the string's last is.
bool IsLeftOutOfColumn(const std::vector<MetaCharacter>& text, int32_t i) {
    if (i == 0) return false;
    if (IsPairedLF(text, i)) return i != CountOf(text) - 1 && UnitAt(text, i + 1) != u'\r';
    if (IsPairedCR(text, i)) return UnitAt(text, i - 1) != u'\n';
    return false;
}

void AdvanceCharacters(MetaString& string, const Axes& axes) {
    for (const MetaParagraph& paragraph : string.Paragraphs) {
        const float limit = LineLimit(string, paragraph);
        for (MetaLine& line : LinesOf(string, paragraph)) {
            float run = 0;
            for (int32_t i = line.CharStart; i <= line.CharEnd; ++i) {
                axes.AlongPosition(At(string.Characters, i)) = run;
                run += AdvanceOf(string.Characters, i, axes.Vertical);
            }
            axes.AlongExtent(line) = std::min(run, limit);  // text over the limit keeps its positions
        }
    }
}

/// Sets a line's cross extent and puts all its characters on one baseline.
void AlignBaselines(MetaString& string, const Axes& axes, MetaLine& line) {
    float maxAscent = 0, maxInternal = 0, maxExternal = 0;
    for (int32_t i = line.CharStart; i <= line.CharEnd; ++i) {
        if (IsLeftOut(string.Characters, line, i)) continue;
        const MetaFont& font = FontOf(string, i);
        maxAscent = std::max(maxAscent, font.Ascent);
        maxInternal = std::max(maxInternal, font.IntLead);
        maxExternal = std::max(maxExternal, font.ExtLead);
    }
    float extent = 0;
    for (int32_t i = line.CharStart; i <= line.CharEnd; ++i) {
        MetaCharacter& character = At(string.Characters, i);
        const float ascent = FontOf(string, i).Ascent;
        axes.AcrossPosition(character) =
            axes.Vertical ? (ascent - maxInternal) - maxAscent : (maxAscent + maxInternal) - ascent;
        const bool leftOut =
            axes.Vertical ? IsLeftOutOfColumn(string.Characters, i) : IsLeftOut(string.Characters, line, i);
        if (!leftOut) extent = std::max(extent, maxInternal + axes.AcrossExtent(character) + maxExternal);
    }
    axes.AcrossExtent(line) = extent;
}

void StackLines(MetaString& string, const Axes& axes) {
    for (MetaParagraph& paragraph : string.Paragraphs) {
        const std::span<MetaLine> lines = LinesOf(string, paragraph);
        float longest = axes.AlongExtent(lines.front());
        float run = 0;
        for (MetaLine& line : lines) {
            longest = std::max(longest, axes.AlongExtent(line));
            axes.AcrossPosition(line) = axes.Stacked(run);
            run += paragraph.LineSpace + axes.AcrossExtent(line);
        }
        axes.AlongExtent(paragraph) = longest;
        axes.AcrossExtent(paragraph) = run;
    }
}

void StackParagraphs(MetaString& string, const Axes& axes) {
    float longest = 0, run = 0;
    for (MetaParagraph& paragraph : string.Paragraphs) {
        longest = std::max(longest, paragraph.LeftIndent + axes.AlongExtent(paragraph) + paragraph.RightIndent);
        run += paragraph.BeforeSpace;
        axes.AcrossPosition(paragraph) = axes.Stacked(run);
        run += paragraph.AfterSpace + axes.AcrossExtent(paragraph);
    }
    axes.AlongExtent(string) = longest;
    axes.AcrossExtent(string) = run;
}

void AlignLines(MetaString& string, const Axes& axes) {
    constexpr uint32_t kAlignMask = 6, kRight = 2, kCentre = 6;
    for (const MetaParagraph& paragraph : string.Paragraphs) {
        const float available = axes.AlongExtent(string) - paragraph.LeftIndent - paragraph.RightIndent;
        for (MetaLine& line : LinesOf(string, paragraph)) {
            const float slack = available - axes.AlongExtent(line);
            const uint32_t align = paragraph.Align & kAlignMask;
            axes.AlongPosition(line) = align == kRight ? slack : align == kCentre ? slack / 2 : 0;
        }
    }
}

/// The extent of a string without text: one blank, so that a host can show a caret.
void MeasureBlank(FontSystem& fonts, const FontSpec& blankFont, MetaString& string) {
    const MetaFont font = MeasureFontSpec(fonts, kEmSize, blankFont);
    const TextExtent blank = fonts.Realise(font.LogFont)->Extent(u' ');
    const Axes axes{string.Vertical != 0};
    axes.AlongExtent(string) = static_cast<float>(blank.cx) * font.SizeRatio;
    axes.AcrossExtent(string) = static_cast<float>(blank.cy) * font.SizeRatio + font.IntLead + font.ExtLead;
}

}  // namespace

void LayoutString(FontSystem& fonts, const FontSpec& blankFont, MetaString& string) {
    if (string.Characters.empty()) return MeasureBlank(fonts, blankFont, string);
    const Axes axes{string.Vertical != 0};
    AdvanceCharacters(string, axes);
    for (MetaLine& line : string.Lines) AlignBaselines(string, axes, line);
    StackLines(string, axes);
    StackParagraphs(string, axes);
    AlignLines(string, axes);
    string.PathChanged = 1;
}

}  // namespace captionfx
