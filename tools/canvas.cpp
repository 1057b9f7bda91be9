#include "tools/canvas.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <vector>

#include "tools/colors.h"
#include "tools/title_setup.h"

namespace captionfx {
namespace {

int32_t Width(const TitleRect& rect) {
    return rect.right - rect.left;
}

int32_t Height(const TitleRect& rect) {
    return rect.bottom - rect.top;
}

}  // namespace

Canvas::Canvas(FrameSize size, Rgb ground)
    : image_{.width = size.width,
             .height = size.height,
             .pixels = std::vector<uint32_t>(static_cast<size_t>(size.width) * static_cast<size_t>(size.height),
                                             OpaquePixel(ground))} {}

uint32_t* Canvas::Row(const TitleRect& rect, int32_t y) {
    return &image_.pixels[static_cast<size_t>(rect.top + y) * static_cast<size_t>(image_.width) +
                          static_cast<size_t>(rect.left)];
}

const uint32_t* Canvas::Row(const TitleRect& rect, int32_t y) const {
    return &image_.pixels[static_cast<size_t>(rect.top + y) * static_cast<size_t>(image_.width) +
                          static_cast<size_t>(rect.left)];
}

void Canvas::Fill(const TitleRect& rect, Rgb color) {
    for (int32_t y = 0; y < Height(rect); ++y) std::fill_n(Row(rect, y), Width(rect), OpaquePixel(color));
}

void Canvas::Put(const TitleRect& rect, std::span<const uint32_t> pixels) {
    auto row = pixels.begin();
    for (int32_t y = 0; y < Height(rect); ++y, row += Width(rect)) std::copy_n(row, Width(rect), Row(rect, y));
}

bool Canvas::DrawFrame(IKVT_CaptionFx& title, const TitleRect& rect) {
    SetFrame(title, {Width(rect), Height(rect)}, Ground::kOpaque);
    std::vector<uint32_t> frame;
    for (int32_t y = 0; y < Height(rect); ++y) frame.insert(frame.end(), Row(rect, y), Row(rect, y) + Width(rect));
    const std::vector<uint32_t> before = frame;
    RenderWholeFrame(title, frame.data(), 0.0F);
    Put(rect, frame);
    return frame != before;
}

bool Canvas::AreEqual(const TitleRect& a, const TitleRect& b) const {
    for (int32_t y = 0; y < Height(a); ++y) {
        if (!std::equal(Row(a, y), Row(a, y) + Width(a), Row(b, y))) return false;
    }
    return true;
}

}  // namespace captionfx
