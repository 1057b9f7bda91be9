// The road of a frame: from a time to the finished title in the host's buffer.
#pragma once

#include "render/frame_title.h"

namespace captionfx {

/// Draws the title at `time` onto `destination`, which has the frame's size. Returns 0, kTitleInvalidArgument for a
/// null destination, or kTitleOutOfMemory when planes cannot be had.
int32_t RenderFrame(const FrameTitle& title, uint32_t* destination, float time);

/// Frees everything that can be rebuilt.
void FlushRenderCaches(const FrameTitle& title);

}  // namespace captionfx
