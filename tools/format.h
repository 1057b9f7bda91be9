// Text with numbers in it.
#pragma once

#include <array>
#include <cstdio>
#include <string>

namespace captionfx {

/// Formats as printf does, for what a stream would need many words for; up to 255 characters.
template <class... Values>
[[nodiscard]] std::string Format(const char* format, Values... values) {
    std::array<char, 256> text{};
    std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

}  // namespace captionfx
