// cairo. What stands still within itself is drawn once and placed as a picture; what turns or grows is drawn as
// outlines.
#pragma once

#include "peers/side.h"

namespace captionfx::peers {

/// `layout` must outlive the side.
[[nodiscard]] std::unique_ptr<Side> MakeCairoSide(const Scene& scene, const Stage& stage, const TextLayout& layout);

}  // namespace captionfx::peers
