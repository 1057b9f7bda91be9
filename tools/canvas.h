// A picture that is put together from frames of titles.
#pragma once

#include <cstdint>
#include <span>
#include <utility>

#include <captionfx/caption_fx.h>

#include "tools/argument_values.h"
#include "tools/png_file.h"

namespace captionfx {

class Canvas {
public:
    /// Opaque, in one colour.
    Canvas(FrameSize size, Rgb ground);

    /// Leaves the canvas without pixels.
    [[nodiscard]] PngImage TakeImage() { return std::move(image_); }

    [[nodiscard]] std::span<const uint32_t> Pixels() const { return image_.pixels; }

    /// Rectangles lie inside the picture.
    void Fill(const TitleRect& rect, Rgb color);

    /// `pixels` are as many as the rectangle has.
    void Put(const TitleRect& rect, std::span<const uint32_t> pixels);

    /// Draws a frame of the title, whose ground must be opaque, over the rectangle. Returns whether that changed a
    /// pixel. Throws std::bad_alloc.
    bool DrawFrame(IKVT_CaptionFx& title, const TitleRect& rect);

    /// Whether two rectangles of one size hold the same pixels.
    [[nodiscard]] bool AreEqual(const TitleRect& a, const TitleRect& b) const;

private:
    [[nodiscard]] const uint32_t* Row(const TitleRect& rect, int32_t y) const;
    [[nodiscard]] uint32_t* Row(const TitleRect& rect, int32_t y);

    PngImage image_;
};

}  // namespace captionfx
