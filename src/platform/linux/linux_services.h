// The services of a Linux system.
#pragma once

#include "platform/services.h"

namespace captionfx {

/// One for the process, made at the first call and never destroyed: titles may outlive other static objects.
PlatformServices& LinuxServices();

}  // namespace captionfx
