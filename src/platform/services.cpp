// The one place that picks the back end.
#include "platform/services.h"

#ifdef _WIN32
#include "platform/windows/windows_services.h"
#else
#include "platform/linux/linux_services.h"
#endif

namespace captionfx {

PlatformServices& SystemServices() {
#ifdef _WIN32
    return WindowsServices();
#else
    return LinuxServices();
#endif
}

}  // namespace captionfx
