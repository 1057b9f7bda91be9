#include "tools/video/output_format.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <stdexcept>
#include <string>

namespace captionfx {
namespace {

constexpr AVPixelFormat kNoAlpha = AV_PIX_FMT_NONE;
constexpr bool kEvenSides = true, kOneBitAlpha = true;

// The first row of an ending is what a file gets without --format. Pictures and `animation` are lossless, but for the
// colours of a GIF; the others are tuned for the eye, since sharp edges of letters cost little.
// clang-format off
constexpr std::array kFormats = {
    OutputFormat{"apng", "apng", "apng", "apng", AV_PIX_FMT_RGB24, AV_PIX_FMT_RGBA, "pred=mixed", "plays=0"},
    OutputFormat{"webp", "webp", "webp", "libwebp_anim", AV_PIX_FMT_BGRA, AV_PIX_FMT_BGRA, "lossless=1:quality=75", "loop=0"},
    OutputFormat{"gif", "gif", "gif", "gif", AV_PIX_FMT_PAL8, AV_PIX_FMT_PAL8, "", "loop=0", !kEvenSides, kOneBitAlpha},
    OutputFormat{"mp4", "h264", "mp4", "libx264", AV_PIX_FMT_YUV420P, kNoAlpha, "crf=18:preset=medium", "movflags=+faststart", kEvenSides},
    // Colours and alpha are two streams, whose alternate reference frames would not fall together.
    OutputFormat{"webm", "vp9", "webm", "libvpx-vp9", AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUVA420P,
                 "crf=20:b=0:deadline=good:cpu-used=4:row-mt=1:auto-alt-ref=0", ""},
    OutputFormat{"mov", "prores", "mov", "prores_ks", AV_PIX_FMT_YUV444P10, AV_PIX_FMT_YUVA444P10,
                 "profile=4444:alpha_bits=16:vendor=apl0", "movflags=+faststart"},
    OutputFormat{"mov", "animation", "mov", "qtrle", AV_PIX_FMT_RGB24, AV_PIX_FMT_ARGB, "", "movflags=+faststart"},
    OutputFormat{"-", "bgra", "rawvideo", "rawvideo", AV_PIX_FMT_BGRA, AV_PIX_FMT_BGRA, "", ""},
    OutputFormat{"-", "y4m", "yuv4mpegpipe", "wrapped_avframe", AV_PIX_FMT_YUV420P, kNoAlpha, "", "", kEvenSides},
};
// clang-format on

std::string EndingOf(const std::filesystem::path& output) {
    if (output == "-") return "-";
    std::string ending = output.extension().string();
    if (!ending.empty()) ending.erase(0, 1);
    std::ranges::transform(ending, ending.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending;
}

[[noreturn]] void FailForName(const std::string& ending, std::string_view name) {
    std::string names;
    for (const OutputFormat& format : kFormats) {
        if (format.ending == ending) names += (names.empty() ? "" : " or ") + std::string(format.name);
    }
    const std::string what = ending == "-" ? "-o -" : "a ." + ending + " file";
    throw std::runtime_error(name.empty() ? what + " needs --format " + names
                                          : "--format: " + what + " is " + names + ", not '" + std::string(name) + "'");
}

}  // namespace

const OutputFormat& FormatOf(const std::filesystem::path& output, std::string_view name) {
    const std::string ending = EndingOf(output);
    const auto first = std::ranges::find(kFormats, std::string_view(ending), &OutputFormat::ending);
    if (first == kFormats.end())
        throw std::runtime_error("'" + output.string() +
                                 "' has no ending that is known: .apng, .webp, .gif, .mp4, .webm or .mov; frames as "
                                 "pictures are named such as frames/%04d.png");
    if (name.empty() && ending != "-") return *first;
    const auto named = std::find_if(first, kFormats.end(), [&](const OutputFormat& format) {
        return format.ending == ending && format.name == name;
    });
    if (named == kFormats.end()) FailForName(ending, name);
    return *named;
}

}  // namespace captionfx
