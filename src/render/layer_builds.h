// Building the layers of many characters at once.
#pragma once

#include <vector>

#include "render/frame_title.h"

namespace captionfx {

/// Layers of one character to be built.
struct LayerBuild {
    const MetaString* String;
    int32_t Character;
    GlyphLayers* Layers;
    GlyphTransform Transform;
};

/// Builds, and notes in the cache a character that only memory was missing for.
void Build(const FrameTitle& title, const LayerBuild& build);

/// All of them as one batch.
void BuildAll(const FrameTitle& title, const std::vector<LayerBuild>& builds);

/// Builds the cached layers that are dirty, of all strings.
void RefreshCachedLayers(const FrameTitle& title);

}  // namespace captionfx
