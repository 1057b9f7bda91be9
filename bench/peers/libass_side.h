// libass, the subtitle renderer, with its bitmaps blended by `BlendCoverage`.
#pragma once

#include "peers/side.h"

namespace captionfx::peers {

/// libass softens border and shadow of an event alike.
enum class SoftShadow {
    kOfItsOwn,   ///< Two events, so that the border stays sharp: the picture of this library.
    kWithBorder  ///< One event, whose border is soft too: another picture, for less time.
};

/// `fontFile` is the file of kFontFamily. `layout` must outlive the side.
[[nodiscard]] std::unique_ptr<Side> MakeLibassSide(const Scene& scene, const Stage& stage, const TextLayout& layout,
                                                   const std::string& fontFile, SoftShadow shadow);

}  // namespace captionfx::peers
