#include "tools/frame_times.h"

#include <algorithm>
#include <cmath>
#include <regex>

namespace captionfx {
namespace {

const std::regex& NumberPlace() {
    static const std::regex place("%(?:0([1-9]))?d");
    return place;
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
    const std::string rest = std::regex_replace(pattern, std::regex("%%"), "");
    const auto places =
        std::distance(std::sregex_iterator(rest.begin(), rest.end(), NumberPlace()), std::sregex_iterator());
    return places == 1 && std::ranges::count(rest, '%') == 1;
}

std::filesystem::path FrameFile(const std::string& pattern, int32_t index) {
    std::string file;
    for (size_t i = 0; i < pattern.size(); ++i) {
        std::smatch place;
        if (pattern.compare(i, 2, "%%") == 0) {
            file += '%';
            ++i;
        } else if (std::regex_search(pattern.begin() + static_cast<std::ptrdiff_t>(i), pattern.end(), place,
                                     NumberPlace(), std::regex_constants::match_continuous)) {
            const std::string digits = std::to_string(index);
            const size_t width = place[1].matched ? static_cast<size_t>(std::stoi(place[1])) : 0;
            file += std::string(width - std::min(width, digits.size()), '0') + digits;
            i += static_cast<size_t>(place.length()) - 1;
        } else {
            file += pattern[i];
        }
    }
    return file;
}

}  // namespace captionfx
