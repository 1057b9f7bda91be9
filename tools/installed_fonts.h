// The fonts of this machine, and what becomes of a text in one of them.
#pragma once

#include <string>
#include <vector>

namespace captionfx {

/// Families that titles can be written in, each by its first name, in alphabetical order. The system tells their names;
/// whether the library draws a family by that name, the library tells.
[[nodiscard]] std::vector<std::string> DrawableFontFamilies();

/// Characters beside each other that are drawn with one font.
struct FontRun {
    std::u16string text;
    std::string fontName;
};

/// A text as the library draws it in a font. Throws std::bad_alloc.
[[nodiscard]] std::vector<FontRun> FontRunsOf(const std::u16string& text, const std::u16string& fontName);

}  // namespace captionfx
