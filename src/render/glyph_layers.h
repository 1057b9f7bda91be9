// The layers of one character: from the document's styles to the pictures of face, border and shadow.
#pragma once

#include "host/document.h"
#include "render/glyph_caches.h"
#include "render/glyph_raster.h"
#include "render/image_utility_ops.h"

namespace captionfx {

/// Builds the layers that `layers.DirtyMask` names for a character of `string`, and clears the mask. `transform` scales
/// and rotates the glyph; the layers' offset from the character's position follows the string's own rotation alone.
///
/// Returns 1, also when nothing was dirty. Returns 0, with all pixels freed, for an index out of range, a scale that is
/// not above 0, a character without a shape (which is then clean), or memory that ran out (which stays dirty).
///
/// With caches, which go with one `ops`, layers come from there where they have been built before.
int32_t BuildGlyphLayers(const GlyphSettings& settings, ImageUtilityOps& ops, const MetaString& string,
                         int32_t character, GlyphLayers& layers, const GlyphTransform& transform,
                         CacheAccess access = {});

}  // namespace captionfx
