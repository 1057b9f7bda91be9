// Line-end characters: an LF right after a CR, and a CR right before an LF. They advance nothing and have no pixels; a
// CR or LF alone is an ordinary character.
#pragma once

#include "host/document.h"

namespace captionfx {

/// The code unit at `index`, or 0 outside the text.
[[nodiscard]] inline uint32_t UnitAt(const std::vector<MetaCharacter>& text, int32_t index) {
    return IsIndexOf(text, index) ? At(text, index).Value : 0;
}

/// Whether the character is the LF of a CR LF, which opens a paragraph.
[[nodiscard]] inline bool IsPairedLF(const std::vector<MetaCharacter>& text, int32_t index) {
    return UnitAt(text, index) == u'\n' && UnitAt(text, index - 1) == u'\r';
}

/// Whether the character is the CR of a CR LF, which ends a paragraph.
[[nodiscard]] inline bool IsPairedCR(const std::vector<MetaCharacter>& text, int32_t index) {
    return UnitAt(text, index) == u'\r' && UnitAt(text, index + 1) == u'\n';
}

[[nodiscard]] inline bool IsLineEnd(const std::vector<MetaCharacter>& text, int32_t index) {
    return IsPairedLF(text, index) || IsPairedCR(text, index);
}

/// How far a character moves the pen, document units.
[[nodiscard]] inline float AdvanceOf(const std::vector<MetaCharacter>& text, int32_t index, bool vertical) {
    if (IsLineEnd(text, index)) return 0;
    const MetaCharacter& character = At(text, index);
    return vertical ? character.Height + character.Spacing
                    : (character.Width + character.Spacing) * character.WidthScale;
}

/// The length at which lines of a paragraph wrap, document units.
[[nodiscard]] inline float LineLimit(const MetaString& string, const MetaParagraph& paragraph) {
    return string.WidthLimit - paragraph.LeftIndent - paragraph.RightIndent;
}

}  // namespace captionfx
