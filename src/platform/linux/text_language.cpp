#include "platform/linux/text_language.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include <fontconfig/fontconfig.h>

namespace captionfx {
namespace {

constexpr std::string_view kHan = "han";  // stands in the table for the language that the text decides
constexpr std::string_view kElse = "en";
constexpr std::string_view kJapanese = "ja", kKorean = "ko", kTaiwan = "zh-tw", kChina = "zh-cn";

struct Script {
    char16_t First, Last;
    std::string_view Language;
};

/// Ascending, without overlaps. What lies between is of no certain language.
constexpr std::array kScripts{
    Script{0x0370, 0x03FF, "el"},      Script{0x0400, 0x052F, "ru"},      Script{0x0530, 0x058F, "hy"},
    Script{0x0590, 0x05FF, "he"},      Script{0x0600, 0x06FF, "ar"},      Script{0x0700, 0x074F, "syr"},
    Script{0x0750, 0x077F, "ar"},      Script{0x0780, 0x07BF, "dv"},      Script{0x07C0, 0x07FF, "nqo"},
    Script{0x08A0, 0x08FF, "ar"},      Script{0x0900, 0x097F, "hi"},      Script{0x0980, 0x09FF, "bn"},
    Script{0x0A00, 0x0A7F, "pa"},      Script{0x0A80, 0x0AFF, "gu"},      Script{0x0B00, 0x0B7F, "or"},
    Script{0x0B80, 0x0BFF, "ta"},      Script{0x0C00, 0x0C7F, "te"},      Script{0x0C80, 0x0CFF, "kn"},
    Script{0x0D00, 0x0D7F, "ml"},      Script{0x0D80, 0x0DFF, "si"},      Script{0x0E00, 0x0E7F, "th"},
    Script{0x0E80, 0x0EFF, "lo"},      Script{0x0F00, 0x0FFF, "bo"},      Script{0x1000, 0x109F, "my"},
    Script{0x10A0, 0x10FF, "ka"},      Script{0x1100, 0x11FF, kKorean},   Script{0x1200, 0x139F, "am"},
    Script{0x13A0, 0x13FF, "chr"},     Script{0x1400, 0x167F, "iu"},      Script{0x1780, 0x17FF, "km"},
    Script{0x1800, 0x18AF, "mn-cn"},   Script{0x1F00, 0x1FFF, "el"},      Script{0x2D00, 0x2D2F, "ka"},
    Script{0x2D30, 0x2D7F, "ber-ma"},  Script{0x2D80, 0x2DDF, "am"},      Script{0x2DE0, 0x2DFF, "ru"},
    Script{0x2E80, 0x303F, kHan},      Script{0x3040, 0x30FF, kJapanese}, Script{0x3100, 0x312F, kTaiwan},
    Script{0x3130, 0x318F, kKorean},   Script{0x3190, 0x319F, kHan},      Script{0x31A0, 0x31BF, kTaiwan},
    Script{0x31C0, 0x31EF, kHan},      Script{0x31F0, 0x31FF, kJapanese}, Script{0x3200, 0x4DBF, kHan},
    Script{0x4E00, 0x9FFF, kHan},      Script{0xA000, 0xA4CF, "ii"},      Script{0xA640, 0xA69F, "ru"},
    Script{0xA960, 0xA97F, kKorean},   Script{0xAC00, 0xD7FF, kKorean},   Script{0xF900, 0xFAFF, kHan},
    Script{0xFB1D, 0xFB4F, "he"},      Script{0xFB50, 0xFDFF, "ar"},      Script{0xFE10, 0xFE1F, kHan},
    Script{0xFE30, 0xFE6F, kHan},      Script{0xFE70, 0xFEFE, "ar"},      Script{0xFF00, 0xFF65, kHan},
    Script{0xFF66, 0xFF9F, kJapanese}, Script{0xFFA0, 0xFFDF, kKorean},   Script{0xFFE0, 0xFFEF, kHan},
};
static_assert(std::ranges::adjacent_find(kScripts, [](const Script& a, const Script& b) {
                  return a.Last >= b.First;
              }) == kScripts.end());

/// The script's entry in the table, or nothing.
std::string_view ScriptLanguage(char16_t unit) {
    const auto* const script = std::ranges::lower_bound(kScripts, unit, {}, &Script::Last);
    return script != kScripts.end() && unit >= script->First ? script->Language : std::string_view();
}

bool IsIdeograph(char16_t unit) {
    return (unit >= 0x3400 && unit <= 0x4DBF) || (unit >= 0x4E00 && unit <= 0x9FFF) ||
           (unit >= 0xF900 && unit <= 0xFAFF);
}

/// Everyday characters of a language.
struct Orthography {
    std::string_view Language;
    const FcCharSet* Characters;  // a constant of Fontconfig; null if it does not know the language
    [[nodiscard]] bool Has(char16_t unit) const {
        return Characters != nullptr && FcCharSetHasChar(Characters, unit) != 0;
    }
};

Orthography OrthographyOf(std::string_view language) {
    return {language, FcLangGetCharSet(reinterpret_cast<const FcChar8*>(language.data()))};
}

}  // namespace

std::string_view HanLanguageOf(std::u16string_view text) {
    for (const std::string_view language : {kJapanese, kKorean, kTaiwan}) {
        if (std::ranges::find(text, language, ScriptLanguage) != text.end()) return language;
    }
    static const std::array kOrthographies{OrthographyOf(kChina), OrthographyOf(kJapanese), OrthographyOf(kTaiwan)};
    for (const Orthography& orthography : kOrthographies) {
        const auto fits = [&](char16_t unit) { return !IsIdeograph(unit) || orthography.Has(unit); };
        if (std::ranges::all_of(text, fits)) return orthography.Language;
    }
    return kChina;
}

std::string_view LanguageOf(char16_t unit, std::string_view hanLanguage) {
    const std::string_view language = ScriptLanguage(unit);
    if (language == kHan) return hanLanguage;
    return language.empty() ? kElse : language;
}

}  // namespace captionfx
