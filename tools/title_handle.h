// A title that ends itself.
#pragma once

#include <memory>
#include <new>

#include <captionfx/caption_fx.h>

namespace captionfx {

struct TitleRelease {
    void operator()(IKVT_CaptionFx* title) const noexcept { ReleaseTitleHost(title); }
};

using TitleHandle = std::unique_ptr<IKVT_CaptionFx, TitleRelease>;

/// A title with built-in defaults. Throws std::bad_alloc, the only reason why there is none.
[[nodiscard]] inline TitleHandle MakeTitle() {
    TitleHandle title(GetTitleHost());
    if (!title) throw std::bad_alloc();
    return title;
}

}  // namespace captionfx
