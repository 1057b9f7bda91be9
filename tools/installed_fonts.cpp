#include "tools/installed_fonts.h"

#include <optional>

#include "tools/argument_values.h"
#include "tools/font_families.h"
#include "tools/text_encoding.h"
#include "tools/title_handle.h"
#include "tools/title_setup.h"

namespace captionfx {
namespace {

constexpr float kAnySize = 24.0F;

std::string FontOf(IKVT_CaptionFx& title, int32_t string, int32_t character) {
    FontSpec used{};
    title.GetCharFont(string, character, &used);
    return Utf8FromField(used.FaceName);
}

}  // namespace

std::vector<std::string> DrawableFontFamilies() {
    const TitleHandle title = MakeTitle();
    std::vector<std::string> drawable;
    for (const std::string& name : FontFamilies()) {
        const std::optional<std::u16string> wide = ParseFontName(name);
        if (!wide) continue;
        SetFont(*title, {.name = *wide, .size = kAnySize});
        if (FontOf(*title, kDefaults, kDefaults) == name) drawable.push_back(name);
    }
    return drawable;
}

std::vector<FontRun> FontRunsOf(const std::u16string& text, const std::u16string& fontName) {
    const TitleHandle title = MakeTitle();
    SetFont(*title, {.name = fontName, .size = kAnySize});
    const int32_t string = AddString(*title, {.text = text, .effect = {}, .progress = {}}, {0.0F, 0.0F});
    std::vector<FontRun> runs;
    for (int32_t i = 0; i < title->GetCharCount(string); ++i) {
        const std::string font = FontOf(*title, string, i);
        if (runs.empty() || runs.back().fontName != font) runs.push_back({.text = {}, .fontName = font});
        runs.back().text += text[static_cast<size_t>(i)];
    }
    return runs;
}

}  // namespace captionfx
