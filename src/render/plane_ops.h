// The image operations on a rectangle of frame-sized pictures.
#pragma once

#include <algorithm>
#include <cstddef>

#include "render/image_utility_ops.h"
#include "render/rect.h"

namespace captionfx {

/// Pictures are `frameWidth` pixels wide without row padding. Rectangles lie in the frame; nothing is done for empty
/// ones.
class PlaneOps {
public:
    PlaneOps(ImageUtilityOps& ops, int32_t frameWidth) : ops_(ops), width_(frameWidth) {}

    void Premultiply(uint32_t* picture, const TitleRect& rect) const {
        Change(&ImageUtilityOps::Premultiply, picture, rect);
    }
    void Unpremultiply(uint32_t* picture, const TitleRect& rect) const {
        Change(&ImageUtilityOps::Unpremultiply, picture, rect);
    }
    void PlaneFilter(uint32_t* picture, const TitleRect& rect) const {
        Change(&ImageUtilityOps::PlaneFilter, picture, rect);
    }
    void CompositeStraight(uint32_t* destination, const uint32_t* source, const TitleRect& rect) const {
        Composite(&ImageUtilityOps::CompositeStraight, destination, source, rect);
    }
    void CompositePremultiplied(uint32_t* destination, const uint32_t* source, const TitleRect& rect) const {
        Composite(&ImageUtilityOps::CompositePremultiplied, destination, source, rect);
    }
    void CompositePremultipliedOnto(uint32_t* destination, const uint32_t* source, const TitleRect& rect) const {
        Composite(&ImageUtilityOps::CompositePremultipliedOnto, destination, source, rect);
    }
    void Copy(uint32_t* destination, const uint32_t* source, const TitleRect& rect) const {
        ForRows(rect, [&](std::ptrdiff_t row, int32_t width) { std::copy_n(source + row, width, destination + row); });
    }
    void Clear(uint32_t* picture, const TitleRect& rect) const {
        ForRows(rect, [&](std::ptrdiff_t row, int32_t width) { std::fill_n(picture + row, width, 0U); });
    }

private:
    using Changer = void (ImageUtilityOps::*)(uint32_t*, int32_t, int32_t, int32_t) noexcept;
    using Compositor = void (ImageUtilityOps::*)(uint32_t*, const uint32_t*, int32_t, int32_t, int32_t) noexcept;

    [[nodiscard]] std::ptrdiff_t IndexOf(int32_t x, int32_t y) const { return std::ptrdiff_t{y} * width_ + x; }

    template <class Operation>
    void ForRows(const TitleRect& rect, Operation operation) const {
        if (IsEmpty(rect)) return;
        for (int32_t y = rect.top; y < rect.bottom; ++y) operation(IndexOf(rect.left, y), rect.right - rect.left);
    }
    void Change(Changer change, uint32_t* picture, const TitleRect& rect) const {
        if (IsEmpty(rect)) return;
        (ops_.*change)(picture + IndexOf(rect.left, rect.top), rect.right - rect.left, rect.bottom - rect.top,
                       width_ * 4);
    }
    void Composite(Compositor composite, uint32_t* destination, const uint32_t* source, const TitleRect& rect) const {
        if (IsEmpty(rect)) return;
        const std::ptrdiff_t first = IndexOf(rect.left, rect.top);
        (ops_.*composite)(destination + first, source + first, rect.right - rect.left, rect.bottom - rect.top,
                          width_ * 4);
    }

    ImageUtilityOps& ops_;
    int32_t width_;
};

}  // namespace captionfx
