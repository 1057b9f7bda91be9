#include "tools/title_source.h"

#include <algorithm>

namespace captionfx {
namespace {

constexpr FrameSize kUsualFrame{1280, 720};

/// How much larger the frame that is asked for shows a title of this frame.
float Enlargement(FrameSize made, FrameSize asked) {
    return std::min(static_cast<float>(asked.width) / static_cast<float>(made.width),
                    static_cast<float>(asked.height) / static_cast<float>(made.height));
}

float LastKeyOf(const std::vector<FileString>& strings) {
    float last = 0;
    for (const FileString& string : strings) {
        for (const Keyframe& key : string.keys) last = std::max(last, key.time);
    }
    return last;
}

}  // namespace

TitleSource LoadTitle(IKVT_CaptionFx& title, const std::filesystem::path& path) {
    const TitleFile file(path);
    file.LoadInto(title);
    TitleSource source;
    source.strings = file.Strings();
    source.duration = LastKeyOf(source.strings);
    return source;
}

FrameSize SetSourceFrame(IKVT_CaptionFx& title, const TitleSource& source, std::optional<FrameSize> asked,
                         Ground ground) {
    const FrameSize frame = asked.value_or(source.frame.value_or(kUsualFrame));
    SetFrame(title, frame, ground);
    SetScale(title, source.scale * (source.frame ? Enlargement(*source.frame, frame) : 1.0F));
    return frame;
}

}  // namespace captionfx
