// Pictures of at most 256 colours, one of which is none: what a GIF can show.
#pragma once

#include "tools/argument_values.h"
#include "tools/video/av_handles.h"

namespace captionfx {

/// Each picture gets its own palette, of colours chosen from it, so that one with few colours keeps them all. Alpha has
/// one bit: what is at least half there is opaque.
class PaletteFilter {
public:
    PaletteFilter(FrameSize size, AVRational timeBase);

    /// A frame of blue, green, red and alpha with its time. Its pixels are read, not kept.
    void Put(const AVFrame& frame);
    /// After the last frame.
    void End();
    /// The next frame that is ready, or none.
    [[nodiscard]] AvFrameHandle Take();

private:
    AvGraphHandle graph_;
    AVFilterContext* source_ = nullptr;
    AVFilterContext* sink_ = nullptr;
};

}  // namespace captionfx
