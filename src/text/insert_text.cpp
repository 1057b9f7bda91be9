#include "text/insert_text.h"

#include <iterator>

#include "host/style_tables.h"
#include "layout/reflow.h"
#include "layout/string_layout.h"
#include "text/linked_fonts.h"
#include "text/text_transaction.h"

namespace captionfx {
namespace {

/// Dirty layers without pixels for new characters; all or none.
void InsertLayers(MetaString& string, int32_t position, size_t count) {
    std::vector<GlyphLayers> layers(count);
    string.GlyphLayersList.reserve(string.GlyphLayersList.size() + count);
    string.GlyphLayersList.insert(string.GlyphLayersList.begin() + position, std::move_iterator(layers.begin()),
                                  std::move_iterator(layers.end()));
}

/// The first paragraph and line of a string that has no text yet.
void OpenFirstLine(MetaString& string, const ParagraphSpec& settings) {
    InsertParagraphRecord(string, 0, settings);
    InsertLineRecord(string, 0);
}

}  // namespace

int32_t InsertText(PlatformServices& services, const TitleDefaults& defaults, MetaString& string, int32_t position,
                   std::u16string_view text) {
    const std::vector<MetaFont> fonts = LinkFonts(services, defaults.DefaultFont, text);
    if (fonts.empty()) return kTitleFailure;
    TextTransaction edit(string);
    if (string.Characters.empty()) OpenFirstLine(string, defaults.DefaultParagraph);

    MetaCharacter character{};
    character.WidthScale = defaults.DefaultCharSpacing.WidthScale;
    character.Spacing = defaults.DefaultCharSpacing.Spacing;
    character.LineIndex = position > 0 ? At(string.Characters, position - 1).LineIndex : 0;
    character.FaceIndex = InternFace(string, defaults.DefaultFace);
    character.BorderIndex = InternBorder(string, defaults.DefaultBorder);
    character.ShadowIndex = InternShadow(string, defaults.DefaultShadow);

    std::vector<MetaCharacter> fresh;
    fresh.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        character.Value = text[i];
        character.FontIndex = InternFont(string, fonts[i]);
        SetExtent(services.Fonts(), fonts[i], string.Vertical != 0, character);
        fresh.push_back(character);
    }
    string.Characters.insert(string.Characters.begin() + position, fresh.begin(), fresh.end());

    ReflowLines(string, position, CountOf(fresh), defaults.DefaultString.Vertical != 0);
    LayoutString(services.Fonts(), defaults.DefaultFont, string);
    InsertLayers(string, position, text.size());
    edit.Commit();
    return kTitleOk;
}

}  // namespace captionfx
