// Drawing of a string's characters into its planes.
#pragma once

#include "render/frame_title.h"

namespace captionfx {

/// Builds the cached layers of a string that are dirty.
void RefreshCachedLayers(const FrameTitle& title, MetaString& string);

/// Places all characters of a string for its PathID and PathProgress and draws them into its planes, which are cleared
/// first. DirtyRect becomes what they touched, within `clip`, which lies in the frame. A string without PathID draws
/// nothing.
void DrawString(const FrameTitle& title, MetaString& string, const TitleRect& clip);

}  // namespace captionfx
