// Drawing of strings into their planes: the plain road, and the only one where whole planes are needed, for image
// effects and the filter.
#pragma once

#include "render/placed_string.h"

namespace captionfx {

/// Builds the layers of all characters and draws them into their strings' planes, which are cleared first. DirtyRect of
/// each string becomes what they touched, within `clip`, which lies in the frame.
void DrawOnPlanes(const FrameTitle& title, std::vector<PlacedString>& strings, const TitleRect& clip);

}  // namespace captionfx
