// Frames drawn by several titles at once and delivered in order.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "tools/frame_painter.h"

namespace captionfx {

struct Frame {
    float seconds = 0.0F;  ///< Of the title.
    int64_t time = 0;      ///< Whatever the one who delivers wants to know.
    std::vector<uint32_t> pixels;
};

/// Draws every frame that `fill` gives, which sets its times and its ground and returns false at the end, and hands it
/// to `deliver`. Both are called on the caller's thread and in order. With one painter all is done there, frame by
/// frame; with more each has a thread of its own, and at most two frames a painter are under way. The pixels are the
/// same. Throws what one of them throws, after the threads have ended.
void DrawInOrder(std::vector<FramePainter>& painters, size_t pixelsOfFrame, const std::function<bool(Frame&)>& fill,
                 const std::function<void(const Frame&)>& deliver);

}  // namespace captionfx
