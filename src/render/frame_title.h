// What a frame reads and writes of its title.
#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include "host/document.h"
#include "paths/path_manager.h"
#include "platform/font_system.h"
#include "platform/page_memory.h"
#include "render/band_planes.h"
#include "render/frame_workers.h"
#include "render/glyph_raster.h"
#include "render/image_utility.h"
#include "render/kernels/row_kernels.h"

namespace captionfx {

/// What is kept from one frame to the next.
struct FrameCache {
    TitleRect FrameDirtyRect{};  ///< Touched by the last frame.
    TitleRect SavedDirtyRect{};  ///< Where SavedFrame has content.
    bool SavedFrameValid = false;
    std::atomic<bool> HasLostLayers{
        false};  ///< In this frame memory was too short for a character: it must not be kept.
    std::unique_ptr<uint32_t[]> SavedFrame;  ///< The last string of a frame at rest, colour multiplied by alpha.
    BandPlanes Planes;

    void FreeSavedFrame() {
        SavedFrame.reset();
        SavedFrameValid = false;
    }
};

struct FrameTitle {
    const TitleRenderSettings& Settings;
    bool VerticalTitle;  ///< The direction of the default string.
    std::vector<MetaString>& Strings;
    CPathManager& Paths;
    ImageUtilityOps& Ops;
    FontSystem& Fonts;
    PageMemory& Pages;
    FrameCache& Cache;
    CThreadPool& Pool;
    int32_t CpuCount;

    /// Whether the image operations are our own, so that what they do may be done in another way.
    [[nodiscard]] bool HasBuiltInOps() const { return &Ops == &BuiltInImageUtility(); }
    [[nodiscard]] const RowKernels& Kernels() const { return HasBuiltInOps() ? BestRowKernels() : PlainRowKernels(); }
    [[nodiscard]] GlyphSettings Glyphs() const {
        return {Fonts, Settings, VerticalTitle, HasBuiltInOps() ? LayerForm::kCoverage : LayerForm::kPixels};
    }
    [[nodiscard]] TitleRect Frame() const { return {0, 0, Settings.Width, Settings.Height}; }

    /// One thread unless both the host and the machine have several; more than kMostThreads help nobody.
    [[nodiscard]] FrameWorkers Workers() const {
        constexpr int32_t kMostThreads = 64;
        return {Pool, Settings.MaxThreads < 2 || CpuCount < 2 ? 1 : std::min(Settings.MaxThreads, kMostThreads)};
    }
};

/// Whether a string's image goes through an effect. One whose object could not be made leaves its string to the road of
/// characters.
[[nodiscard]] inline bool IsImageStage(const FrameTitle& title, const MetaString& string) {
    return string.PathObject && title.Paths.IsImageBased(TextOf(string.PathID)) != 0;
}

}  // namespace captionfx
