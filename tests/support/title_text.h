// Titles as the text of their XML, narrow for the ease of comparing: what titles hold there is ASCII.
#pragma once

#include <string>
#include <vector>

#include "host/title_object.h"

namespace captionfx::test {

/// The XML of a title; empty when it could not be saved.
[[nodiscard]] inline std::string SavedText(CCaptionFx& title) {
    uint32_t size = 0;
    if (title.SaveToBuffer(nullptr, &size) != kTitleOk || size == 0) return "";
    std::vector<char16_t> wide(size / sizeof(char16_t));
    title.SaveToBuffer(wide.data(), &size);
    std::string text;
    for (size_t i = 0; i + 1 < wide.size(); ++i) text += static_cast<char>(wide[i]);
    return text;
}

inline int32_t LoadText(CCaptionFx& title, const std::string& text) {
    return title.LoadFromBuffer(std::u16string(text.begin(), text.end()).c_str());
}

/// `text` with the first `from` replaced; the text itself when it is not there.
[[nodiscard]] inline std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const size_t at = text.find(from);
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

}  // namespace captionfx::test
