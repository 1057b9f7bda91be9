// Drawing into the planes of a string: bilinear placement of layers, and the merge of face over border.
#pragma once

#include "host/caption_fx.h"
#include "render/glyph_bitmap.h"

namespace captionfx {

/// A frame-sized picture, row pitch width times 4, colour multiplied by alpha.
struct PlaneView {
    uint32_t* Pixels;
    int32_t Width, Height;
};

/// Places `bitmap`, straight alpha, at (x, y), plane pixels, which need not be whole, within `clip` and the plane.
/// Alpha is 1 to 255. Returns 1, or 0 for an absent bitmap, a plane of no size or an alpha below 1.
///
/// Three things must stay as they are, since frames of all versions rely on them: the weights add up to a little less
/// than 1, so that a solid pixel comes out as 254; a whole position at or below 0 lands one pixel farther right (down)
/// than one above 0 and loses the bitmap's last column (row); and the colour of a pixel is the plain mean of the
/// samples that have alpha, whatever their weights.
int32_t DrawGlyphBitmap(const PlaneView& plane, const TitleRect& clip, const GlyphBitmap& bitmap, float x, float y,
                        uint32_t alpha);

/// Lays the face plane over the border plane within `rect`, which lies in the planes.
void MergeFaceOverBorder(const PlaneView& border, const PlaneView& face, const TitleRect& rect);

}  // namespace captionfx
