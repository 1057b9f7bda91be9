// libass, the subtitle renderer, with its bitmaps blended by `BlendCoverage`.
#pragma once

#include "peers/side.h"

namespace captionfx::peers {

/// `fontFile` is the file of kFontFamily. `layout` must outlive the side.
[[nodiscard]] std::unique_ptr<Side> MakeLibassSide(const Scene& scene, const Stage& stage, const TextLayout& layout,
                                                   const std::string& fontFile);

}  // namespace captionfx::peers
