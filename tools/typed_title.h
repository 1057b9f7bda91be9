// A title of one string, as options of the command line describe it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/argument_values.h"

namespace captionfx {

/// Lengths are document units, which are pixels here.
struct TypedTitle {
    std::u16string text;
    std::u16string fontName = u"DejaVu Sans";
    float fontSize = 96.0F;
    bool bold = false, italic = false;
    std::optional<Rgb> faceColor;      ///< Without one the library's own.
    std::optional<Position> position;  ///< Upper left corner; without one the text stands in the middle of the frame.
    std::optional<std::string> effect;
    std::optional<float> progress;
    std::vector<Keyframe> keys;
};

/// Adds the string to a title whose frame has this size.
void AddTypedTitle(IKVT_CaptionFx& title, const TypedTitle& typed, FrameSize frame);

}  // namespace captionfx
