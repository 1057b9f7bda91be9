// What a title needs of memory.
#pragma once

#include <cstddef>

#include "peers/scene.h"

namespace captionfx::peers {

/// By how much the resident memory of a process of its own grows at most while a title of the scene is opened and
/// drawn at a few moments, bytes. Fonts are known before, and the pixels drawn upon do not count.
[[nodiscard]] size_t MeasurePeakBytes(const Scene& scene, const Stage& stage);

}  // namespace captionfx::peers
