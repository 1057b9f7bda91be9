#include "tools/effect_sheet.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/canvas.h"
#include "tools/sheet_text.h"

namespace captionfx {
namespace {

struct Moment {
    float progress;
    const char16_t* label;
};

constexpr std::array kMoments = {Moment{0.15F, u"0.15"}, Moment{0.35F, u"0.35"}, Moment{0.55F, u"0.55"},
                                 Moment{0.75F, u"0.75"}, Moment{0.95F, u"0.95"}, Moment{1.0F, u"1"}};

constexpr Rgb kPaper{30, 33, 38}, kCell{74, 80, 89};
constexpr Rgb kInk{232, 230, 225}, kFaint{150, 156, 166}, kHeading{255, 200, 97}, kAbsent{232, 132, 110};

constexpr const char16_t* kNotDrawn = u"not drawn by this library";

std::u16string Utf16FromAscii(std::string_view text) {
    return {text.begin(), text.end()};
}

/// The effects of one class.
struct Section {
    std::string_view name;
    std::vector<EffectInfo> effects;
};
using Column = std::span<const Section>;

/// In the order in which the classes first appear.
std::vector<Section> SectionsOf(std::span<const EffectInfo> effects) {
    std::vector<Section> sections;
    for (const EffectInfo& effect : effects) {
        auto section = std::ranges::find(sections, effect.effectClass, &Section::name);
        if (section == sections.end()) section = sections.insert(section, {effect.effectClass, {}});
        section->effects.push_back(effect);
    }
    return sections;
}

/// Lengths of the sheet, pixels.
struct SheetLayout {
    explicit SheetLayout(FrameSize cellSize) : cell(cellSize) {}

    [[nodiscard]] int32_t RowHeight() const { return cell.height + gap; }
    [[nodiscard]] int32_t ColumnWidth() const {
        return labelWidth + static_cast<int32_t>(kMoments.size()) * (cell.width + gap);
    }
    [[nodiscard]] int32_t HeightOf(Column column) const {
        int32_t height = 0;
        for (const Section& section : column) {
            height += headingHeight + static_cast<int32_t>(section.effects.size()) * RowHeight();
        }
        return height;
    }
    [[nodiscard]] TitleRect CellAt(int32_t left, int32_t top, size_t moment) const {
        const int32_t x = left + labelWidth + static_cast<int32_t>(moment) * (cell.width + gap);
        return {x, top, x + cell.width, top + cell.height};
    }

    FrameSize cell;
    float textSize = std::clamp(static_cast<float>(cell.height) / 7, 12.0F, 22.0F);
    int32_t line = static_cast<int32_t>(textSize * 1.5F);
    int32_t gap = std::max(4, cell.width / 40), margin = 4 * gap;
    int32_t headingHeight = 3 * line;
    int32_t labelWidth = 0;
};

/// One column of sections, or two of about one height.
std::vector<Column> ColumnsOf(Column sections, const SheetLayout& layout) {
    if (sections.size() < 2) return {sections};
    const auto heightOfSplit = [&](size_t first) {
        return std::max(layout.HeightOf(sections.first(first)), layout.HeightOf(sections.subspan(first)));
    };
    size_t best = 1;
    for (size_t first = 2; first < sections.size(); ++first) {
        if (heightOfSplit(first) < heightOfSplit(best)) best = first;
    }
    return {sections.first(best), sections.subspan(best)};
}

/// Puts sections, headings and rows where they belong.
class SheetPainter {
public:
    SheetPainter(std::span<const EffectInfo> effects, const SheetLook& look)
        : layout_(look.cell), samples_(look), sections_(SectionsOf(effects)) {
        const auto makeRoomFor = [this](const std::u16string& text, const LabelStyle& style) {
            layout_.labelWidth = std::max(layout_.labelWidth, labels_.Width(text, style) + 3 * layout_.gap);
        };
        for (const Section& section : sections_) makeRoomFor(Utf16FromAscii(section.name), HeadingStyle());
        for (const EffectInfo& effect : effects) makeRoomFor(Utf16FromAscii(effect.name), NameStyle());
        makeRoomFor(kNotDrawn, NoteStyle(kAbsent));
    }

    PngImage Paint() {
        // Without ink every effect would look like one that is not there.
        if (!samples_.HasInk()) throw std::runtime_error("the text of the sheet leaves nothing to be seen");
        const std::vector<Column> columns = ColumnsOf(sections_, layout_);
        int32_t height = 0;
        for (const Column& column : columns) height = std::max(height, layout_.HeightOf(column));
        const auto count = static_cast<int32_t>(columns.size());
        const int32_t step = layout_.ColumnWidth() + 2 * layout_.margin;
        Canvas canvas({count * step, height + 2 * layout_.margin}, kPaper);
        for (int32_t i = 0; i < count; ++i) {
            PaintColumn(canvas, columns[static_cast<size_t>(i)], i * step + layout_.margin);
        }
        return canvas.TakeImage();
    }

private:
    [[nodiscard]] LabelStyle HeadingStyle() const {
        return {.color = kHeading, .size = layout_.textSize * 1.25F, .bold = true};
    }
    [[nodiscard]] LabelStyle NameStyle() const { return {.color = kInk, .size = layout_.textSize, .bold = true}; }
    [[nodiscard]] LabelStyle NoteStyle(Rgb color) const { return {.color = color, .size = layout_.textSize}; }

    void PaintColumn(Canvas& canvas, Column column, int32_t left) {
        int32_t top = layout_.margin;
        for (const Section& section : column) {
            PaintHeading(canvas, section, left, top);
            top += layout_.headingHeight;
            for (const EffectInfo& effect : section.effects) {
                PaintRow(canvas, effect, left, top);
                top += layout_.RowHeight();
            }
        }
    }

    void PaintHeading(Canvas& canvas, const Section& section, int32_t left, int32_t top) {
        const int32_t bottom = top + layout_.headingHeight, firstLine = bottom - 2 * layout_.line;
        labels_.Write(canvas, {left, firstLine, left + layout_.labelWidth, bottom}, Utf16FromAscii(section.name),
                      HeadingStyle());
        for (size_t i = 0; i < kMoments.size(); ++i) {
            TitleRect rect = layout_.CellAt(left, top, i);
            rect.top = firstLine;
            rect.bottom = bottom;
            labels_.Write(canvas, rect, kMoments[i].label,
                          {.color = kFaint, .size = layout_.textSize, .align = LabelAlign::kMiddle});
        }
    }

    void PaintRow(Canvas& canvas, const EffectInfo& effect, int32_t left, int32_t top) {
        const TitleRect first = layout_.CellAt(left, top, 0);
        bool isMoving = false;
        for (size_t i = 0; i < kMoments.size(); ++i) {
            const TitleRect rect = layout_.CellAt(left, top, i);
            canvas.Fill(rect, kCell);
            samples_.Draw(canvas, rect, effect, kMoments[i].progress);
            isMoving |= !canvas.AreEqual(rect, first);
        }
        if (!isMoving) {
            for (size_t i = 0; i < kMoments.size(); ++i) canvas.Fill(layout_.CellAt(left, top, i), kCell);
        }
        const int32_t middle = top + layout_.cell.height / 2, right = left + layout_.labelWidth - layout_.gap;
        const std::u16string note = NoteOn(effect, isMoving);
        const int32_t nameTop = note.empty() ? middle - layout_.line / 2 : middle - layout_.line;
        labels_.Write(canvas, {left, nameTop, right, nameTop + layout_.line}, Utf16FromAscii(effect.name), NameStyle());
        labels_.Write(canvas, {left, middle, right, middle + layout_.line}, note,
                      NoteStyle(isMoving ? kFaint : kAbsent));
    }

    /// An effect that the library does not have draws the same at every progress.
    static std::u16string NoteOn(const EffectInfo& effect, bool isMoving) {
        if (!isMoving) return kNotDrawn;
        if (effect.isImageBased) return u"on the finished image";
        return effect.passes > 1 ? u"two passes" : u"";
    }

    SheetLayout layout_;
    LabelWriter labels_;
    SamplePainter samples_;
    std::vector<Section> sections_;
};

}  // namespace

PngImage DrawEffectSheet(std::span<const EffectInfo> effects, const SheetLook& look) {
    return SheetPainter(effects, look).Paint();
}

}  // namespace captionfx
