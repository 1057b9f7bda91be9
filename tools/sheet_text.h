// The text of a contact sheet: the words beside the pictures, and the text that the effects move.
#pragma once

#include <string>

#include <captionfx/caption_fx.h>

#include "tools/canvas.h"
#include "tools/effect_list.h"
#include "tools/effect_sheet.h"
#include "tools/title_handle.h"
#include "tools/title_setup.h"

namespace captionfx {

enum class LabelAlign { kLeft, kMiddle };

struct LabelStyle {
    Rgb color;
    float size;
    bool bold = false;
    LabelAlign align = LabelAlign::kLeft;
};

/// Writes the words beside the pictures. Operations throw std::bad_alloc.
class LabelWriter {
public:
    LabelWriter();

    /// Pixels, rounded up.
    [[nodiscard]] int32_t Width(const std::u16string& text, const LabelStyle& style);

    /// In the middle of the rectangle's height.
    void Write(Canvas& canvas, const TitleRect& rect, const std::u16string& text, const LabelStyle& style);

private:
    void Set(const LabelStyle& style);

    TitleHandle title_;
};

/// Draws the text under an effect, as large as leaves it room to move in. Operations throw std::bad_alloc.
class SamplePainter {
public:
    /// Notes a font that is not installed on standard error.
    explicit SamplePainter(SheetLook look);

    /// Whether the text is seen at rest.
    [[nodiscard]] bool HasInk();

    /// The rectangle has the size of a cell.
    void Draw(Canvas& canvas, const TitleRect& rect, const EffectInfo& effect, float progress);

private:
    /// Returns whether the text is seen.
    bool Draw(Canvas& canvas, const TitleRect& rect, const TextString& string);
    void SetFontSize(float size);
    [[nodiscard]] float FittingSize();

    SheetLook look_;
    TitleHandle title_;
    Position corner_{};
};

}  // namespace captionfx
