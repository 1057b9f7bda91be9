// The formats that a sequence of frames can be written in, one row each.
#pragma once

#include <filesystem>
#include <string_view>

#include "tools/video/av_handles.h"

namespace captionfx {

struct OutputFormat {
    std::string_view ending;  ///< Of its files, without the dot; "-" for standard output.
    std::string_view name;    ///< What --format calls it.
    const char* muxer;        ///< libav's names.
    const char* encoder;
    AVPixelFormat opaque;
    AVPixelFormat transparent;  ///< AV_PIX_FMT_NONE where it has no alpha.
    const char* encoderOptions;
    const char* muxerOptions;
    bool needsEvenSides = false;
    bool isOneBitAlpha = false;
};

/// The format of a file name, or of standard output, which is "-". `name` chooses where there are several; it may be
/// empty for a file. Throws std::runtime_error with what there is.
[[nodiscard]] const OutputFormat& FormatOf(const std::filesystem::path& output, std::string_view name);

}  // namespace captionfx
