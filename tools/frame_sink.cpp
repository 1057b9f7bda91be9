#include "tools/frame_sink.h"

#include <filesystem>
#include <utility>

#include "tools/frame_times.h"
#include "tools/png_file.h"
#include "tools/text_encoding.h"

namespace captionfx {

PictureSequence::PictureSequence(std::string pattern, FrameSize size) : pattern_(std::move(pattern)), size_(size) {
    const std::filesystem::path folder = PathFromUtf8(pattern_).parent_path();
    if (!folder.empty()) std::filesystem::create_directories(folder);
}

void PictureSequence::Put(const Frame& frame) {
    WritePng(FrameFile(pattern_, count_++), frame.pixels, size_.width, size_.height);
}

}  // namespace captionfx
