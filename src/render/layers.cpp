#include "render/layers.h"

#include <algorithm>
#include <cmath>

#include "paths/path_base.h"
#include "platform/conversions.h"
#include "render/gradient.h"
#include "render/pixel.h"

namespace captionfx {
namespace {

/// The blur of a style in pixels, and the margin that it needs on each side.
struct Softness {
    float Radius = 0;
    int32_t Margin = 0;
};

Softness SoftnessOf(const LayerSettings& settings, int32_t blurRadius) {
    if (blurRadius < 1) return {};
    const float scale = std::min(settings.Render.ScaleX, settings.Render.ScaleY);
    const float radius = StyleRadius(static_cast<float>(blurRadius) * settings.SizeRatio * scale);
    return {radius, ReachOf(radius)};
}

/// A style's colours as they stand in the pixels of the frame's format.
struct Fill {
    uint32_t Color1, Color2;
    bool IsFlat;
    int32_t GradType;
    uint32_t Alpha;
};

uint32_t ColorInFrame(const LayerSettings& settings, uint32_t color) {
    if (settings.Render.PixelFormat != kPixelFormatAYUV) return color;
    uint8_t first = 0, second = 0, third = 0;
    settings.Ops.RgbToYuv(static_cast<uint8_t>(ChannelOf(color, 0)), static_cast<uint8_t>(ChannelOf(color, 8)),
                          static_cast<uint8_t>(ChannelOf(color, 16)), &first, &second, &third);
    return uint32_t{first} | uint32_t{second} << 8U | uint32_t{third} << 16U;
}

template <class Style>
Fill FillOf(const LayerSettings& settings, const Style& style) {
    const uint32_t color1 = ColorInFrame(settings, style.Color1), color2 = ColorInFrame(settings, style.Color2);
    return {.Color1 = PixelOfStyleColor(color1),
            .Color2 = PixelOfStyleColor(color2),
            .IsFlat = color1 == color2,  // all 32 bits: a differing top byte makes a gradient of equal colours
            .GradType = style.GradType,
            .Alpha = static_cast<uint8_t>(style.Alpha)};
}

/// Zeroed pixels of a size, or false when it is none that a layer may have.
bool Allocate(GlyphBitmap& layer, int64_t width, int64_t height) {
    if (!IsLayerSize(width, height)) return false;
    layer.Width = static_cast<int32_t>(width);
    layer.Height = static_cast<int32_t>(height);
    layer.Pixels = std::make_unique<uint32_t[]>(layer.PixelCount());
    return true;
}

uint32_t* RowOf(GlyphBitmap& layer, int32_t y) {
    return layer.Pixels.get() + std::ptrdiff_t{y} * layer.Width;
}

/// Low grades of antialiasing have the quick blur.
void Blur(const LayerSettings& settings, GlyphBitmap& layer, float radius) {
    const bool isSmooth = settings.Render.AntialiasMode == 0 || settings.Render.AntialiasMode == 1;
    const auto blur = isSmooth ? &ImageUtilityOps::BlurSmooth : &ImageUtilityOps::BlurFast;
    (settings.Ops.*blur)(layer.Pixels.get(), layer.Width, layer.Height, radius);
}

/// A layer of a mask with a margin around it: the road of face and border.
template <class Style>
int32_t BuildFilledLayer(const LayerSettings& settings, GlyphBitmap& layer, const CoverageMask& mask,
                         const Style& style) {
    const Softness soft = SoftnessOf(settings, style.BlurRadius);
    if (!Allocate(layer, mask.Width + 2 * int64_t{soft.Margin}, mask.Height + 2 * int64_t{soft.Margin})) return 0;
    layer.X -= static_cast<float>(soft.Margin);
    layer.Y -= static_cast<float>(soft.Margin);

    const Fill fill = FillOf(settings, style);
    if (!fill.IsFlat) {
        FillGradient(layer.Pixels.get(), layer.Width, layer.Height, fill.Color1, fill.Color2, fill.GradType);
    }
    for (int32_t y = 0; y < mask.Height; ++y) {
        const uint8_t* const in = mask.Row(y);
        uint32_t* const out = RowOf(layer, soft.Margin + y) + soft.Margin;
        for (int32_t x = 0; x < mask.Width; ++x) {
            if (in[x] != 0) out[x] = WithAlpha(fill.IsFlat ? fill.Color1 : out[x], (fill.Alpha + 1) * in[x] / 256);
        }
    }
    Blur(settings, layer, soft.Radius);
    return 1;
}

/// One axis of an extrusion: the way of the offset and the sizes along it, pixels.
struct ExtrusionAxis {
    float Offset;
    int32_t Layer, Source, Margin;

    /// Where a stamp lies that has come `way` across the main axis: from the near side for a way right or down, from
    /// the far side for a way left or up.
    [[nodiscard]] float CrossPosition(float way) const {
        return way + static_cast<float>(way < 0 ? Layer - Source - Margin : Margin);
    }
};

/// Calls stamp(main, cross) for each step of 1 along the main axis, from the source to the offset.
template <class StampAt>
void Extrude(const ExtrusionAxis& main, const ExtrusionAxis& cross, StampAt stamp) {
    const auto layer = static_cast<float>(main.Layer), source = static_cast<float>(main.Source),
               margin = static_cast<float>(main.Margin);
    const auto crossAt = [&](float t) { return cross.CrossPosition(t * cross.Offset / main.Offset); };
    if (main.Offset >= 1) {
        for (float t = 1; t <= main.Offset; t += 1) stamp(margin + t, crossAt(t));
    } else if (main.Offset <= -1) {
        for (float t = main.Offset; t <= -1; t += 1) stamp(layer + t - source - margin, crossAt(t));
    }
}

/// The mask that casts the shadow, or null where nothing does.
const CoverageMask* ShadowSource(const CoverageMask& glyph, const BorderMasks& border, const MetaShadow& style) {
    if (style.EnableBorder != 0) return style.EnableFace != 0 ? &border.Dilated : &border.Ring;
    return style.EnableFace != 0 ? &glyph : nullptr;
}

/// Colours a shadow whose alpha is done: a flat one where it has alpha, a gradient all over.
void ColorShadow(GlyphBitmap& layer, const Fill& fill, int32_t margin) {
    if (!fill.IsFlat) {
        FillGradient(layer.Pixels.get(), layer.Width, layer.Height, fill.Color1, fill.Color2, fill.GradType);
        return;
    }
    for (int32_t y = margin; y < layer.Height - margin; ++y) {
        uint32_t* const row = RowOf(layer, y);
        for (int32_t x = margin; x < layer.Width - margin; ++x) {
            if (AlphaOf(row[x]) != 0) row[x] = WithAlpha(fill.Color1, AlphaOf(row[x]));
        }
    }
}

}  // namespace

float StyleRadius(float product) {
    return static_cast<float>(static_cast<double>(product) * 256.0 / 10.0 + 0.00001);
}

int32_t BuildFaceLayer(const LayerSettings& settings, GlyphBitmap& layer, const CoverageMask& glyph,
                       const MetaFace& style) {
    return style.Enable == 0 ? 1 : BuildFilledLayer(settings, layer, glyph, style);
}

int32_t BuildBorderLayer(const LayerSettings& settings, GlyphBitmap& layer, const CoverageMask& ring,
                         const MetaBorder& style) {
    return style.Enable == 0 || style.Size < 0 ? 1 : BuildFilledLayer(settings, layer, ring, style);
}

int32_t BuildShadowLayer(const LayerSettings& settings, GlyphBitmap& layer, const CoverageMask& glyph,
                         const BorderMasks& border, const MetaShadow& style) {
    const CoverageMask* const source = ShadowSource(glyph, border, style);
    if (source == nullptr) return 1;
    const Softness soft = SoftnessOf(settings, style.BlurRadius);
    const int32_t m = soft.Margin;
    const auto margin = static_cast<float>(m);
    const float dx = settings.Render.ScaleX * style.OffsetX, dy = settings.Render.ScaleY * style.OffsetY;
    const bool isExtruded = style.Height != 0;

    const float wayX = isExtruded ? std::abs(dx) : 0, wayY = isExtruded ? std::abs(dy) : 0;
    const auto sideOf = [&](int32_t side, float way) {
        const float sum = static_cast<float>(side) + static_cast<float>(2 * int64_t{m}) + way;
        return ToInt32(static_cast<double>(sum));
    };
    if (!Allocate(layer, sideOf(source->Width, wayX), sideOf(source->Height, wayY))) return 0;
    layer.X -= margin;
    layer.Y -= margin;
    if (!isExtruded || style.OffsetX <= 0) layer.X += dx;
    if (!isExtruded || style.OffsetY <= 0) layer.Y += dy;

    const Fill fill = FillOf(settings, style);
    const ExtrusionAxis axisX{dx, layer.Width, source->Width, m}, axisY{dy, layer.Height, source->Height, m};
    if (!isExtruded || (style.OffsetX == 0 && style.OffsetY == 0)) {
        StampShadowAlpha(layer, *source, margin, margin, fill.Alpha);
    } else if (std::abs(dx) <= std::abs(dy)) {
        Extrude(axisY, axisX, [&](float y, float x) { StampShadowAlpha(layer, *source, x, y, fill.Alpha); });
    } else {
        Extrude(axisX, axisY, [&](float x, float y) { StampShadowAlpha(layer, *source, x, y, fill.Alpha); });
    }
    ColorShadow(layer, fill, m);
    Blur(settings, layer, soft.Radius);
    return 1;
}

void StampShadowAlpha(GlyphBitmap& layer, const CoverageMask& mask, float x, float y, uint32_t alpha) {
    const int64_t left = ToInt32(static_cast<double>(x)), top = ToInt32(static_cast<double>(y));
    const auto firstX = static_cast<int32_t>(std::clamp<int64_t>(-left, 0, mask.Width));
    const auto endX = static_cast<int32_t>(std::clamp<int64_t>(layer.Width - left, 0, mask.Width));
    const auto firstY = static_cast<int32_t>(std::clamp<int64_t>(-top, 0, mask.Height));
    const auto endY = static_cast<int32_t>(std::clamp<int64_t>(layer.Height - top, 0, mask.Height));
    for (int32_t row = firstY; row < endY; ++row) {
        const uint8_t* const in = mask.Row(row);
        uint32_t* const out = RowOf(layer, static_cast<int32_t>(top + row));
        for (int32_t column = firstX; column < endX; ++column) {
            uint32_t& pixel = out[left + column];
            const uint32_t stamped = in[column] * (alpha + 1) / 256;
            if (AlphaOf(pixel) < stamped) pixel = WithAlpha(pixel, stamped);
        }
    }
}

}  // namespace captionfx
