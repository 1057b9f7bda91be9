#include "render/path_binding.h"

#include "layout/read_back.h"

namespace captionfx {
namespace {

CharBox BoxOf(const MetaString& string, int32_t character, PixelScale scale) {
    const TitleRectF rect = DrawnCharRect(string, character, scale);
    const float ascent = At(string.Fonts, At(string.Characters, character).FontIndex).Ascent;
    return {.Left = rect.x,
            .Top = rect.y,
            .Width = rect.width,
            .Height = rect.height,
            .BaseX = rect.x,
            .BaseY = rect.y + ascent * scale.Y};
}

}  // namespace

int32_t EnsureStringPath(CPathManager& manager, const TitleRenderSettings& settings, MetaString& string) {
    if (string.PathChanged == 0 && string.PathObject) return kTitleOk;
    string.PathObject.reset();
    PathHandle path = MakePath(manager, TextOf(string.PathID));
    if (path) {
        const PixelScale scale = ScaleOf(settings);
        path->SetCanvasSize(settings.Width, settings.Height);
        path->SetStringRect(StringRect(string, scale), string.RotateDegree);
        path->SetCharCount(CountOf(string.Characters));
        for (int32_t i = 0; i < CountOf(string.Characters); ++i) path->SetCharBox(i, BoxOf(string, i, scale));
    }
    string.PathObject = std::move(path);  // only now: one that memory was too short for has boxes missing
    string.PathChanged = 0;
    return kTitleOk;
}

}  // namespace captionfx
