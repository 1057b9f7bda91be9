// The contact sheet: every effect at six moments of its progress.
#pragma once

#include <span>
#include <string>

#include "tools/argument_values.h"
#include "tools/effect_list.h"
#include "tools/png_file.h"

namespace captionfx {

struct SheetLook {
    std::u16string text;
    std::u16string fontName;
    FrameSize cell;  ///< One picture, which is the effect's whole frame.
};

/// Draws the effects, a row each, under the names of their classes. One that the library draws nothing of says so.
/// Notes a font that is not installed on standard error. Throws std::runtime_error for a text that leaves no ink at
/// rest, and std::bad_alloc.
[[nodiscard]] PngImage DrawEffectSheet(std::span<const EffectInfo> effects, const SheetLook& look);

}  // namespace captionfx
