#include "tools/typed_title.h"

#include "tools/colors.h"
#include "tools/title_file.h"
#include "tools/title_setup.h"

namespace captionfx {
namespace {

void SetFaceColor(IKVT_CaptionFx& title, Rgb color) {
    MetaFace face{};
    title.GetCharFace(kDefaults, kDefaults, &face);
    face.Color1 = face.Color2 = StyleColor(color);
    title.SetDefaultFace(&face);
}

}  // namespace

void AddTypedTitle(IKVT_CaptionFx& title, const TypedTitle& typed, FrameSize frame) {
    SetFont(title, {.name = typed.fontName, .size = typed.fontSize, .bold = typed.bold, .italic = typed.italic});
    if (typed.faceColor) SetFaceColor(title, *typed.faceColor);
    if (!typed.position) AlignInTheMiddle(title);
    const Position corner = typed.position ? *typed.position : CentredCorner(title, typed.text, frame);
    AddString(title, {.text = typed.text, .effect = typed.effect, .progress = typed.progress}, corner);
    if (!typed.keys.empty()) SetKeyframes(title, {typed.keys});
}

}  // namespace captionfx
