#include "platform/linux/clock.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace captionfx {

uint32_t SteadyClock::Milliseconds() {
    using std::chrono::milliseconds;
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<uint32_t>(std::chrono::duration_cast<milliseconds>(sinceStart).count());
}

int32_t SteadyClock::ProcessorCount() {
    return static_cast<int32_t>(std::max(1U, std::thread::hardware_concurrency()));  // 0 where it is not known
}

}  // namespace captionfx
