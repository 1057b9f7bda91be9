#include "platform/windows/gdi_font.h"

#include <windows.h>
#include <algorithm>
#include <bit>
#include <string>
#include <usp10.h>
#include <vector>

#include "platform/windows/screen_font.h"
#include "platform/windows/wide_text.h"

namespace captionfx {
namespace {

std::optional<OutlineMetrics> MetricsOf(const LogFont& request) {
    const ScreenFont font(request);
    OUTLINETEXTMETRICW metrics{};
    static_assert(sizeof metrics == 232);
    if (GetOutlineTextMetricsW(font.Context(), sizeof metrics, &metrics) == 0) return std::nullopt;
    return OutlineMetrics{.Height = metrics.otmTextMetrics.tmHeight,
                          .InternalLeading = metrics.otmTextMetrics.tmInternalLeading,
                          .ExternalLeading = metrics.otmTextMetrics.tmExternalLeading,
                          .Ascent = metrics.otmAscent,
                          .Descent = metrics.otmDescent,
                          .StrikeoutSize = static_cast<int32_t>(metrics.otmsStrikeoutSize),
                          .StrikeoutPosition = metrics.otmsStrikeoutPosition,
                          .UnderscoreSize = metrics.otmsUnderscoreSize,
                          .UnderscorePosition = metrics.otmsUnderscorePosition};
}

UINT GdiFormat(GlyphFormat format) {
    switch (format) {
        case GlyphFormat::kMono:
            return GGO_BITMAP;
        case GlyphFormat::kGray2:
            return GGO_GRAY2_BITMAP;
        case GlyphFormat::kGray4:
            return GGO_GRAY4_BITMAP;
        case GlyphFormat::kGray8:
            break;
    }
    return GGO_GRAY8_BITMAP;
}

/// A FIXED is a 16.16 number in two halves, the fraction first.
MAT2 GdiMatrix(const GlyphMatrix& matrix) {
    return {.eM11 = std::bit_cast<FIXED>(matrix.eM11),
            .eM12 = std::bit_cast<FIXED>(matrix.eM12),
            .eM21 = std::bit_cast<FIXED>(matrix.eM21),
            .eM22 = std::bit_cast<FIXED>(matrix.eM22)};
}

/// A mask too large to be meant: the bounds are those of the other systems.
bool IsTooLarge(const GLYPHMETRICS& metrics, DWORD bytes) {
    constexpr UINT kLongestSide = 32767;
    constexpr DWORD kMostBytes = 1U << 26U;
    return metrics.gmBlackBoxX > kLongestSide || metrics.gmBlackBoxY > kLongestSide || bytes > kMostBytes;
}

constexpr bool IsSurrogateHalf(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}

/// The glyphs of `units` in a font, 0 for what it lacks. Empty when Uniscribe cannot tell.
std::vector<uint16_t> AskForGlyphs(const LogFont& request, std::u16string_view units) {
    const ScreenFont font(request);
    std::vector<uint16_t> glyphs(units.size());
    SCRIPT_CACHE cache = nullptr;
    const HRESULT result =
        ScriptGetCMap(font.Context(), &cache, Units(units), static_cast<int>(units.size()), 0, glyphs.data());
    ScriptFreeCache(&cache);
    if (FAILED(result)) glyphs.clear();
    return glyphs;
}

}  // namespace

GdiFont::GdiFont(const LogFont& request) : request_(request), metrics_(MetricsOf(request)) {}

TextExtent GdiFont::Extent(char16_t unit) const {
    if (!metrics_) return {0, 0};
    if (const auto known = extents_.Find(unit)) return *known;
    const ScreenFont font(request_);
    SIZE size{};
    GetTextExtentPoint32W(font.Context(), Units({&unit, 1}), 1, &size);
    const TextExtent extent{size.cx, size.cy};
    extents_.Keep(unit, extent);
    return extent;
}

bool GdiFont::FindMissingGlyphs(std::u16string_view text, std::span<uint16_t> glyphs) const {
    std::u16string unknown;
    for (const char16_t unit : text) {
        if (!IsSurrogateHalf(unit) && !glyphs_.Find(unit)) unknown += unit;
    }
    if (!unknown.empty()) {
        const std::vector<uint16_t> found = AskForGlyphs(request_, unknown);
        if (found.empty()) {  // then nothing is known to be missing, and nothing looks for another font
            std::ranges::fill(glyphs, uint16_t{0});
            return false;
        }
        for (size_t i = 0; i < found.size(); ++i) glyphs_.Keep(unknown[i], found[i]);
    }
    for (size_t i = 0; i < std::min(text.size(), glyphs.size()); ++i) glyphs[i] = glyphs_.Find(text[i]).value_or(0);
    return std::ranges::find(glyphs, 0) != glyphs.end();
}

std::optional<GlyphCoverage> GdiFont::Coverage(char16_t unit, GlyphFormat format, const GlyphMatrix& matrix) const {
    const ScreenFont font(request_);
    const MAT2 gdiMatrix = GdiMatrix(matrix);
    GLYPHMETRICS metrics{};
    const auto ask = [&](DWORD size, void* bytes) {
        const DWORD count =
            GetGlyphOutlineW(font.Context(), unit, GdiFormat(format), &metrics, size, bytes, &gdiMatrix);
        return count == GDI_ERROR ? 0 : count;
    };
    const DWORD size = ask(0, nullptr);
    if (size == 0 || IsTooLarge(metrics, size)) return std::nullopt;
    GlyphCoverage coverage{};
    coverage.Bytes.resize(size);
    if (ask(size, coverage.Bytes.data()) == 0) return std::nullopt;
    coverage.BlackBoxX = static_cast<int32_t>(metrics.gmBlackBoxX);
    coverage.BlackBoxY = static_cast<int32_t>(metrics.gmBlackBoxY);
    coverage.OriginX = metrics.gmptGlyphOrigin.x;
    coverage.OriginY = metrics.gmptGlyphOrigin.y;
    return coverage;
}

}  // namespace captionfx
