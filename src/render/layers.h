// Layers: a coverage mask becomes a coloured picture of a character's face, border or shadow.
#pragma once

#include "host/document.h"
#include "render/border.h"
#include "render/coverage_mask.h"
#include "render/image_utility_ops.h"

namespace captionfx {

/// What the layers of one character share.
struct LayerSettings {
    const TitleRenderSettings& Render;
    ImageUtilityOps& Ops;
    float SizeRatio;  ///< Of the character's font.
    LayerForm Form =
        LayerForm::kPixels;  ///< kCoverage only with the built-in operations, whose blur it has of its own.
};

/// A style's size in pixels from `product`, the size times SizeRatio times a scale: ten are one eighth of the font's
/// size. The small addend keeps a whole radius from being cut to the one below.
[[nodiscard]] float StyleRadius(float product);

// Each builder takes a layer without pixels whose X and Y are the position of the mask it is given, and makes pixels,
// size and final position. A style that is off gives a layer without pixels. Each returns 1, or 0 when the layer would
// be too large.
int32_t BuildFaceLayer(const LayerSettings& settings, GlyphBitmap& layer, const CoverageMask& glyph,
                       const MetaFace& style);
int32_t BuildBorderLayer(const LayerSettings& settings, GlyphBitmap& layer, const CoverageMask& ring,
                         const MetaBorder& style);
int32_t BuildShadowLayer(const LayerSettings& settings, GlyphBitmap& layer, const CoverageMask& glyph,
                         const BorderMasks& border, const MetaShadow& style);

/// Raises the alpha of `layer` to mask times (alpha + 1) / 256 where the mask, laid at (x, y) cut to whole pixels,
/// covers it. Colour stays, and so does what lies outside.
void StampShadowAlpha(GlyphBitmap& layer, const CoverageMask& mask, float x, float y, uint32_t alpha);

}  // namespace captionfx
