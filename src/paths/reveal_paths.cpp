#include "paths/reveal_paths.h"

namespace captionfx {

// clang-format off
void Fade    (const PathFrame& f, CharPlacement& out) { out.Alpha = WrappedAlpha(f.p * 255); }
void NoEffect(const PathFrame& f, CharPlacement& out) { out.Alpha = f.p > 0.5F ? 255 : 0; }
// clang-format on

}  // namespace captionfx
