#include "plugins/frei0r/host_time.h"

#include <algorithm>
#include <array>
#include <dlfcn.h>
#include <string_view>

namespace captionfx {

double SecondsOfHostTime(const void* caller) noexcept {
    constexpr std::array<std::string_view, 4> kMilliseconds{"libavfilter", "ffmpeg", "ffplay", "ffprobe"};
    constexpr double kMillisecond = 0.001, kSecond = 1.0;
    Dl_info info{};
    if (dladdr(caller, &info) == 0 || info.dli_fname == nullptr) return kSecond;
    std::string_view name = info.dli_fname;
    name.remove_prefix(name.rfind('/') + 1);  // npos + 1 is 0
    const bool isMilliseconds =
        std::ranges::any_of(kMilliseconds, [&](std::string_view start) { return name.starts_with(start); });
    return isMilliseconds ? kMillisecond : kSecond;
}

}  // namespace captionfx
