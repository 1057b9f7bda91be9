#include "tools/text_encoding.h"

#include <iterator>
#include <utf8.h>

#include "tools/format.h"

namespace captionfx {

std::optional<std::u16string> Utf16FromUtf8(std::string_view text) {
    if (!utf8::is_valid(text.begin(), text.end())) return std::nullopt;
    std::u16string result;
    utf8::utf8to16(text.begin(), text.end(), std::back_inserter(result));
    return result;
}

std::string Utf8FromUtf16(std::u16string_view text) {
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool isPair = utf8::internal::is_lead_surrogate(text[i]) && i + 1 < text.size() &&
                            utf8::internal::is_trail_surrogate(text[i + 1]);
        if (isPair) {
            utf8::utf16to8(text.begin() + static_cast<std::ptrdiff_t>(i),
                           text.begin() + static_cast<std::ptrdiff_t>(i) + 2, std::back_inserter(result));
            ++i;
        } else {
            constexpr char32_t kReplacement = 0xFFFD;
            utf8::append(utf8::internal::is_surrogate(text[i]) ? kReplacement : char32_t{text[i]},
                         std::back_inserter(result));
        }
    }
    return result;
}

std::string QuotedLine(std::u16string_view text) {
    std::string quoted = "\"";
    for (const char c : Utf8FromUtf16(text)) {
        if (c == '\r') {
            quoted += "\\r";
        } else if (c == '\n') {
            quoted += "\\n";
        } else if (c == '"' || c == '\\') {
            quoted += std::string("\\") + c;
        } else if (static_cast<unsigned char>(c) < ' ') {
            quoted += Format("\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

}  // namespace captionfx
