// Frames and caches of a title.
#include "host/guarded.h"
#include "host/title_object.h"
#include "render/frame_renderer.h"

namespace captionfx {

FrameTitle CCaptionFx::Frame() {
    return {.Settings = settings_,
            .VerticalTitle = defaults_.DefaultString.Vertical != 0,
            .Strings = strings_,
            .Paths = paths_,
            .Ops = imageUtility_.Ops(),
            .Fonts = services_.Fonts(),
            .Pages = services_.Pages(),
            .Cache = cache_,
            .Pool = threadPool_,
            .CpuCount = cpuCount_};
}

int32_t CCaptionFx::RenderFrame(uint32_t* destination, float time) noexcept {
    return Guarded([&] { return captionfx::RenderFrame(Frame(), destination, time); });
}

int32_t CCaptionFx::GetFrameDirtyRect(TitleRect* rect) noexcept {
    if (rect == nullptr) return kTitleNullPointer;
    *rect = cache_.FrameDirtyRect;
    return kTitleOk;
}

int32_t CCaptionFx::FlushRenderCaches() noexcept {
    captionfx::FlushRenderCaches(Frame());
    return kTitleOk;
}

}  // namespace captionfx
