// Drawing of a title's characters into the planes of their strings.
#pragma once

#include "render/frame_title.h"

namespace captionfx {

/// Builds the cached layers that are dirty, of all strings as one batch.
void RefreshCachedLayers(const FrameTitle& title);

/// Places all characters of all strings for their PathID and PathProgress and draws them into the strings' planes,
/// which are cleared first. DirtyRect of each string becomes what they touched, within `clip`, which lies in the frame.
/// A string without PathID draws nothing.
void DrawStrings(const FrameTitle& title, const TitleRect& clip);

}  // namespace captionfx
