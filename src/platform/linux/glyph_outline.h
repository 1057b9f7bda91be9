// The outline of one glyph at the em of 2048 pixels, as it is kept once the font's face is out of the way, and the
// table that finds it by code unit.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/linux/freetype_library.h"

namespace captionfx {

/// What the glyph was hinted for; the two differ even under a matrix.
enum class HintTarget : uint8_t { kGray, kMono };

/// 1/64 pixel, y upward, like all that follows.
struct OutlinePoint {
    int32_t x, y;
};
struct OutlineBox {
    int32_t xMin, yMin, xMax, yMax;
};

/// Coordinates stay within this, so that a product with any 16.16 matrix fits into 64 bits with room to spare.
inline constexpr int32_t kMaxOutlineCoordinate = 1 << 26;

/// Immutable once made; drawn from on any thread.
struct GlyphOutline {
    std::vector<OutlinePoint> Points;  ///< None where there is no shape.
    std::vector<uint8_t> Tags;         ///< FreeType's, one for each point.
    std::vector<uint16_t> ContourEnds;
    int Flags = 0;        ///< FreeType's fill rule and drop-out control.
    OutlineBox EmBox{};   ///< Of the control points, cut at the font's cell.
    int32_t Advance = 0;  ///< In whole pixels, without what synthetic bold adds.
};

/// Whether to embolden, and the cell that the box is cut at, in pixels above and below the baseline.
struct OutlineSettings {
    bool MakeBold;
    int32_t CellAscent, CellDescent;
};

/// Loads a glyph from a face sized to the em; the caller holds the face. What cannot be loaded has neither shape nor
/// advance.
[[nodiscard]] GlyphOutline LoadGlyphOutline(FT_Face face, FT_UInt glyph, HintTarget target,
                                            const OutlineSettings& settings);

/// Outlines by code unit. Readers take no lock; one writer at a time. Does not own the outlines.
class OutlineTable {
public:
    /// Null if it is not known yet.
    [[nodiscard]] const GlyphOutline* Find(char16_t unit) const {
        const Page* const page = pages_[unit >> 8U].load(std::memory_order_acquire);
        return page == nullptr ? nullptr : (*page)[unit & 0xFFU].load(std::memory_order_acquire);
    }

    /// `outline` must outlive the table.
    void Insert(char16_t unit, const GlyphOutline& outline);

private:
    using Page = std::array<std::atomic<const GlyphOutline*>, 256>;

    std::array<std::atomic<Page*>, 256> pages_{};
    std::vector<std::unique_ptr<Page>> owned_;
};

}  // namespace captionfx
