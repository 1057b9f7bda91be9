#include "tools/frame_times.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "tools/text_encoding.h"

namespace captionfx {
namespace {

/// The place of a frame number at the beginning of a text: "%d", or "%04d" with a least width of 1 to 9.
struct NumberPlace {
    size_t length = 0;  ///< 0 where there is none.
    size_t width = 0;
};

NumberPlace PlaceAt(std::string_view text) {
    if (text.starts_with("%d")) return {.length = 2, .width = 0};
    const bool hasWidth =
        text.size() >= 4 && text.starts_with("%0") && text[2] >= '1' && text[2] <= '9' && text[3] == 'd';
    return hasWidth ? NumberPlace{.length = 4, .width = static_cast<size_t>(text[2] - '0')} : NumberPlace{};
}

}  // namespace

int32_t FrameCount(float from, float to, float rate) {
    constexpr double kMost = 1e7;
    constexpr double kRounding = 1e-6;  // 0.1 s at 30 frames a second are 3 frames, though 0.1f is a little more
    const double count =
        std::ceil((static_cast<double>(to) - static_cast<double>(from)) * static_cast<double>(rate) - kRounding);
    return to > from && count <= kMost ? std::max(1, static_cast<int32_t>(count)) : 0;
}

float FrameTime(float from, float rate, int32_t index) {
    return static_cast<float>(static_cast<double>(from) + index / static_cast<double>(rate));
}

bool IsFramePattern(const std::string& pattern) {
    int places = 0;
    for (std::string_view rest = pattern; !rest.empty();) {
        const NumberPlace place = PlaceAt(rest);
        const bool isPercent = rest.starts_with("%%");
        if (rest.front() == '%' && place.length == 0 && !isPercent) return false;
        places += place.length > 0 ? 1 : 0;
        rest.remove_prefix(isPercent ? 2 : std::max<size_t>(place.length, 1));
    }
    return places == 1;
}

std::filesystem::path FrameFile(const std::string& pattern, int32_t index) {
    std::string file;
    for (std::string_view rest = pattern; !rest.empty();) {
        const NumberPlace place = PlaceAt(rest);
        const bool isPercent = rest.starts_with("%%");
        if (place.length > 0) {
            const std::string digits = std::to_string(index);
            file.append(place.width - std::min(place.width, digits.size()), '0').append(digits);
        } else {
            file += rest.front();
        }
        rest.remove_prefix(isPercent ? 2 : std::max<size_t>(place.length, 1));
    }
    return PathFromUtf8(file);
}

}  // namespace captionfx
