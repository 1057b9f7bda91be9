// Deletion of text, through lines and paragraphs.
#pragma once

#include "host/document.h"
#include "platform/font_system.h"

namespace captionfx {

/// Deletes the characters [first, first + count), which lie in the text, `count` at least 1, with the styles that only
/// they use, and lays the string out again. Text that is joined by it takes the settings of the later paragraph. Where
/// memory runs out, which is thrown, the string is as it was.
void DeleteText(FontSystem& fonts, const TitleDefaults& defaults, MetaString& string, int32_t first, int32_t count);

}  // namespace captionfx
