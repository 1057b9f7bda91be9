#include "text/linked_fonts.h"

#include <utility>

#include "text/font_runs.h"

namespace captionfx {

std::vector<MetaFont> LinkFonts(PlatformServices& services, const FontSpec& request, std::u16string_view text) {
    const std::unique_ptr<FontLink> link = services.CreateFontLink();
    if (!link) return {};
    std::vector<MetaFont> fonts(text.size());
    SplitFontRuns(services.Fonts(), *link, text, kEmSize, request, fonts);
    link->ResetFontMapping();
    return fonts;
}

void SetExtent(FontSystem& system, const MetaFont& font, bool vertical, MetaCharacter& character) {
    const auto unit = static_cast<char16_t>(character.Value);
    const TextExtent extent = system.Realise(font.LogFont)->Extent(unit);
    character.Width = static_cast<float>(extent.cx) * font.SizeRatio;
    character.Height = static_cast<float>(extent.cy) * font.SizeRatio;
    if (vertical && unit < kFirstUprightCharacter) std::swap(character.Width, character.Height);
}

}  // namespace captionfx
