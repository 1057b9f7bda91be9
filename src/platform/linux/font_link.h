// Font linking over the installed fonts.
#pragma once

#include <memory>

#include "platform/font_link.h"
#include "platform/linux/font_fallback.h"

namespace captionfx {

/// A session over the system's fonts. Sessions on several threads share what they find.
[[nodiscard]] std::unique_ptr<FontLink> CreateFontconfigLink();

/// A session over other fonts; `fallback` must outlive it.
[[nodiscard]] std::unique_ptr<FontLink> CreateFontconfigLink(FontFallback& fallback);

}  // namespace captionfx
