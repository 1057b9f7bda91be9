#include "tools/title_setup.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <new>
#include <string_view>

#include "tools/console.h"
#include "tools/text_encoding.h"

namespace captionfx {
void SetFrame(IKVT_CaptionFx& title, FrameSize frame, Ground ground) {
    TitleRenderSettings settings{};
    title.GetRenderSettings(&settings);
    settings.AntialiasMode = 0;
    settings.DestinationAlpha = ground == Ground::kOpaque ? 0 : 1;
    settings.Width = frame.width;
    settings.Height = frame.height;
    settings.ClipRect = {0, 0, frame.width, frame.height};
    title.SetRenderSettings(&settings);
}

bool SetDirection(IKVT_CaptionFx& title, bool isVertical) {
    StringSpec settings{};
    title.GetStringSettings(kDefaults, &settings);
    if ((settings.Vertical != 0) == isVertical) return false;
    settings.Vertical = isVertical ? 1 : 0;
    title.SetDefaultString(&settings);
    return true;
}

bool IsVertical(IKVT_CaptionFx& title) {
    const int32_t count = title.GetStringCount();
    for (int32_t i = 0; i < count; ++i) {
        StringSpec settings{};
        title.GetStringSettings(i, &settings);
        if (settings.Vertical == 0) return false;
    }
    return count > 0;
}

void SetScale(IKVT_CaptionFx& title, float scale) {
    TitleRenderSettings settings{};
    title.GetRenderSettings(&settings);
    if (settings.ScaleX == scale && settings.ScaleY == scale) return;
    settings.ScaleX = settings.ScaleY = scale;
    title.SetRenderSettings(&settings);
    title.FlushRenderCaches();  // the bitmaps of characters have the former scale
}

void DropKeptFrame(IKVT_CaptionFx& title) {
    // Any output setting that changes what compositing does will do; this one changes nothing else.
    TitleRenderSettings settings{};
    title.GetRenderSettings(&settings);
    const TitleRenderSettings wanted = settings;
    settings.PostFilter = settings.PostFilter == 0 ? 1 : 0;
    title.SetRenderSettings(&settings);
    title.SetRenderSettings(&wanted);
}

void RenderWholeFrame(IKVT_CaptionFx& title, uint32_t* pixels, float time) {
    if (title.GetStringCount() > 1) DropKeptFrame(title);
    if (title.RenderFrame(pixels, time) != kTitleOk) throw std::bad_alloc();
}

void SetFont(IKVT_CaptionFx& title, const TextFont& font) {
    FontSpec settings{};
    title.GetCharFont(kDefaults, kDefaults, &settings);
    std::fill(std::begin(settings.FaceName), std::end(settings.FaceName), u'\0');
    font.name.copy(settings.FaceName, std::size(settings.FaceName) - 1);
    settings.Size = font.size;
    settings.Bold = font.bold ? 1 : 0;
    settings.Italic = font.italic ? 1 : 0;
    title.SetDefaultFont(&settings);
}

void NoteFontSubstitute(IKVT_CaptionFx& title, const std::u16string& name) {
    FontSpec used{};
    title.GetCharFont(kDefaults, kDefaults, &used);
    const std::u16string_view field(used.FaceName, std::size(used.FaceName));
    const std::u16string_view usedName = field.substr(0, field.find(u'\0'));
    if (usedName == name) return;
    PrintLine("note: font '" + Utf8FromUtf16(name) + "' is not installed; '" + Utf8FromUtf16(usedName) +
              "' stands in for it");
}

void AlignInTheMiddle(IKVT_CaptionFx& title) {
    constexpr uint32_t kAlignCentre = 6;
    ParagraphSpec paragraph{};
    title.GetCharParagraph(kDefaults, kDefaults, &paragraph);
    paragraph.Align = kAlignCentre;
    title.SetDefaultParagraph(&paragraph);
}

int32_t AddString(IKVT_CaptionFx& title, const TextString& string, Position corner) {
    StringSpec settings{};
    title.GetStringSettings(kDefaults, &settings);
    settings.Left = corner.x;
    settings.Top = corner.y;
    if (string.effect) {
        std::fill(std::begin(settings.PathID), std::end(settings.PathID), '\0');
        string.effect->copy(settings.PathID, std::size(settings.PathID) - 1);
    }
    if (string.progress) settings.PathProgress = *string.progress;
    title.SetDefaultString(&settings);

    const int32_t index = title.AddString();
    const int32_t count = index < 0 ? index : title.InsertText(index, 0, string.text.c_str());
    if (count < 0) throw std::bad_alloc();
    return index;
}

TitleRectF MeasureText(IKVT_CaptionFx& title, const std::u16string& text) {
    const int32_t string = AddString(title, {.text = text, .effect = {}, .progress = {}}, {0.0F, 0.0F});
    TitleRectF rect{};
    title.GetStringRect(string, &rect);
    title.RemoveAllStrings();
    return rect;
}

Position CentredCorner(IKVT_CaptionFx& title, const std::u16string& text, FrameSize frame) {
    const TitleRectF rect = MeasureText(title, text);
    return {std::floor((static_cast<float>(frame.width) - rect.width) / 2.0F),
            std::floor((static_cast<float>(frame.height) - rect.height) / 2.0F)};
}

}  // namespace captionfx
