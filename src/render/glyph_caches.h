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

/// What all layers of a character depend on.
struct LayerKey {
    MaskKey Masks;
    int32_t PixelFormat;
    float SizeRatio, Ascent, ScaleX, ScaleY, WidthScale, RotateSin, RotateCos;
};

/// What a face and a border depend on.
struct BodyKey {
    LayerKey Layer;
    MetaFace Face;
    MetaBorder Border;
};

/// What a shadow depends on. The border's size, which may be its shape's, is in the masks' radii.
struct ShadowKey {
    LayerKey Layer;
    MetaShadow Shadow;
};
static_assert(sizeof(BodyKey) == sizeof(LayerKey) + sizeof(MetaFace) + sizeof(MetaBorder) &&
                  sizeof(ShadowKey) == sizeof(LayerKey) + sizeof(MetaShadow) &&
                  sizeof(LayerKey) == sizeof(LogFont) + sizeof(GlyphMatrix) + size_t{13} * 4,
              "no padding, since keys are compared as bytes");

/// A face and a border.
struct BodyLayers {
    GlyphBitmap Face, Border;

    [[nodiscard]] size_t Size() const { return Face.Size() + Border.Size(); }
};

/// A glyph and, where they are needed, its border's masks.
struct GlyphMasks {
    std::optional<RasterizedGlyph> Glyph;  ///< Nothing for a character without a shape.
    std::optional<BorderMasks> Border;     ///< Nothing for one that would be too large.
};

/// Of one title.
struct GlyphCaches {
    SharedCache<MaskKey, GlyphMasks> Masks{size_t{16} << 20U};
    SharedCache<BodyKey, BodyLayers> Bodies{size_t{16} << 20U};
    SharedCache<ShadowKey, GlyphBitmap> Shadows{size_t{16} << 20U};

    void BeginFrame() {
        Masks.BeginFrame();
        Bodies.BeginFrame();
        Shadows.BeginFrame();
    }
    void Clear() {
        Masks.Clear();
        Bodies.Clear();
        Shadows.Clear();
    }
};

/// How a build uses the caches; without any, everything is made anew.
struct CacheAccess {
    GlyphCaches* Caches = nullptr;
    CacheUse Use = CacheUse::kLasting;
};

}  // namespace captionfx
