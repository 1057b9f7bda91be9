// Read-back of layout: rectangles in pixels, before the string's rotation, and the text.
#pragma once

#include "host/document.h"

namespace captionfx {

/// Document units to pixels.
struct PixelScale {
    float X, Y;
};

[[nodiscard]] inline PixelScale ScaleOf(const TitleRenderSettings& settings) {
    return {settings.ScaleX, settings.ScaleY};
}

// The indices must be good.
[[nodiscard]] TitleRectF StringRect(const MetaString& string, PixelScale scale);
[[nodiscard]] TitleRectF ParagraphRect(const MetaString& string, int32_t paragraph, PixelScale scale);
[[nodiscard]] TitleRectF LineRect(const MetaString& string, int32_t line, PixelScale scale);
[[nodiscard]] TitleRectF CharRect(const MetaString& string, int32_t character, PixelScale scale);

/// The rectangle that drawing works with: all zero for a line-end character.
[[nodiscard]] TitleRectF DrawnCharRect(const MetaString& string, int32_t character, PixelScale scale);

}  // namespace captionfx
