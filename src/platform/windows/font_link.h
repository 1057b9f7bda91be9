// Font linking by MLang.
#pragma once

#include <memory>

#include "platform/font_link.h"

namespace captionfx {

/// Null where MLang cannot be had, as on a thread without COM.
[[nodiscard]] std::unique_ptr<FontLink> CreateMLangFontLink();

}  // namespace captionfx
