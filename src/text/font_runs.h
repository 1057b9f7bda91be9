// Font linking: one font for each code unit of a text.
#pragma once

#include <span>
#include <string_view>

#include "host/document.h"
#include "platform/services.h"

namespace captionfx {

/// Measures the font of each code unit of `text` into `fonts`, as long as the text: the requested one, or for a
/// character that it lacks, what `link` answers. White space and controls never cause a fallback, since their advance
/// must be that of the requested face; nor do the low characters of a symbol font, whose own map is not to be trusted.
void SplitFontRuns(FontSystem& system, FontLink& link, std::u16string_view text, uint32_t em, const FontSpec& request,
                   std::span<MetaFont> fonts);

}  // namespace captionfx
