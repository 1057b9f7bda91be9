#include "render/glyph_layers.h"

#include <new>

#include "render/layers.h"

namespace captionfx {
namespace {

struct Position {
    float X, Y;
};

/// Where the mask lies from the character's upper left corner: its base point is the ascent below it, turned with the
/// string.
Position PositionOf(const MetaString& string, const MetaFont& font, float scaleY, const RasterizedGlyph& glyph) {
    const float ascent = font.Ascent * scaleY;
    return {glyph.OriginX + ascent * string.RotateSin, ascent * string.RotateCos - glyph.OriginY};
}

struct BorderRadii {
    float X = 0, Y = 0;
};

BorderRadii BorderRadiiOf(const MetaBorder& style, const MetaFont& font, const TitleRenderSettings& render,
                          float widthScale) {
    if (style.Size <= 0) return {};
    const float size = static_cast<float>(style.Size) * font.SizeRatio;
    return {StyleRadius(size * render.ScaleX * widthScale), StyleRadius(size * render.ScaleY)};
}

/// A layer without pixels at a position; the old one's pixels are gone.
GlyphBitmap LayerAt(float x, float y) {
    GlyphBitmap layer;
    layer.X = x;
    layer.Y = y;
    return layer;
}

void BuildDirtyLayers(const GlyphSettings& settings, ImageUtilityOps& ops, const MetaString& string,
                      const MetaCharacter& character, const RasterizedGlyph& glyph, GlyphLayers& layers) {
    const MetaFont& font = At(string.Fonts, character.FontIndex);
    const MetaBorder& border = At(string.Borders, character.BorderIndex);
    const MetaShadow& shadow = At(string.Shadows, character.ShadowIndex);
    const LayerSettings layerSettings{settings.Render, ops, font.SizeRatio, settings.Form};
    const auto [x, y] = PositionOf(string, font, settings.Render.ScaleY, glyph);

    const BorderRadii radii = BorderRadiiOf(border, font, settings.Render, character.WidthScale);
    const auto reachX = static_cast<float>(ReachOf(radii.X)), reachY = static_cast<float>(ReachOf(radii.Y));
    const bool needsMasks = ((layers.DirtyMask & kBorderDirty) != 0 && border.Enable != 0 && border.Size >= 0) ||
                            ((layers.DirtyMask & kShadowDirty) != 0 && shadow.EnableBorder != 0);
    const std::optional<BorderMasks> masks = needsMasks ? MakeBorderMasks(glyph.Mask, radii.X, radii.Y) : BorderMasks{};
    if ((layers.DirtyMask & kShadowDirty) != 0) {
        const bool isBorderCast = shadow.EnableBorder != 0;
        layers.Shadow = isBorderCast ? LayerAt(x - reachX, y - reachY) : LayerAt(x, y);
        if (masks) BuildShadowLayer(layerSettings, layers.Shadow, glyph.Mask, *masks, shadow);
    }
    if ((layers.DirtyMask & kBorderDirty) != 0) {
        layers.Border = LayerAt(x - reachX, y - reachY);
        if (masks) BuildBorderLayer(layerSettings, layers.Border, masks->Ring, border);
    }
    if ((layers.DirtyMask & kFaceDirty) != 0) {
        layers.Face = LayerAt(x, y);
        BuildFaceLayer(layerSettings, layers.Face, glyph.Mask, At(string.Faces, character.FaceIndex));
    }
}

}  // namespace

int32_t BuildGlyphLayers(const GlyphSettings& settings, ImageUtilityOps& ops, const MetaString& string,
                         int32_t character, GlyphLayers& layers, const GlyphTransform& transform) {
    const bool isGood = IsIndexOf(string.Characters, character) && transform.ScaleX > 0 && transform.ScaleY > 0;
    if (!isGood) {
        layers.FreePixels();
        return 0;
    }
    if (layers.DirtyMask == 0) return 1;
    try {
        const MetaCharacter& record = At(string.Characters, character);
        const std::optional<RasterizedGlyph> glyph = RasterizeGlyph(settings, static_cast<char16_t>(record.Value),
                                                                    At(string.Fonts, record.FontIndex), transform);
        if (glyph) {
            BuildDirtyLayers(settings, ops, string, record, *glyph, layers);
        } else {
            layers.FreePixels();
        }
        layers.DirtyMask = 0;
        return glyph ? 1 : 0;
    } catch (const std::bad_alloc&) {
        layers.FreePixels();
        return 0;
    }
}

}  // namespace captionfx
