#include "platform/windows/clock.h"

#include <windows.h>
#include <algorithm>
#include <mmsystem.h>

namespace captionfx {

uint32_t MultimediaClock::Milliseconds() {
    return timeGetTime();
}

int32_t MultimediaClock::ProcessorCount() {
    SYSTEM_INFO info{};
    GetSystemInfo(&info);
    return static_cast<int32_t>(std::max<DWORD>(1, info.dwNumberOfProcessors));
}

}  // namespace captionfx
