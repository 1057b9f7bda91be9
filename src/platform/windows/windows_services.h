// The services of a Windows system.
#pragma once

#include "platform/services.h"

namespace captionfx {

/// One for the process, made at the first call and never destroyed: titles may outlive other static objects.
PlatformServices& WindowsServices();

}  // namespace captionfx
