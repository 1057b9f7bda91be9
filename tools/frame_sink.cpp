#include "tools/frame_sink.h"

#include <algorithm>
#include <utility>

#include "tools/console.h"
#include "tools/frame_times.h"
#include "tools/png_file.h"

namespace captionfx {

PictureSequence::PictureSequence(std::string pattern, FrameSize size) : pattern_(std::move(pattern)), size_(size) {
    const std::filesystem::path folder = std::filesystem::path(pattern_).parent_path();
    if (!folder.empty()) std::filesystem::create_directories(folder);
}

void PictureSequence::Put(const Frame& frame) {
    WritePng(FrameFile(pattern_, count_++), frame.pixels, size_.width, size_.height);
}

void Film::Put(const Frame& frame) {
    constexpr auto isHalfThere = [](uint32_t pixel) { return pixel >> 24 != 0 && pixel >> 24 != 0xFF; };
    if (hasHardAlpha_ && !hasLostAlpha_) hasLostAlpha_ = std::ranges::any_of(frame.pixels, isHalfThere);
    writer_.Write(frame.pixels, frame.time);
}

void Film::Finish() {
    writer_.Finish();
    if (hasLostAlpha_)
        PrintLine("note: a GIF knows no half-transparent pixels: soft edges became hard; --background keeps them soft");
}

}  // namespace captionfx
