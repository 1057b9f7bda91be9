#include "render/layers.h"

#include <algorithm>
#include <cmath>

#include "paths/path_base.h"
#include "platform/conversions.h"
#include "render/gradient.h"
#include "render/kernels/mask_kernels.h"
#include "render/layer_blur.h"
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

/// Zeroed coverage of a size, or nothing.
std::shared_ptr<CoverageLayer> AllocateCoverage(GlyphBitmap& layer, int64_t width, int64_t height) {
    if (!IsLayerSize(width, height)) return nullptr;
    layer.Width = static_cast<int32_t>(width);
    layer.Height = static_cast<int32_t>(height);
    return std::make_shared<CoverageLayer>(layer.Width, layer.Height);
}

uint32_t* RowOf(GlyphBitmap& layer, int32_t y) {
    return layer.Pixels.get() + std::ptrdiff_t{y} * layer.Width;
}

/// Low grades of antialiasing have the quick blur.
bool IsSmooth(const LayerSettings& settings) {
    return settings.Render.AntialiasMode == 0 || settings.Render.AntialiasMode == 1;
}

void Blur(const LayerSettings& settings, GlyphBitmap& layer, float radius) {
    const auto blur = IsSmooth(settings) ? &ImageUtilityOps::BlurSmooth : &ImageUtilityOps::BlurFast;
    (settings.Ops.*blur)(layer.Pixels.get(), layer.Width, layer.Height, radius);
}

/// Blurs a layer's coverage, which then is the layer's.
void Finish(const LayerSettings& settings, GlyphBitmap& layer, std::shared_ptr<CoverageLayer> coverage, uint32_t color,
            float radius) {
    BlurCoverage(coverage->Row(0), layer.Width, layer.Height, static_cast<std::ptrdiff_t>(coverage->Pitch()), radius,
                 IsSmooth(settings) ? BlurKind::kThreeBoxes : BlurKind::kOneBox);
    coverage->FindSpans();
    layer.Coverage = std::move(coverage);
    layer.Color = color;
}

bool IsCoverage(const LayerSettings& settings, const Fill& fill) {
    return settings.Form == LayerForm::kCoverage && fill.IsFlat;
}

/// BuildFilledLayer for one colour.
int32_t BuildFilledCoverage(const LayerSettings& settings, GlyphBitmap& layer, const CoverageMask& mask,
                            const Softness& soft, const Fill& fill) {
    const int32_t m = soft.Margin;
    auto coverage = AllocateCoverage(layer, mask.Width + 2 * int64_t{m}, mask.Height + 2 * int64_t{m});
    if (!coverage) return 0;
    BestMaskKernels().ScaleMask({.Out = coverage->Row(m) + m,
                                 .OutPitch = static_cast<ptrdiff_t>(coverage->Pitch()),
                                 .Mask = mask.Bytes.data(),
                                 .MaskPitch = mask.Width,
                                 .Width = static_cast<size_t>(mask.Width),
                                 .Height = mask.Height},
                                fill.Alpha);
    Finish(settings, layer, std::move(coverage), fill.Color1, soft.Radius);
    return 1;
}

/// A layer of a mask with a margin around it: the road of face and border.
template <class Style>
int32_t BuildFilledLayer(const LayerSettings& settings, GlyphBitmap& layer, const CoverageMask& mask,
                         const Style& style) {
    const Softness soft = SoftnessOf(settings, style.BlurRadius);
    const Fill fill = FillOf(settings, style);
    layer.X -= static_cast<float>(soft.Margin);
    layer.Y -= static_cast<float>(soft.Margin);
    if (IsCoverage(settings, fill)) return BuildFilledCoverage(settings, layer, mask, soft, fill);
    if (!Allocate(layer, mask.Width + 2 * int64_t{soft.Margin}, mask.Height + 2 * int64_t{soft.Margin})) return 0;
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

/// The size of a shadow, and where its mask is stamped into it.
class ShadowShape {
public:
    ShadowShape(const LayerSettings& settings, const CoverageMask& source, const MetaShadow& style, int32_t margin)
        : margin_(margin),
          sourceWidth_(source.Width),
          sourceHeight_(source.Height),
          dx_(settings.Render.ScaleX * style.OffsetX),
          dy_(settings.Render.ScaleY * style.OffsetY) {
        const bool isExtruded = style.Height != 0;
        isOneStamp_ = !isExtruded || (style.OffsetX == 0 && style.OffsetY == 0);
        Width = SideOf(source.Width, isExtruded ? std::abs(dx_) : 0);
        Height = SideOf(source.Height, isExtruded ? std::abs(dy_) : 0);
        if (!isExtruded || style.OffsetX <= 0) ShiftX = dx_;
        if (!isExtruded || style.OffsetY <= 0) ShiftY = dy_;
    }

    /// Calls stamp(x, y) for each place, from the shadow's upper left corner.
    template <class StampAt>
    void Stamp(StampAt stamp) const {
        const auto margin = static_cast<float>(margin_);
        const ExtrusionAxis axisX{dx_, Width, sourceWidth_, margin_}, axisY{dy_, Height, sourceHeight_, margin_};
        if (isOneStamp_) {
            stamp(margin, margin);
        } else if (std::abs(dx_) <= std::abs(dy_)) {
            Extrude(axisY, axisX, [&](float y, float x) { stamp(x, y); });
        } else {
            Extrude(axisX, axisY, stamp);
        }
    }

    /// One lies at the margin, several may reach beyond.
    [[nodiscard]] bool IsOneStamp() const { return isOneStamp_; }

    int32_t Width = 0, Height = 0;
    float ShiftX = 0, ShiftY = 0;  ///< How far the whole moves, pixels.

private:
    [[nodiscard]] int32_t SideOf(int32_t side, float way) const {
        const float sum = static_cast<float>(side) + static_cast<float>(2 * int64_t{margin_}) + way;
        return ToInt32(static_cast<double>(sum));
    }

    int32_t margin_, sourceWidth_, sourceHeight_;
    float dx_, dy_;
    bool isOneStamp_ = true;
};

/// The part of a mask that lies inside a picture when its corner is laid at (x, y) cut to whole pixels.
struct StampedPart {
    StampedPart(const CoverageMask& mask, int32_t width, int32_t height, float x, float y)
        : Left(ToInt32(static_cast<double>(x))),
          Top(ToInt32(static_cast<double>(y))),
          FirstX(static_cast<int32_t>(std::clamp<int64_t>(-Left, 0, mask.Width))),
          EndX(static_cast<int32_t>(std::clamp<int64_t>(width - Left, 0, mask.Width))),
          FirstY(static_cast<int32_t>(std::clamp<int64_t>(-Top, 0, mask.Height))),
          EndY(static_cast<int32_t>(std::clamp<int64_t>(height - Top, 0, mask.Height))) {}

    int64_t Left, Top;
    int32_t FirstX, EndX, FirstY, EndY;  // of the mask
};

void StampCoverage(CoverageLayer& coverage, const CoverageMask& mask, float x, float y, uint32_t alpha) {
    const StampedPart part(mask, coverage.Width(), coverage.Height(), x, y);
    if (part.FirstX >= part.EndX) return;
    if (part.FirstY >= part.EndY) return;
    BestMaskKernels().StampMax(
        {.Out = coverage.Row(static_cast<int32_t>(part.Top + part.FirstY)) + part.Left + part.FirstX,
         .OutPitch = static_cast<ptrdiff_t>(coverage.Pitch()),
         .Mask = mask.Row(part.FirstY) + part.FirstX,
         .MaskPitch = mask.Width,
         .Width = static_cast<size_t>(part.EndX - part.FirstX),
         .Height = part.EndY - part.FirstY},
        alpha);
}

/// Whether a mask has something in its outer `margin` rows and columns.
bool ReachesMargin(const CoverageLayer& coverage, int32_t margin) {
    for (int32_t y = 0; y < coverage.Height(); ++y) {
        const ColumnSpan span = coverage.Filled(y);
        if (span.First == span.End) continue;
        const bool isInside = y >= margin && y < coverage.Height() - margin && span.First >= margin &&
                              span.End <= coverage.Width() - margin;
        if (!isInside) return true;
    }
    return false;
}

/// False, and nothing is done, for a shadow that coverage cannot hold: none of a size that a layer may have, or one
/// whose stamps reach the margin, where a shadow stays black.
bool BuildShadowCoverage(const LayerSettings& settings, GlyphBitmap& layer, const CoverageMask& source,
                         const ShadowShape& shape, const Softness& soft, const Fill& fill) {
    auto coverage = AllocateCoverage(layer, shape.Width, shape.Height);
    if (!coverage) return false;
    shape.Stamp([&](float x, float y) { StampCoverage(*coverage, source, x, y, fill.Alpha); });
    if (soft.Margin > 0 && !shape.IsOneStamp() && ReachesMargin(*coverage, soft.Margin)) return false;
    Finish(settings, layer, std::move(coverage), fill.Color1, soft.Radius);
    return true;
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
    const Fill fill = FillOf(settings, style);
    const ShadowShape shape(settings, *source, style, soft.Margin);
    const auto margin = static_cast<float>(soft.Margin);
    layer.X = layer.X - margin + shape.ShiftX;
    layer.Y = layer.Y - margin + shape.ShiftY;
    if (IsCoverage(settings, fill) && BuildShadowCoverage(settings, layer, *source, shape, soft, fill)) return 1;

    if (!Allocate(layer, shape.Width, shape.Height)) return 0;
    shape.Stamp([&](float x, float y) { StampShadowAlpha(layer, *source, x, y, fill.Alpha); });
    ColorShadow(layer, fill, soft.Margin);
    Blur(settings, layer, soft.Radius);
    return 1;
}

void StampShadowAlpha(GlyphBitmap& layer, const CoverageMask& mask, float x, float y, uint32_t alpha) {
    const StampedPart part(mask, layer.Width, layer.Height, x, y);
    for (int32_t row = part.FirstY; row < part.EndY; ++row) {
        const uint8_t* const in = mask.Row(row);
        uint32_t* const out = RowOf(layer, static_cast<int32_t>(part.Top + row));
        for (int32_t column = part.FirstX; column < part.EndX; ++column) {
            uint32_t& pixel = out[part.Left + column];
            const uint32_t stamped = in[column] * (alpha + 1) / 256;
            if (AlphaOf(pixel) < stamped) pixel = WithAlpha(pixel, stamped);
        }
    }
}

}  // namespace captionfx
