// The platform's fonts: which families there are, and what a realised font answers at the one height that the library
// asks for. All answers are in pixels of an em of 2048.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/log_font.h"

namespace captionfx {

/// Metrics of an outline font, signs as the font has them: descents below the baseline are negative.
struct OutlineMetrics {
    int32_t Height;  ///< Ascent plus descent of the cell.
    int32_t InternalLeading, ExternalLeading;
    int32_t Ascent, Descent;  ///< Typographic, not those of the cell.
    int32_t StrikeoutSize, StrikeoutPosition;
    int32_t UnderscoreSize, UnderscorePosition;
};

/// Advance and cell height of one code unit.
struct TextExtent {
    int32_t cx, cy;
};

/// 2-by-2 matrix in 16.16: x' = (eM11 x + eM21 y), y' = (eM12 x + eM22 y), y upward.
struct GlyphMatrix {
    int32_t eM11, eM12, eM21, eM22;
};

enum class GlyphFormat {
    kMono,   ///< One bit a pixel, the leftmost in the highest bit, rows padded to 32 bits.
    kGray2,  ///< 0 to 4, one byte a pixel, rows padded to 4 bytes; so are the other grays.
    kGray4,  ///< 0 to 16.
    kGray8,  ///< 0 to 64.
};

/// Coverage of one glyph as the platform delivers it.
struct GlyphCoverage {
    std::vector<uint8_t> Bytes;
    int32_t BlackBoxX, BlackBoxY;  ///< Size in pixels, without row padding.
    int32_t OriginX, OriginY;      ///< Upper left corner from the character's base point, y upward.
};

/// A font that was realised. It may be used on several threads at once.
class PlatformFont {
public:
    virtual ~PlatformFont() = default;

    /// Nothing when the font has no outline metrics, which is how bitmap fonts show.
    [[nodiscard]] virtual std::optional<OutlineMetrics> Metrics() const = 0;

    /// Extent of one code unit. What the font lacks is measured as its missing glyph; a font without outlines gives 0,
    /// 0.
    [[nodiscard]] virtual TextExtent Extent(char16_t unit) const = 0;

    /// Fills `glyphs`, as long as `text`, with the glyph index of each code unit, 0 for one that the font lacks; each
    /// surrogate half is lacking. Returns whether any is 0.
    virtual bool FindMissingGlyphs(std::u16string_view text, std::span<uint16_t> glyphs) const = 0;

    /// Coverage of one code unit under a matrix. Nothing where there is no shape, as for a space.
    [[nodiscard]] virtual std::optional<GlyphCoverage> Coverage(char16_t unit, GlyphFormat format,
                                                                const GlyphMatrix& matrix) const = 0;
};

class FontSystem {
public:
    virtual ~FontSystem() = default;

    /// Calls `visit` once or more for each available family name, as they are found in LogFont::lfFaceName.
    virtual void EnumerateFamilies(const std::function<void(std::u16string_view)>& visit) = 0;

    /// The system's default font; its face is one of the enumerated ones, or an alias that Realise knows, unless there
    /// is no font at all.
    [[nodiscard]] virtual LogFont DefaultGuiFont() = 0;

    /// The font that best answers a request; never null. An unknown face is answered by the default one. Cheap for a
    /// request that was realised before.
    [[nodiscard]] virtual std::shared_ptr<const PlatformFont> Realise(const LogFont& request) = 0;
};

}  // namespace captionfx
