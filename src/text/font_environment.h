// Which fonts there are, how a host's font request is vetted, and how a font becomes a MetaFont.
//
// Every font is realised at kEmSize, whatever size was asked for: layout then does not depend on the hinting of a small
// size, and one font record serves every frame scale.
#pragma once

#include <set>
#include <string>

#include "host/document.h"
#include "platform/font_system.h"

namespace captionfx {

/// Family names, compared as code units. Filled once, when the title is made.
using InstalledFonts = std::set<std::u16string, std::less<>>;

[[nodiscard]] InstalledFonts ListInstalledFonts(FontSystem& fonts);

/// The request as it can be served: unchanged where its face is installed and has outlines, else with the face and the
/// character set of the system's default font.
[[nodiscard]] FontSpec VetFont(FontSystem& fonts, const InstalledFonts& installed, const FontSpec& request);

/// The font of a request, at the height given. Underline and Strikeout are left out on purpose: text never has them.
[[nodiscard]] LogFont LogFontOf(const FontSpec& request, int32_t height);

/// A request as GetCharFont gives it back.
[[nodiscard]] FontSpec FontSpecOf(const MetaFont& font);

/// Measures `font` for text of `size` document units; a negative size means its magnitude. Returns 0, or kTitleFailure
/// for a font without outline metrics or a size beyond 1638, which then counts as 1638. `measured` is always filled.
int32_t MeasureFont(FontSystem& fonts, uint32_t em, float size, const LogFont& font, MetaFont& measured);

/// Measures the font of a request.
[[nodiscard]] MetaFont MeasureFontSpec(FontSystem& fonts, uint32_t em, const FontSpec& request);

}  // namespace captionfx
