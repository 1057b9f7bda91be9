// The credits on a plate that is tilted away from the viewer.
#pragma once

#include <memory>

#include "paths/path_formula.h"

namespace sgl {
class PathScene;
}

namespace captionfx {

/// As ScrollUp; in the uppermost three tenths of the canvas the alpha goes down to 0.
PathFormula ScrollUpAndFade;

/// The string climbs over the canvas, fading out near its top, and the whole image is the front of a fixed slab, which
/// fills the frame. The crawl is that of the string; nothing about the slab depends on the progress.
class CPathPerspectiveScroll final : public CStartingPath<&ScrollUpAndFade> {
public:
    CPathPerspectiveScroll();
    CPathPerspectiveScroll(const CPathPerspectiveScroll&) = delete;
    CPathPerspectiveScroll& operator=(const CPathPerspectiveScroll&) = delete;
    ~CPathPerspectiveScroll() override;

    // Another source, or another size of the target, ends the scene, which holds the source as a texture.
    int32_t SetSourceImage(uint8_t* pixels, int32_t width, int32_t height, int32_t stride) override;
    int32_t SetTargetImage(uint8_t* pixels, int32_t width, int32_t height, int32_t stride) override;
    /// Returns kTitleFailure also where memory is too short for the scene.
    int32_t ProcessImage(float progress) override;

private:
    /// The slab with the source on its front; null where memory is too short.
    [[nodiscard]] std::unique_ptr<sgl::PathScene> MakeScene() const;

    std::unique_ptr<sgl::PathScene> scene_;
};

}  // namespace captionfx
