#include "text/refont.h"

#include <cmath>
#include <optional>

#include "host/style_tables.h"
#include "layout/line_ends.h"
#include "layout/reflow.h"
#include "layout/string_layout.h"
#include "text/font_runs.h"
#include "text/font_table_walk.h"
#include "text/linked_fonts.h"

namespace captionfx {
namespace {

/// The font of each character, measured on this machine one character at a time, as a text of one unit.
std::vector<MetaFont> MeasureFonts(FontSystem& system, FontLink& link, const InstalledFonts& installed,
                                   const MetaString& string) {
    std::vector<MetaFont> measured(string.Characters.size());
    std::vector<std::optional<FontSpec>> requests(string.Fonts.size());
    for (size_t i = 0; i < measured.size(); ++i) {
        const MetaCharacter& character = string.Characters[i];
        std::optional<FontSpec>& request = At(requests, character.FontIndex);
        if (!request) request = RequestOf(system, installed, At(string.Fonts, character.FontIndex));
        const auto unit = static_cast<char16_t>(character.Value);
        SplitFontRuns(system, link, {&unit, 1}, kEmSize, *request, {&measured[i], 1});
    }
    return measured;
}

/// Whether a saved length is a measured one but for the six decimals of a file. Both the length and the ratio of size
/// to em that is in it were rounded.
bool IsSaved(float saved, float measured, float sizeRatio) {
    constexpr float kTwiceTheRounding = 1e-6F;
    const float units = sizeRatio > 0 ? std::abs(measured) / sizeRatio : 0;
    return std::abs(saved - measured) <= kTwiceTheRounding * (1 + units);
}

bool IsSaved(const MetaFont& saved, const MetaFont& measured) {
    const auto agree = [&](float MetaFont::*field) {
        return IsSaved(saved.*field, measured.*field, measured.SizeRatio);
    };
    return std::memcmp(&saved.LogFont, &measured.LogFont, sizeof(LogFont)) == 0 &&
           IsSaved(saved.SizeRatio, measured.SizeRatio, 0) && agree(&MetaFont::Ascent) && agree(&MetaFont::Descent) &&
           agree(&MetaFont::IntLead) && agree(&MetaFont::ExtLead) && agree(&MetaFont::StrikeoutPos) &&
           agree(&MetaFont::StrikeoutSize) && agree(&MetaFont::UnderlinePos) && agree(&MetaFont::UnderlineSize);
}

/// Whether a string as it was saved is what this machine makes of it.
bool IsOfThisMachine(const MetaString& string, const std::vector<MetaFont>& fonts,
                     const std::vector<MetaCharacter>& characters) {
    for (size_t i = 0; i < characters.size(); ++i) {
        const MetaCharacter& saved = string.Characters[i];
        const float ratio = fonts[i].SizeRatio;
        if (!IsSaved(At(string.Fonts, saved.FontIndex), fonts[i]) ||
            !IsSaved(saved.Width, characters[i].Width, ratio) || !IsSaved(saved.Height, characters[i].Height, ratio)) {
            return false;
        }
    }
    return true;
}

void RefontString(FontSystem& system, FontLink& link, const InstalledFonts& installed, bool vertical,
                  MetaString& string) {
    if (string.Characters.empty()) return;
    const std::vector<MetaFont> fonts = MeasureFonts(system, link, installed, string);
    std::vector<MetaCharacter> characters = string.Characters;
    for (size_t i = 0; i < characters.size(); ++i) SetExtent(system, fonts[i], vertical, characters[i]);
    if (IsOfThisMachine(string, fonts, characters)) return;

    std::vector<float> formerAdvances(characters.size());
    FontTableWalk table(string);
    for (int32_t i = 0; i < CountOf(characters); ++i) {
        At(formerAdvances, i) = AdvanceOf(string.Characters, i, vertical);
        At(characters, i).FontIndex = table.Exchange(At(characters, i).FontIndex, At(fonts, i));
    }
    string.Characters = std::move(characters);
    table.Store(string);
    ReflowChanged(string, formerAdvances, vertical);
}

}  // namespace

void RefontCharacter(PlatformServices& services, const TitleDefaults& defaults, MetaString& string, int32_t first,
                     int32_t count) {
    if (!IsIndexOf(string.Characters, first) || count < 1 || int64_t{first} + count > CountOf(string.Characters))
        return;
    std::u16string text;
    for (int32_t i = first; i < first + count; ++i) text += static_cast<char16_t>(At(string.Characters, i).Value);
    const std::vector<MetaFont> fonts = LinkFonts(services, defaults.DefaultFont, text);
    if (fonts.empty()) return;

    const bool vertical = defaults.DefaultString.Vertical != 0;  // reflow reads the same
    ReleaseFontRange(string, first, count);
    for (int32_t i = first; i < first + count; ++i) {
        MetaCharacter& character = At(string.Characters, i);
        SetExtent(services.Fonts(), At(fonts, i - first), vertical, character);
        character.FontIndex = InternFont(string, At(fonts, i - first));
        At(string.GlyphLayersList, i).DirtyMask |= kAllLayersDirty;
    }
    const MetaLine& line = At(string.Lines, At(string.Characters, first + count - 1).LineIndex);
    const int32_t last = At(string.Lines, At(string.Paragraphs, line.ParagraphIndex).LineEnd).CharEnd;
    ReflowLines(string, first, last - first + 1, vertical);
    LayoutString(services.Fonts(), defaults.DefaultFont, string);
}

FontSpec RequestOf(FontSystem& system, const InstalledFonts& installed, const MetaFont& font) {
    FontSpec request = FontSpecOf(font);
    request.Bold = font.LogFont.lfWeight == kBoldWeight ? 1 : 0;
    return VetFont(system, installed, request);
}

int32_t RefontAllStrings(PlatformServices& services, const InstalledFonts& installed, const TitleDefaults& defaults,
                         std::vector<MetaString>& strings) {
    const std::unique_ptr<FontLink> link = services.CreateFontLink();
    if (!link) return kTitleFailure;
    for (MetaString& string : strings) {
        RefontString(services.Fonts(), *link, installed, defaults.DefaultString.Vertical != 0, string);
    }
    link->ResetFontMapping();
    return kTitleOk;
}

}  // namespace captionfx
