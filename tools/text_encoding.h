// Text between the command line, which is UTF-8, and titles, which are UTF-16.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace captionfx {

/// Nothing for what is not UTF-8.
[[nodiscard]] std::optional<std::u16string> Utf16FromUtf8(std::string_view text);

/// A surrogate without its other half becomes U+FFFD.
[[nodiscard]] std::string Utf8FromUtf16(std::u16string_view text);

/// Text between quotes on one line, as UTF-8: controls are escaped as C does.
[[nodiscard]] std::string QuotedLine(std::u16string_view text);

/// Of a name in UTF-8, on every system; some take characters for others where a path is made of them directly.
[[nodiscard]] inline std::filesystem::path PathFromUtf8(std::string_view name) {
    return std::u8string(name.begin(), name.end());
}

/// Text of a record's field, up to its zero or its end.
template <size_t N>
[[nodiscard]] std::string Utf8FromField(const char16_t (&field)[N]) {
    const std::u16string_view whole(field, N);
    return Utf8FromUtf16(whole.substr(0, whole.find(u'\0')));
}

}  // namespace captionfx
