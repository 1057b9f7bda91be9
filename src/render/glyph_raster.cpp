#include "render/glyph_raster.h"

#include <cmath>

#include "platform/conversions.h"
#include "platform/portable_math.h"
#include "render/kernels/mask_kernels.h"

namespace captionfx {
namespace {

constexpr float kLaidOnItsSideDeg = 270.0F;

GlyphFormat FormatOf(int32_t antialiasMode) {
    switch (antialiasMode) {
        case 0:
            return GlyphFormat::kGray8;
        case 2:
            return GlyphFormat::kGray2;
        case 3:
            return GlyphFormat::kMono;
        default:
            return GlyphFormat::kGray4;
    }
}

/// What a gray level is multiplied by, less 1: full coverage becomes 255 in each format.
uint32_t LevelFactor(GlyphFormat format) {
    switch (format) {
        case GlyphFormat::kGray8:
            return 4;
        case GlyphFormat::kGray2:
            return 64;
        default:
            return 16;
    }
}

int64_t RoundedUp(int64_t value, int64_t multiple) {
    return (value + multiple - 1) / multiple * multiple;
}

/// Gray levels become coverage in 8-bit arithmetic: a level above the top one wraps.
std::optional<CoverageMask> MaskFromGrays(const GlyphCoverage& glyph, GlyphFormat format) {
    const auto bytes = static_cast<int64_t>(glyph.Bytes.size());
    const int64_t height = glyph.BlackBoxY;
    int64_t width = RoundedUp(glyph.BlackBoxX, 4);
    // A platform may pad its rows by more: they are as long as the byte count allows.
    while (bytes % width != 0 && (width + 4) * height <= bytes) width += 4;
    std::optional<CoverageMask> mask = MakeMask(width, height);
    if (!mask || bytes < width * height) return std::nullopt;
    BestMaskKernels().CoverageOfLevels({.Out = mask->Bytes.data(),
                                        .OutPitch = 0,
                                        .Mask = glyph.Bytes.data(),
                                        .MaskPitch = 0,
                                        .Width = mask->Bytes.size(),
                                        .Height = 1},
                                       LevelFactor(format));
    return mask;
}

std::optional<CoverageMask> MaskFromBits(const GlyphCoverage& glyph) {
    std::optional<CoverageMask> mask = MakeMask(RoundedUp(glyph.BlackBoxX, 32), glyph.BlackBoxY);
    if (!mask || glyph.Bytes.size() * 8 < mask->Bytes.size()) return std::nullopt;
    for (size_t i = 0; i < mask->Bytes.size(); ++i) {
        const bool isSet = (static_cast<uint32_t>(glyph.Bytes[i / 8]) >> (7 - i % 8) & 1U) != 0;
        if (isSet) mask->Bytes[i] = 255;
    }
    return mask;
}

}  // namespace

GlyphMatrix MatrixOf(const GlyphSettings& settings, const MetaFont& font, char16_t unit,
                     const GlyphTransform& transform) {
    const float sizeX = font.SizeRatio * settings.Render.ScaleX * transform.ScaleX;
    const float sizeY = font.SizeRatio * settings.Render.ScaleY * transform.ScaleY;
    const bool onItsSide = settings.VerticalTitle && unit < kFirstUprightCharacter;
    const float rotationDeg = onItsSide ? transform.RotationDeg + kLaidOnItsSideDeg : transform.RotationDeg;
    const double angleRad = -static_cast<double>(rotationDeg) * kPi64 / 180;
    const double c = std::cos(angleRad), s = std::sin(angleRad);
    const auto x = static_cast<double>(sizeX), y = static_cast<double>(sizeY);
    const auto fixed16 = [](double value) { return ToInt32(value * 65536.0); };
    return {.eM11 = fixed16(c * x), .eM12 = fixed16(s * x), .eM21 = fixed16(-s * y), .eM22 = fixed16(c * y)};
}

std::optional<RasterizedGlyph> RasterizeGlyph(const GlyphSettings& settings, char16_t unit, const MetaFont& font,
                                              const GlyphTransform& transform) {
    const GlyphMatrix matrix = MatrixOf(settings, font, unit, transform);
    if ((matrix.eM11 == 0 && matrix.eM12 == 0) || (matrix.eM21 == 0 && matrix.eM22 == 0)) return std::nullopt;

    const GlyphFormat format = FormatOf(settings.Render.AntialiasMode);
    const std::optional<GlyphCoverage> glyph = settings.Fonts.Realise(font.LogFont)->Coverage(unit, format, matrix);
    if (!glyph || glyph->Bytes.empty()) return std::nullopt;
    if (glyph->BlackBoxX < 1 || glyph->BlackBoxY < 1) return std::nullopt;
    std::optional<CoverageMask> mask =
        format == GlyphFormat::kMono ? MaskFromBits(*glyph) : MaskFromGrays(*glyph, format);
    if (!mask) return std::nullopt;
    return RasterizedGlyph{std::move(*mask), static_cast<float>(glyph->OriginX), static_cast<float>(glyph->OriginY)};
}

}  // namespace captionfx
