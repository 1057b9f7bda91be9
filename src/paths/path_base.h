// CPathBase: what every effect is given of its string, and the questions it answers.
//
// An effect is bound to the geometry of one string once; from then on it is a pure function of pass and progress. A
// character effect says where a character stands, an image effect turns the string's image into another. Progress is 1
// at rest and fully shown; nothing clamps it.
#pragma once

#include <cstdint>
#include <vector>

#include "host/caption_fx.h"
#include "paths/path_records.h"
#include "render/image/image_base.h"

namespace captionfx {

inline constexpr int32_t kPixelFormatAYUV = 1;

class CPathBase {
public:
    CPathBase() = default;
    CPathBase(const CPathBase&) = delete;
    CPathBase& operator=(const CPathBase&) = delete;
    virtual ~CPathBase() = default;

    /// Places character `index`, below the number of boxes, in `pass` 0 or 1. The default is at rest and fully shown.
    /// Returns 1. Effects that draw random numbers rely on being called in index order (path_random.h).
    virtual int32_t CalcCharacter(int32_t pass, int32_t index, float progress, CharPlacement* placement);

    // Images of 32-bit pixels, which stay the caller's; `stride` in bytes. The source has straight alpha, and so must
    // the target when ProcessImage is done; before that it holds what the frame left there. Return 0.
    virtual int32_t SetSourceImage(uint8_t* pixels, int32_t width, int32_t height, int32_t stride);
    virtual int32_t SetTargetImage(uint8_t* pixels, int32_t width, int32_t height, int32_t stride);

    /// Takes PixelFormat of the output settings: kPixelFormatAYUV, any other value is ARGB. Returns 0.
    virtual int32_t SetPixelFormat(int32_t format);

    /// Writes the target from the source. The default copies. Returns 0, or kTitleFailure for images of different size.
    virtual int32_t ProcessImage(float progress);

    /// The area that the result of ProcessImage occupies, for a string's image that occupies `in`. The default is the
    /// whole source. Returns 0.
    virtual int32_t GetImageBounds(TitleRect* out, const TitleRect* in);

    int32_t SetCanvasSize(int32_t width, int32_t height);
    int32_t SetCharCount(int32_t count);

    /// Called before an effect is destroyed. Returns 1.
    int32_t ReleaseResources();

    /// Sets the string's rectangle, canvas pixels, and the angle in degrees that the whole string is drawn at, and
    /// works out the canvas bounds as seen in the string's own frame. Returns 1.
    int32_t SetStringRect(const TitleRectF& rect, float angle);

    /// Puts a box before position `index` of those there; called in ascending order. Returns 1, or 0 for an index that
    /// is not below the character count.
    int32_t SetCharBox(int32_t index, const CharBox& box);

    [[nodiscard]] const PathCanvasBounds& CanvasBounds() const { return bounds_; }

protected:
    /// The smallest rectangle around the pixels with alpha, right and bottom inclusive. An image without any gives
    /// left = width - 1, top = height - 1, right = bottom = 0.
    static void FindOpaqueBounds(TitleRect* out, const KVTImageUtility::CImageARGB& image);

    int32_t canvasWidth_ = 320, canvasHeight_ = 240;
    int32_t charCount_ = 0;
    TitleRectF stringRect_{};
    std::vector<CharBox> boxes_;
    float angleDeg_ = 0, sine_ = 0, cosine_ = 1;  // sine and cosine of the negated angle
    KVTImageUtility::CImageARGB source_, target_;
    int32_t pixelFormat_ = 0;
    PathCanvasBounds bounds_{.Top = 0, .Bottom = 240, .Right = 320, .Left = 0};
};

}  // namespace captionfx
