// Text on its way to Windows, whose wide characters are UTF-16 code units under another name.
#pragma once

#include <string>
#include <string_view>

namespace captionfx {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

/// Of UTF-8; what is not UTF-8 becomes U+FFFD.
[[nodiscard]] std::wstring WideOf(std::string_view text);

[[nodiscard]] inline std::wstring WideOf(std::u16string_view text) {
    return {text.begin(), text.end()};
}

[[nodiscard]] inline std::u16string Utf16Of(std::wstring_view text) {
    return {text.begin(), text.end()};
}

/// The same units, for a call that only reads them.
[[nodiscard]] inline const wchar_t* Units(std::u16string_view text) {
    return reinterpret_cast<const wchar_t*>(text.data());
}

}  // namespace captionfx
