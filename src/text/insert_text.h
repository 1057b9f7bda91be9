// Insertion of text: plain UTF-16 becomes characters with a font, styles, an extent and a place in the structure.
#pragma once

#include <string_view>

#include "host/document.h"
#include "platform/services.h"

namespace captionfx {

/// Inserts `text`, which is not empty, before character `position`, 0 to the character count, with the defaults given,
/// and lays the string out again. Returns 0, or kTitleFailure when no font-link session can be had. On failure, that of
/// memory too, which is thrown, the string is as it was.
int32_t InsertText(PlatformServices& services, const TitleDefaults& defaults, MetaString& string, int32_t position,
                   std::u16string_view text);

}  // namespace captionfx
