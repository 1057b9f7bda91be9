#include "render/layer_builds.h"

#include "render/glyph_layers.h"

namespace captionfx {

void Build(const FrameTitle& title, const LayerBuild& build) {
    BuildGlyphLayers(title.Glyphs(), title.Ops, *build.String, build.Character, *build.Layers, build.Transform);
    // One without a shape comes out clean, one of a scale that is not above 0 was never to be seen.
    const bool isBuildable = build.Transform.ScaleX > 0 && build.Transform.ScaleY > 0;
    if (isBuildable && build.Layers->DirtyMask != 0) title.Cache.HasLostLayers = true;
}

void BuildAll(const FrameTitle& title, const std::vector<LayerBuild>& builds) {
    title.Workers().Run(CountOf(builds), [&](int32_t i) { Build(title, At(builds, i)); });
}

void RefreshCachedLayers(const FrameTitle& title) {
    std::vector<LayerBuild> builds;
    for (MetaString& string : title.Strings) {
        for (int32_t i = 0; i < CountOf(string.Characters); ++i) {
            GlyphLayers& layers = At(string.GlyphLayersList, i);
            if (layers.DirtyMask == 0) continue;
            builds.push_back({.String = &string,
                              .Character = i,
                              .Layers = &layers,
                              .Transform = {.ScaleX = At(string.Characters, i).WidthScale,
                                            .ScaleY = 1.0F,
                                            .RotationDeg = string.RotateDegree}});
        }
    }
    BuildAll(title, builds);
}

}  // namespace captionfx
