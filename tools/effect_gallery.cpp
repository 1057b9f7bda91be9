#include "tools/effect_gallery.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tools/canvas.h"
#include "tools/film.h"
#include "tools/gallery_page.h"
#include "tools/interrupt.h"
#include "tools/output_file.h"
#include "tools/progress.h"
#include "tools/sheet_text.h"

namespace captionfx {
namespace {

constexpr Rgb kGround{38, 42, 49};
constexpr float kRate = 20.0F;
constexpr int32_t kMovingFrames = 30, kRestingFrames = 14;

std::string PictureName(std::string_view effect) {
    return std::string(effect) + ".webp";
}

/// The frames of one effect: from not there yet to at rest, and a while of rest.
std::vector<Canvas> DrawLoop(SamplePainter& sample, const EffectInfo& effect, FrameSize cell) {
    std::vector<Canvas> frames;
    for (int32_t i = 0; i <= kMovingFrames; ++i) {
        ThrowIfInterrupted();
        sample.Draw(frames.emplace_back(cell, kGround), {0, 0, cell.width, cell.height}, effect,
                    static_cast<float>(i) / kMovingFrames);
    }
    return frames;
}

/// An effect that the library does not have draws the same at every progress.
bool IsMoving(const std::vector<Canvas>& frames) {
    return std::ranges::any_of(
        frames, [&](const Canvas& frame) { return !std::ranges::equal(frame.Pixels(), frames.front().Pixels()); });
}

void WriteLoop(const std::vector<Canvas>& frames, FrameSize cell, const std::filesystem::path& picture) {
    const std::unique_ptr<FrameSink> film =
        MakeFilm(picture, "", {.size = cell, .isTransparent = false, .rate = kRate});
    for (int32_t i = 0; i < kMovingFrames + kRestingFrames; ++i) {
        const auto pixels = frames[static_cast<size_t>(std::min(i, kMovingFrames))].Pixels();
        film->Put({.time = i, .pixels = {pixels.begin(), pixels.end()}});
    }
    film->Finish();
}

}  // namespace

void WriteEffectGallery(std::span<const EffectInfo> effects, const SheetLook& look, const std::filesystem::path& folder,
                        bool isQuiet) {
    CheckFilmName(folder / PictureName("effect"), "");
    std::filesystem::create_directories(folder);
    SamplePainter sample(look);
    if (!sample.HasInk()) throw std::runtime_error("the text of the gallery leaves nothing to be seen");
    Progress progress(ProgressStyleOf(isQuiet), std::ssize(effects));
    std::vector<GalleryEntry> entries;
    for (const EffectInfo& effect : effects) {
        const std::vector<Canvas> frames = DrawLoop(sample, effect, look.cell);
        GalleryEntry& entry = entries.emplace_back(GalleryEntry{.effect = effect, .picture = ""});
        if (IsMoving(frames)) {
            entry.picture = PictureName(effect.name);
            WriteLoop(frames, look.cell, folder / entry.picture);
        }
        progress.Advance();
    }
    const std::string page = GalleryPage(entries, look.cell);
    OutputFile file(folder / "index.html");
    file.Write(page.data(), page.size());
    file.Finish();
    progress.Finish();
}

}  // namespace captionfx
