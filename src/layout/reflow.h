// Reflow: which character belongs to which line and paragraph. Wrapping is by character; only CR LF opens a paragraph.
#pragma once

#include <span>

#include "host/document.h"

namespace captionfx {

/// Inserts an all-zero line before line `index`, 0 to the line count. Returns the line count; an index out of range
/// changes nothing.
int32_t InsertLineRecord(MetaString& string, int32_t index);

/// Inserts a paragraph with `settings` before paragraph `index`, likewise. Returns the paragraph count.
int32_t InsertParagraphRecord(MetaString& string, int32_t index, const ParagraphSpec& settings);

/// Assigns the characters from `first` to the end of the text to lines and paragraphs, after an edit of the characters
/// [first, first + count). Characters that are not new name the line they stood on before the edit; new ones name that
/// of the character before them. `vertical` is the direction of the title's default string: it may differ from that of
/// this string, which LayoutString reads. Returns 1, or 0 for a range that does not lie in the text.
int32_t ReflowLines(MetaString& string, int32_t first, int32_t count, bool vertical);

/// Reflows a string all of whose characters have got new extents, one after the other, with a reflow after each: what
/// that would give, in one walk. `formerAdvances` are those of before, one a character.
void ReflowChanged(MetaString& string, std::span<const float> formerAdvances, bool vertical);

}  // namespace captionfx
