// A frame drawn tile by tile, in bands of rows: all planes of a tile are drawn, merged and composited before the next
// one is looked at, so that they stay in the processor's cache, and a plane is never larger than a tile.
#pragma once

#include "render/placed_string.h"

namespace captionfx {

/// Whether this road gives the bytes of the one over whole planes: with our own image operations, no filter, no image
/// effect.
[[nodiscard]] bool CanDrawInBands(const FrameTitle& title);

/// Draws strings whose layers are built into `destination`, within the rectangle of the cache's FrameDirtyRect. Where
/// `kept` is not null it becomes, in the same rectangle, the image of the last string.
void DrawInBands(const FrameTitle& title, std::vector<PlacedString>& strings, uint32_t* destination, uint32_t* kept);

}  // namespace captionfx
