// The values that a new title starts with, and that ResetDefaults puts back.
#pragma once

#include "host/document.h"

namespace captionfx {

[[nodiscard]] TitleDefaults BuiltInDefaults();
[[nodiscard]] TitleRenderSettings BuiltInRenderSettings();

}  // namespace captionfx
