// Drawing into the planes of a string: bilinear placement of layers, and the merge of face over border.
#pragma once

#include <optional>

#include "host/caption_fx.h"
#include "render/glyph_bitmap.h"
#include "render/kernels/channel_kernels.h"
#include "render/kernels/row_kernels.h"

namespace captionfx {

/// A picture of the frame's size, colour multiplied by alpha.
struct PlaneView {
    uint32_t* Pixels;
    int32_t Width, Height;

    [[nodiscard]] uint32_t* Row(int32_t y) const { return Pixels + std::ptrdiff_t{y} * Width; }
};

/// A part of the frame, channel by channel.
struct TileView {
    ChannelPlane Plane;  ///< Of the rectangle's size, and padded.
    TitleRect Rect;      ///< Of the frame.
};

/// A layer on its place in the frame.
struct PlacedLayer {
    const GlyphBitmap* Bitmap;
    const CoverageLayer* Coverage;  ///< What is drawn of a bitmap of one colour; null for pixels.
    /// Owns Coverage where the bitmap does not: a second pass of the character may let go of what it kept.
    std::shared_ptr<const CoverageLayer> Owner{};
    int64_t Column, Row;          ///< Of the frame, where the layer's first pixel lies, or the one before it.
    TitleRect Rect;               ///< The pixels that it may change.
    uint32_t W00, W10, W01, W11;  ///< Weights of the four samples of a pixel, 16.16.
    uint32_t Alpha;               ///< 1 to 255.
};

/// False for a bitmap at (x, y), finite frame pixels, that is not within `limit` by more than a pixel: a quick look for
/// the many characters of a long title that are out of the frame.
[[nodiscard]] bool MayTouch(const GlyphBitmap& bitmap, float x, float y, const TitleRect& limit);

/// Places `bitmap` at (x, y), frame pixels, which need not be whole, within `limit`. Nothing for one that is absent,
/// not seen, or not within. Alpha is 0 to 255.
///
/// Three things must stay as they are, since frames of all versions rely on them: the weights add up to a little less
/// than 1, so that a solid pixel comes out as 254; a whole position at or below 0 lands one pixel farther right (down)
/// than one above 0 and loses the bitmap's last column (row); and the colour of a pixel is the plain mean of the
/// samples that have alpha, whatever their weights.
[[nodiscard]] std::optional<PlacedLayer> PlaceLayer(const GlyphBitmap& bitmap, float x, float y, uint32_t alpha,
                                                    const TitleRect& limit);

/// Draws what of a layer lies in a tile; its plane must be laid out for the layer's colours.
void DrawLayer(const TileView& tile, const PlacedLayer& layer);

/// What StillCoverage keeps: the pixels' coverage of a placed layer, with a column and a row more than it.
[[nodiscard]] std::shared_ptr<const CoverageLayer> ResampledCoverage(const PlacedLayer& layer);

/// PlaceLayer and DrawLayer within `clip`. Returns 1, or 0 for an absent bitmap, a plane of no size or an alpha
/// below 1.
int32_t DrawGlyphBitmap(const PlaneView& plane, const TitleRect& clip, const GlyphBitmap& bitmap, float x, float y,
                        uint32_t alpha, const RowKernels& kernels = PlainRowKernels());

/// Lays the face plane over the border plane within `rect`, which lies in the planes.
void MergeFaceOverBorder(const PlaneView& border, const PlaneView& face, const TitleRect& rect,
                         const RowKernels& kernels = PlainRowKernels());

}  // namespace captionfx
