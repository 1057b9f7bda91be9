// What characters of the same look share: coverage with its borders, and finished layers.
#pragma once

#include "host/document.h"
#include "render/border.h"
#include "render/glyph_raster.h"
#include "render/shared_cache.h"

namespace captionfx {

/// What the coverage of a glyph and of its border depends on.
struct MaskKey {
    captionfx::LogFont LogFont;
    GlyphMatrix Matrix;
    uint32_t Unit;
    int32_t AntialiasMode;
    float RadiusX, RadiusY;  ///< Of the border in pixels; 0 where it is not needed.
    int32_t HasBorder;
};

/// All that the layers of a character depend on.
struct LayerKey {
    MaskKey Masks;
    MetaFace Face;
    MetaBorder Border;
    MetaShadow Shadow;
    int32_t PixelFormat;
    float SizeRatio, Ascent, ScaleX, ScaleY, WidthScale, RotateSin, RotateCos;
};
static_assert(sizeof(LayerKey) == sizeof(LogFont) + sizeof(GlyphMatrix) + sizeof(MetaFace) + sizeof(MetaBorder) +
                                      sizeof(MetaShadow) + size_t{13} * 4,
              "no padding, since keys are compared as bytes");

/// A glyph and, where they are needed, its border's masks.
struct GlyphMasks {
    std::optional<RasterizedGlyph> Glyph;  ///< Nothing for a character without a shape.
    std::optional<BorderMasks> Border;     ///< Nothing for one that would be too large.
};

/// Of one title.
struct GlyphCaches {
    SharedCache<MaskKey, GlyphMasks> Masks{size_t{16} << 20U};
    SharedCache<LayerKey, GlyphLayers> Layers{size_t{32} << 20U};

    void BeginFrame() {
        Masks.BeginFrame();
        Layers.BeginFrame();
    }
    void Clear() {
        Masks.Clear();
        Layers.Clear();
    }
};

/// How a build uses the caches; without any, everything is made anew.
struct CacheAccess {
    GlyphCaches* Caches = nullptr;
    CacheUse Use = CacheUse::kLasting;
};

}  // namespace captionfx
