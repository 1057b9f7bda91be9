// From a character to the coverage of its shape, scaled and rotated by the platform.
#pragma once

#include "host/document.h"
#include "platform/font_system.h"
#include "render/coverage_mask.h"

namespace captionfx {

/// What all glyphs of a title share.
struct GlyphSettings {
    FontSystem& Fonts;
    const TitleRenderSettings& Render;
    bool VerticalTitle;  ///< The direction of the title's default string, which counts here, not that of the string.
    LayerForm Form = LayerForm::kPixels;
};

/// Scale factors and clockwise rotation of one character.
struct GlyphTransform {
    float ScaleX, ScaleY;
    float RotationDeg;
};

struct RasterizedGlyph {
    CoverageMask Mask;
    float OriginX, OriginY;  ///< Upper left corner from the character's base point, pixels, y upward.
};

/// The matrix that takes a glyph of kEmSize to its size in the frame.
[[nodiscard]] GlyphMatrix MatrixOf(const GlyphSettings& settings, const MetaFont& font, char16_t unit,
                                   const GlyphTransform& transform);

/// Nothing where there is no shape: a space, a degenerate matrix.
[[nodiscard]] std::optional<RasterizedGlyph> RasterizeGlyph(const GlyphSettings& settings, char16_t unit,
                                                            const MetaFont& font, const GlyphTransform& transform);

}  // namespace captionfx
