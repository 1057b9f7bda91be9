// The fonts and extents of characters, as inserting text and fitting a loaded title to this machine need them.
#pragma once

#include <string_view>
#include <vector>

#include "host/document.h"
#include "platform/services.h"

namespace captionfx {

/// The font of each unit of `text`, which is not empty, for a request. Empty when no font-link session can be had.
[[nodiscard]] std::vector<MetaFont> LinkFonts(PlatformServices& services, const FontSpec& request,
                                              std::u16string_view text);

/// Sets the extent of a character from its font, crossed where vertical text lays it on its side.
void SetExtent(FontSystem& system, const MetaFont& font, bool vertical, MetaCharacter& character);

}  // namespace captionfx
