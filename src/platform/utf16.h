// Wide text on its way to systems that speak UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace captionfx {

/// UTF-8 of a UTF-16 text; a surrogate without its other half becomes U+FFFD.
[[nodiscard]] std::string Utf8Of(std::u16string_view text);

}  // namespace captionfx
