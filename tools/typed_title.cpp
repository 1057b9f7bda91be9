#include "tools/typed_title.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <new>

#include "tools/console.h"
#include "tools/text_encoding.h"
#include "tools/title_file.h"

namespace captionfx {
namespace {

// The getters of styles fill in the title's default for an index that names nothing.
constexpr int32_t kDefaults = -1;
constexpr uint32_t kAlignCentre = 6;

/// Sets the font, and says so where another one stands in for it.
void SetFont(IKVT_CaptionFx& title, const TypedTitle& typed) {
    FontSpec font{};
    title.GetCharFont(kDefaults, kDefaults, &font);
    std::fill(std::begin(font.FaceName), std::end(font.FaceName), u'\0');
    typed.fontName.copy(font.FaceName, std::size(font.FaceName) - 1);
    font.Size = typed.fontSize;
    font.Bold = typed.bold ? 1 : 0;
    font.Italic = typed.italic ? 1 : 0;
    title.SetDefaultFont(&font);

    FontSpec used{};
    title.GetCharFont(kDefaults, kDefaults, &used);
    if (!std::equal(std::begin(font.FaceName), std::end(font.FaceName), std::begin(used.FaceName)))
        PrintLine("note: font '" + Utf8FromField(font.FaceName) + "' is not installed; '" +
                  Utf8FromField(used.FaceName) + "' stands in for it");
}

void SetFaceColor(IKVT_CaptionFx& title, Rgb color) {
    MetaFace face{};
    title.GetCharFace(kDefaults, kDefaults, &face);
    face.Color1 = face.Color2 =
        static_cast<uint32_t>(color.blue) << 16 | static_cast<uint32_t>(color.green) << 8 | color.red;
    title.SetDefaultFace(&face);
}

int32_t AddString(IKVT_CaptionFx& title, const TypedTitle& typed, Position corner) {
    StringSpec settings{};
    title.GetStringSettings(kDefaults, &settings);
    settings.Left = corner.x;
    settings.Top = corner.y;
    if (typed.effect) {
        std::fill(std::begin(settings.PathID), std::end(settings.PathID), '\0');
        typed.effect->copy(settings.PathID, std::size(settings.PathID) - 1);
    }
    if (typed.progress) settings.PathProgress = *typed.progress;
    title.SetDefaultString(&settings);

    const int32_t string = title.AddString();
    const int32_t count = string < 0 ? string : title.InsertText(string, 0, typed.text.c_str());
    if (count < 0) throw std::bad_alloc();
    return string;
}

/// Upper left corner that puts the text into the middle of the frame. Only the library knows how large the text is, so
/// it is laid out once to be measured. Whole pixels, since a glyph between two pixels is a little softer.
Position CentredCorner(IKVT_CaptionFx& title, const TypedTitle& typed, FrameSize frame) {
    const int32_t string = AddString(title, typed, {0.0F, 0.0F});
    TitleRectF rect{};
    title.GetStringRect(string, &rect);
    title.RemoveAllStrings();
    return {std::floor((static_cast<float>(frame.width) - rect.width) / 2.0F),
            std::floor((static_cast<float>(frame.height) - rect.height) / 2.0F)};
}

}  // namespace

void AddTypedTitle(IKVT_CaptionFx& title, const TypedTitle& typed, FrameSize frame) {
    SetFont(title, typed);
    if (typed.faceColor) SetFaceColor(title, *typed.faceColor);
    Position corner{};
    if (typed.position) {
        corner = *typed.position;
    } else {
        ParagraphSpec paragraph{};
        title.GetCharParagraph(kDefaults, kDefaults, &paragraph);
        paragraph.Align = kAlignCentre;
        title.SetDefaultParagraph(&paragraph);
        corner = CentredCorner(title, typed, frame);
    }
    AddString(title, typed, corner);
    if (!typed.keys.empty()) SetKeyframes(title, typed.keys);
}

}  // namespace captionfx
