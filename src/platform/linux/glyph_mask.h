// Draws glyph outlines as coverage masks under a matrix, with GDI's boxes and levels.
#pragma once

#include <optional>

#include "platform/font_system.h"
#include "platform/linux/glyph_outline.h"

namespace captionfx {

/// The mask of an outline under `matrix`, slanted first if `oblique`. Nothing for an outline without shape, a matrix
/// that leaves no area, and a mask too large to be meant (a side above 32767 pixels, or more than 2^26 pixels).
[[nodiscard]] std::optional<GlyphCoverage> DrawGlyphMask(const GlyphOutline& outline, const GlyphMatrix& matrix,
                                                         bool oblique, GlyphFormat format);

}  // namespace captionfx
