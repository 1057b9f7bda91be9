// Fitting a loaded title to the fonts of this machine.
#pragma once

#include "host/document.h"
#include "platform/services.h"
#include "text/font_environment.h"

namespace captionfx {

/// Gives the characters [first, first + count) the fonts and extents that the default font has for them, and lays the
/// string out again. A range that does not lie in the text changes nothing, nor does one for which no font-link session
/// can be had.
void RefontCharacter(PlatformServices& services, const TitleDefaults& defaults, MetaString& string, int32_t first,
                     int32_t count);

/// The request that a font came from, with a face of this machine. Only the weight that the library itself writes is
/// bold.
[[nodiscard]] FontSpec RequestOf(FontSystem& system, const InstalledFonts& installed, const MetaFont& font);

/// Gives all characters of all strings fonts of this machine, each asked for as RequestOf has it. A string whose fonts
/// and extents are those of this machine anyway, but for the six decimals that a file keeps, stays as it is, its line
/// breaks included; any other becomes what RefontCharacter makes of it character by character, in linear time. Nothing
/// is laid out. Returns 0, or kTitleFailure when no font-link session can be had.
[[nodiscard]] int32_t RefontAllStrings(PlatformServices& services, const InstalledFonts& installed,
                                       const TitleDefaults& defaults, std::vector<MetaString>& strings);

}  // namespace captionfx
