// Effects on the finished image of a string: a wipe whose edge smears over the frame, and a glow.
#pragma once

#include <memory>

#include "paths/path_base.h"

namespace captionfx {

/// The text shows itself from its right end on; what is not there yet is the column at the edge, smeared to the left.
class CPathBlurLeft final : public CPathBase {
public:
    int32_t ProcessImage(float progress) override;
    /// Reaches to the frame's left side.
    int32_t GetImageBounds(TitleRect* out, const TitleRect* in) override;
};

/// The same from the left end on, smeared to the right. The frame's last column is not written.
class CPathBlurRight final : public CPathBase {
public:
    int32_t ProcessImage(float progress) override;
    /// Reaches to the frame's right side.
    int32_t GetImageBounds(TitleRect* out, const TitleRect* in) override;
};

/// The text stands in a glow of its own colour, which shrinks and cools down until it is gone.
class CPathGlow final : public CPathBase {
public:
    int32_t CalcCharacter(int32_t pass, int32_t index, float progress, CharPlacement* placement) override;
    int32_t ProcessImage(float progress) override;
    int32_t GetImageBounds(TitleRect* out, const TitleRect* in) override;

private:
    std::unique_ptr<KVTImageUtility::CImageARGB> scratch_;  // made once: a change of layout makes a new effect
};

}  // namespace captionfx
