// Layout: the positions of all characters, lines and paragraphs of a string, and its extent.
#pragma once

#include "host/document.h"
#include "platform/font_system.h"

namespace captionfx {

/// Computes all positions from the assignment of characters to lines, in document units relative to the next larger
/// record, and marks the effect for binding. A string without text gets the extent of one blank of `blankFont`.
void LayoutString(FontSystem& fonts, const FontSpec& blankFont, MetaString& string);

}  // namespace captionfx
