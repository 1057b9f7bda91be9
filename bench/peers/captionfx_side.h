// This library, as a host uses it.
#pragma once

#include "peers/side.h"

namespace captionfx::peers {

/// How the title comes to its text.
enum class Opening { kTyped, kLoaded };

/// A title of a scene. On several threads its frames are measured by the clock.
[[nodiscard]] std::unique_ptr<Side> MakeCaptionFxSide(const Scene& scene, const Stage& stage, int32_t threads);

/// Where the text of a scene stands. The peers put their characters at the same places.
[[nodiscard]] TextLayout MeasureLayout(const Scene& scene, const Stage& stage);

/// Opens a title, draws its first frame at rest and ends it; the seconds of processor time up to that frame.
[[nodiscard]] double OpenAndDraw(const Scene& scene, const Stage& stage, Opening opening, uint32_t* pixels);

}  // namespace captionfx::peers
