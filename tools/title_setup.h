// How the commands set up a title and draw it. Lengths are document units, which are pixels in a frame of the tool.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <captionfx/caption_fx.h>

#include "tools/argument_values.h"

namespace captionfx {

// The getters of styles fill in the title's default for an index that names nothing.
inline constexpr int32_t kDefaults = -1;

enum class Ground { kTransparent, kOpaque };

/// Sets the size of the frames and the finest edges. An opaque ground has alpha 255 everywhere.
void SetFrame(IKVT_CaptionFx& title, FrameSize frame, Ground ground);

/// Sets whether Latin letters lie on their side, as they do in vertical text. The library asks the title's default for
/// it, not the string, when it loads, wraps and draws: so a title whose strings run both ways keeps them upright.
/// Returns whether that changes anything; loaded strings must then be loaded again.
bool SetDirection(IKVT_CaptionFx& title, bool isVertical);

/// Whether all strings, and at least one, are vertical.
[[nodiscard]] bool IsVertical(IKVT_CaptionFx& title);

/// Sets how many pixels a document unit has, both ways.
void SetScale(IKVT_CaptionFx& title, float scale);

/// Makes the library draw the next frame, even where it has kept the picture of a title at rest. Glyphs and planes
/// stay, which FlushRenderCaches would free too.
void DropKeptFrame(IKVT_CaptionFx& title);

/// Composites a frame onto `pixels` with all strings in it. The library keeps the picture of a title at rest, of its
/// last string alone, for later frames; of a title of several strings that picture is dropped first. Every frame of
/// this tool comes from here. Throws std::bad_alloc.
void RenderWholeFrame(IKVT_CaptionFx& title, uint32_t* pixels, float time);

struct TextFont {
    std::u16string name;
    float size;
    bool bold = false, italic = false;
};

/// Sets the font for new text.
void SetFont(IKVT_CaptionFx& title, const TextFont& font);

/// Notes on standard error where another font stands in for the one that was set, `name`.
void NoteFontSubstitute(IKVT_CaptionFx& title, const std::u16string& name);

/// Lets the lines of new strings stand in the middle.
void AlignInTheMiddle(IKVT_CaptionFx& title);

/// What a string shows; without an effect or a progress the library's own.
struct TextString {
    std::u16string text;
    std::optional<std::string> effect;
    std::optional<float> progress;
};

/// Adds a string with its upper left corner at `corner` and the defaults of the title. Returns its index. Throws
/// std::bad_alloc.
int32_t AddString(IKVT_CaptionFx& title, const TextString& string, Position corner);

/// Width and height of a text in the defaults of the title, which must hold no strings. Throws std::bad_alloc.
[[nodiscard]] TitleRectF MeasureText(IKVT_CaptionFx& title, const std::u16string& text);

/// Upper left corner that puts the text into the middle of the frame. Whole pixels, since a glyph between two pixels is
/// a little softer. As MeasureText.
[[nodiscard]] Position CentredCorner(IKVT_CaptionFx& title, const std::u16string& text, FrameSize frame);

}  // namespace captionfx
