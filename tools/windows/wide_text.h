// Text between Windows, whose wide characters are UTF-16 units under another name, and the tool, which has UTF-8.
#pragma once

#include <string>
#include <string_view>

#include "tools/text_encoding.h"

namespace captionfx {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

[[nodiscard]] inline std::string Utf8FromWide(std::wstring_view text) {
    return Utf8FromUtf16(std::u16string(text.begin(), text.end()));
}

/// Empty for what is not UTF-8.
[[nodiscard]] inline std::wstring WideFromUtf8(std::string_view text) {
    const std::u16string units = Utf16FromUtf8(text).value_or(std::u16string());
    return {units.begin(), units.end()};
}

}  // namespace captionfx
