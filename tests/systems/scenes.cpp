#include "systems/scenes.h"

#include <iterator>
#include <vector>

namespace captionfx::test {
namespace {

/// White text on its own, at rest, that does not wrap.
Scene Plain(const char* name, std::u16string_view family, float size, const char16_t* text) {
    Scene scene{};
    scene.name = name;
    scene.text = text;
    family.copy(scene.font.FaceName, std::size(scene.font.FaceName) - 1);
    scene.font.CharSet = 1;  // any
    scene.font.Size = size;
    scene.face = {.Enable = 1, .Color1 = 0xFFFFFF, .Color2 = 0xFFFFFF, .GradType = 0, .Alpha = 255, .BlurRadius = 0};
    scene.spacing = {.WidthScale = 1, .Spacing = 0};
    scene.string.Left = scene.string.Top = 20;
    scene.string.WidthLimit = 1e9F;
    scene.string.PathProgress = 1;
    std::string_view("PATH_NOEFFECT").copy(scene.string.PathID, std::size(scene.string.PathID));
    scene.settings = {.Reserved = 0,
                      .AntialiasMode = 0,
                      .PixelFormat = 0,
                      .PostFilter = 0,
                      .DestinationAlpha = 1,
                      .Width = kSceneWidth,
                      .Height = kSceneHeight,
                      .ScaleX = 1,
                      .ScaleY = 1,
                      .ClipRect = {0, 0, kSceneWidth, kSceneHeight},
                      .GlyphCacheEnabled = 1,
                      .MaxThreads = 2};
    return scene;
}

template <class Change>
Scene With(Scene scene, Change change) {
    change(scene);
    return scene;
}

std::vector<Scene> MakeScenes() {
    const char16_t* const pangram = u"The quick brown fox jumps over the lazy dog";
    return {
        Plain("small", u"Liberation Sans", 16, u"Small print, 0123456789 (\u00E9\u00DF\u03C0\u0416)"),
        Plain("large", u"DejaVu Sans", 190, u"Rag"),
        With(Plain("bold", u"Liberation Serif", 60, u"Bold \u00C4\u00D6\u00DC"), [](Scene& s) { s.font.Bold = 1; }),
        With(Plain("italic", u"Liberation Serif", 60, u"Italic fgj"), [](Scene& s) { s.font.Italic = 1; }),
        // A family without such faces: made up by the system.
        With(Plain("synthetic", u"Droid Sans Fallback", 56, u"\u5B57\u5E55\u30D5\u30A1"),
             [](Scene& s) { s.font.Bold = s.font.Italic = 1; }),
        With(Plain("wrapped", u"DejaVu Sans", 36, pangram), [](Scene& s) { s.string.WidthLimit = 430; }),
        With(Plain("paragraphs", u"Liberation Sans", 34, u"First\r\nthe second one\r\nthird"),
             [](Scene& s) {
                 s.paragraph.Align = 6;
                 s.paragraph.LineSpace = 5;
                 s.paragraph.BeforeSpace = 3.5F;
                 s.spacing = {.WidthScale = 1.25F, .Spacing = 1.5F};
             }),
        Plain("fallback", u"DejaVu Sans", 44, u"Title \u89C6\u9891\u5B57\u5E55 \u30AB\u30CA 12"),
        With(Plain("rotated", u"Liberation Sans", 48, u"at an angle"),
             [](Scene& s) {
                 s.string.RotateDegree = 23;
                 s.string.Left = 110;
             }),
        With(Plain("vertical", u"DejaVu Sans", 40, u"\u5B57\u5E55 Ab\r\n\u89C6\u9891"),
             [](Scene& s) {
                 s.string.Vertical = 1;
                 s.string.Left = 300;
             }),
        With(Plain("gradient", u"DejaVu Sans", 110, u"Grad"),
             [](Scene& s) {
                 s.face.Color2 = 0x2080FF;
                 s.face.GradType = 4;
                 s.settings.AntialiasMode = 1;
             }),
        With(Plain("border", u"Liberation Serif", 90, u"Border"),
             [](Scene& s) {
                 s.border = {.Enable = 1,
                             .Size = 6,
                             .Color1 = 0x2020C0,
                             .Color2 = 0x2020C0,
                             .GradType = 0,
                             .Alpha = 255,
                             .BlurRadius = 2};
             }),
        With(Plain("shadow", u"Liberation Sans", 90, u"Shadow"),
             [](Scene& s) {
                 s.shadow = {.EnableFace = 1,
                             .EnableBorder = 0,
                             .Color1 = 0,
                             .Color2 = 0,
                             .GradType = 0,
                             .Alpha = 200,
                             .BlurRadius = 4,
                             .OffsetX = 6.5F,
                             .OffsetY = 7,
                             .Height = 1};
             }),
        With(Plain("mono", u"Liberation Sans", 30, pangram), [](Scene& s) { s.settings.AntialiasMode = 3; }),
        With(
            Plain("moving", u"DejaVu Sans", 60, u"moving on"),
            [](Scene& s) {
                s.string.PathProgress = 0.3F;
                s.string.PathID[std::string_view("PATH_SPIRAL").copy(s.string.PathID, std::size(s.string.PathID) - 1)] =
                    '\0';
            }),
    };
}

}  // namespace

std::span<const Scene> Scenes() {
    static const std::vector<Scene> scenes = MakeScenes();
    return scenes;
}

void SetDefaults(IKVT_CaptionFx& title, const Scene& scene) {
    title.SetDefaultFont(&scene.font);
    title.SetDefaultFace(&scene.face);
    title.SetDefaultBorder(&scene.border);
    title.SetDefaultShadow(&scene.shadow);
    title.SetDefaultCharSpacing(&scene.spacing);
    title.SetDefaultParagraph(&scene.paragraph);
    title.SetDefaultString(&scene.string);
    title.SetRenderSettings(&scene.settings);
}

}  // namespace captionfx::test
