#include "peers/captionfx_title.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>

namespace captionfx::peers {
namespace {

std::u16string Utf16(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

void SetFrame(IKVT_CaptionFx& title, const Stage& stage, int32_t threads) {
    TitleRenderSettings settings{};
    title.GetRenderSettings(&settings);
    settings.AntialiasMode = 0;
    settings.DestinationAlpha = 0;
    settings.Width = stage.width;
    settings.Height = stage.height;
    settings.ClipRect = {0, 0, stage.width, stage.height};
    settings.ScaleX = settings.ScaleY = static_cast<float>(stage.scale);
    settings.GlyphCacheEnabled = 1;
    settings.MaxThreads = threads;
    title.SetRenderSettings(&settings);
}

void SetLook(IKVT_CaptionFx& title, const Scene& scene) {
    FontSpec font{};
    title.GetCharFont(kDefaults, kDefaults, &font);
    std::fill(std::begin(font.FaceName), std::end(font.FaceName), u'\0');
    Utf16(kFontFamily).copy(font.FaceName, std::size(font.FaceName) - 1);
    font.Size = static_cast<float>(scene.emPx);
    title.SetDefaultFont(&font);
    MetaBorder border{};
    title.GetCharBorder(kDefaults, kDefaults, &border);
    border.Size = kBorderSize;
    title.SetDefaultBorder(&border);
    SetShadowBlur(title, scene.motion == Motion::kFreshShadow ? kWideShadowBlur : kShadowBlur);
}

void SetDefaultString(IKVT_CaptionFx& title, float left, float top, const char* effect, float progress) {
    StringSpec string{};
    title.GetStringSettings(kDefaults, &string);
    string.Left = left;
    string.Top = top;
    std::fill(std::begin(string.PathID), std::end(string.PathID), '\0');
    std::string_view(effect).copy(string.PathID, std::size(string.PathID) - 1);
    string.PathProgress = progress;
    title.SetDefaultString(&string);
}

}  // namespace

void Require(bool isGood, const char* what) {
    if (!isGood) throw std::runtime_error(std::string("the title cannot ") + what);
}

std::u16string JoinedText(const Scene& scene) {
    std::u16string joined;
    for (const std::string& line : TextOf(scene)) joined += (joined.empty() ? u"" : u"\r\n") + Utf16(line);
    return joined;
}

void SetShadowBlur(IKVT_CaptionFx& title, int32_t blur) {
    MetaShadow shadow{};
    title.GetCharShadow(kDefaults, kDefaults, &shadow);
    shadow.BlurRadius = blur;
    shadow.Alpha = kShadowAlpha;
    shadow.OffsetX = shadow.OffsetY = kShadowOffsetDoc;
    title.SetDefaultShadow(&shadow);
}

void Type(IKVT_CaptionFx& title, const Scene& scene, const char* effect, float progress) {
    const std::u16string text = JoinedText(scene);
    const float top = scene.isCredits ? 0.0F : 480.0F;
    SetDefaultString(title, scene.isCredits ? 400.0F : 60.0F, top, effect, progress);
    const int32_t string = title.AddString();
    Require(string >= 0 && title.InsertText(string, 0, text.c_str()) > 0, "take the text");
}

std::u16string Saved(IKVT_CaptionFx& title) {
    uint32_t bytes = 0;
    Require(title.SaveToBuffer(nullptr, &bytes) == kTitleOk && bytes > 0, "be saved");
    std::u16string xml(bytes / sizeof(char16_t), u'\0');
    Require(title.SaveToBuffer(xml.data(), &bytes) == kTitleOk, "be saved");
    xml.resize(xml.find(u'\0'));
    return xml;
}

void SetKeyframes(IKVT_CaptionFx& title, const Scene& scene) {
    const auto key = [&](const char* time, float progress) {
        return std::string("<MetaPath KeyFrame=\"") + time + "\" PathID=\"" + scene.effect + "\" PathProgress=\"" +
               std::to_string(progress) + "\"/>";
    };
    std::u16string xml = Saved(title);
    const std::u16string empty = u"<PathList/>";
    const size_t at = xml.find(empty);
    Require(at != std::u16string::npos, "take keyframes");
    const std::string keys = key("0", scene.firstProgress) + key("1", scene.lastProgress);
    xml.replace(at, empty.size(), u"<PathList>" + Utf16(keys) + u"</PathList>");
    Require(title.LoadFromBuffer(xml.c_str()) == kTitleOk, "take keyframes");
}

TitleHandle OpenTitle(const Scene& scene, const Stage& stage, int32_t threads) {
    TitleHandle title = MakeTitle();
    SetFrame(*title, stage, threads);
    SetLook(*title, scene);
    return title;
}

}  // namespace captionfx::peers
