// Pictures in another size.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "tools/argument_values.h"

namespace captionfx {

/// Each pixel is the mean of what it covers of the original, which must be opaque.
[[nodiscard]] std::vector<uint32_t> ScaledPicture(std::span<const uint32_t> pixels, FrameSize from, FrameSize to);

}  // namespace captionfx
