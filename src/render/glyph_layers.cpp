#include "render/glyph_layers.h"

#include <memory>
#include <new>
#include <utility>

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

/// One character's build: its records and what it asks the caches for.
class CharacterBuild {
public:
    CharacterBuild(const GlyphSettings& settings, ImageUtilityOps& ops, const MetaString& string, int32_t character,
                   const GlyphTransform& transform, CacheAccess access)
        : settings_(settings),
          ops_(ops),
          string_(string),
          character_(At(string.Characters, character)),
          font_(At(string.Fonts, character_.FontIndex)),
          face_(At(string.Faces, character_.FaceIndex)),
          border_(At(string.Borders, character_.BorderIndex)),
          shadow_(At(string.Shadows, character_.ShadowIndex)),
          transform_(transform),
          access_(access) {}

    /// Returns whether there is a shape.
    bool Run(GlyphLayers& layers) const {
        const MaskKey maskKey = MaskKeyOf(layers.DirtyMask);
        if (access_.Caches == nullptr || layers.DirtyMask != kAllLayersDirty) return Build(layers, maskKey);
        const LayerKey layerKey = LayerKeyOf(maskKey);
        const BodyKey bodyKey{layerKey, face_, border_};
        const ShadowKey shadowKey{layerKey, shadow_};
        const auto body = access_.Caches->Bodies.Find(bodyKey);
        const auto shadow = access_.Caches->Shadows.Find(shadowKey);
        layers.DirtyMask = static_cast<uint8_t>((body ? 0 : kFaceDirty | kBorderDirty) | (shadow ? 0 : kShadowDirty));
        if (layers.DirtyMask != 0) Build(layers, maskKey);
        if (body) {
            layers.Face = body->Face;
            layers.Border = body->Border;
        } else {
            Remember(access_.Caches->Bodies, bodyKey, BodyLayers{layers.Face, layers.Border});
        }
        if (shadow) {
            layers.Shadow = *shadow;
        } else {
            Remember(access_.Caches->Shadows, shadowKey, layers.Shadow);
        }
        return !layers.Face.IsAbsent() || !layers.Border.IsAbsent() || !layers.Shadow.IsAbsent();
    }

private:
    [[nodiscard]] char16_t Unit() const { return static_cast<char16_t>(character_.Value); }

    [[nodiscard]] MaskKey MaskKeyOf(uint8_t dirtyMask) const {
        const bool needsBorder = ((dirtyMask & kBorderDirty) != 0 && border_.Enable != 0 && border_.Size >= 0) ||
                                 ((dirtyMask & kShadowDirty) != 0 && shadow_.EnableBorder != 0);
        const BorderRadii radii = needsBorder ? Radii() : BorderRadii{};
        return {.LogFont = font_.LogFont,
                .Matrix = MatrixOf(settings_, font_, Unit(), transform_),
                .Unit = Unit(),
                .AntialiasMode = settings_.Render.AntialiasMode,
                .RadiusX = radii.X,
                .RadiusY = radii.Y,
                .HasBorder = needsBorder ? 1 : 0};
    }

    [[nodiscard]] LayerKey LayerKeyOf(const MaskKey& masks) const {
        return {.Masks = masks,
                .PixelFormat = settings_.Render.PixelFormat,
                .SizeRatio = font_.SizeRatio,
                .Ascent = font_.Ascent,
                .ScaleX = settings_.Render.ScaleX,
                .ScaleY = settings_.Render.ScaleY,
                .WidthScale = character_.WidthScale,
                .RotateSin = string_.RotateSin,
                .RotateCos = string_.RotateCos};
    }

    /// Layers that are built stay so when there is no memory for the cache.
    template <class Key, class Value>
    void Remember(SharedCache<Key, Value>& cache, const Key& key, const Value& value) const try {
        if (!cache.IsWanted(key, access_.Use)) return;
        auto shared = std::make_shared<Value>(value);
        const size_t bytes = sizeof *shared + value.Size();
        cache.Insert(key, std::move(shared), bytes);
    } catch (const std::bad_alloc&) {
    }

    [[nodiscard]] BorderRadii Radii() const {
        return BorderRadiiOf(border_, font_, settings_.Render, character_.WidthScale);
    }

    [[nodiscard]] std::shared_ptr<const GlyphMasks> Masks(const MaskKey& key) const {
        if (access_.Caches != nullptr) {
            if (auto known = access_.Caches->Masks.Find(key)) return known;
        }
        auto masks = std::make_shared<GlyphMasks>();
        masks->Glyph = RasterizeGlyph(settings_, Unit(), font_, transform_);
        if (masks->Glyph) {
            masks->Border =
                key.HasBorder != 0 ? MakeBorderMasks(masks->Glyph->Mask, key.RadiusX, key.RadiusY) : BorderMasks{};
        }
        if (access_.Caches != nullptr && access_.Caches->Masks.IsWanted(key, access_.Use)) {
            access_.Caches->Masks.Insert(key, masks, SizeOf(*masks));
        }
        return masks;
    }

    static size_t SizeOf(const GlyphMasks& masks) {
        size_t bytes = sizeof masks;
        if (masks.Glyph) bytes += masks.Glyph->Mask.Bytes.capacity();
        if (masks.Border) bytes += masks.Border->Ring.Bytes.capacity() + masks.Border->Dilated.Bytes.capacity();
        return bytes;
    }

    bool Build(GlyphLayers& layers, const MaskKey& key) const {
        const std::shared_ptr<const GlyphMasks> masks = Masks(key);
        if (masks->Glyph) {
            BuildDirty(layers, *masks->Glyph, masks->Border);
        } else {
            layers.FreePixels();
        }
        layers.DirtyMask = 0;
        return masks->Glyph.has_value();
    }

    void BuildDirty(GlyphLayers& layers, const RasterizedGlyph& glyph, const std::optional<BorderMasks>& masks) const {
        const LayerSettings layerSettings{settings_.Render, ops_, font_.SizeRatio, settings_.Form};
        const auto [x, y] = PositionOf(string_, font_, settings_.Render.ScaleY, glyph);
        const BorderRadii radii = Radii();
        const auto reachX = static_cast<float>(ReachOf(radii.X)), reachY = static_cast<float>(ReachOf(radii.Y));
        if ((layers.DirtyMask & kShadowDirty) != 0) {
            const bool isBorderCast = shadow_.EnableBorder != 0;
            layers.Shadow = isBorderCast ? LayerAt(x - reachX, y - reachY) : LayerAt(x, y);
            if (masks) BuildShadowLayer(layerSettings, layers.Shadow, glyph.Mask, *masks, shadow_);
        }
        if ((layers.DirtyMask & kBorderDirty) != 0) {
            layers.Border = LayerAt(x - reachX, y - reachY);
            if (masks) BuildBorderLayer(layerSettings, layers.Border, masks->Ring, border_);
        }
        if ((layers.DirtyMask & kFaceDirty) != 0) {
            layers.Face = LayerAt(x, y);
            BuildFaceLayer(layerSettings, layers.Face, glyph.Mask, face_);
        }
    }

    const GlyphSettings& settings_;
    ImageUtilityOps& ops_;
    const MetaString& string_;
    const MetaCharacter& character_;
    const MetaFont& font_;
    const MetaFace& face_;
    const MetaBorder& border_;
    const MetaShadow& shadow_;
    const GlyphTransform& transform_;
    CacheAccess access_;
};

}  // namespace

int32_t BuildGlyphLayers(const GlyphSettings& settings, ImageUtilityOps& ops, const MetaString& string,
                         int32_t character, GlyphLayers& layers, const GlyphTransform& transform, CacheAccess access) {
    const bool isGood = IsIndexOf(string.Characters, character) && transform.ScaleX > 0 && transform.ScaleY > 0;
    if (!isGood) {
        layers.FreePixels();
        return 0;
    }
    if (layers.DirtyMask == 0) return 1;
    try {
        return CharacterBuild(settings, ops, string, character, transform, access).Run(layers) ? 1 : 0;
    } catch (const std::bad_alloc&) {
        // All are gone, also those that were not dirty or that the cache had: the next build must bring all of them.
        layers.FreePixels();
        layers.DirtyMask = kAllLayersDirty;
        return 0;
    }
}

}  // namespace captionfx
