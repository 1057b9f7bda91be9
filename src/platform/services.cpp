// The one place that picks the back end.
#include "platform/services.h"

#include "platform/linux/linux_services.h"

namespace captionfx {

PlatformServices& SystemServices() {
    return LinuxServices();
}

}  // namespace captionfx
