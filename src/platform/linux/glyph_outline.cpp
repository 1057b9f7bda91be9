#include "platform/linux/glyph_outline.h"

#include FT_OUTLINE_H

#include <algorithm>
#include <cstddef>
#include <span>

#include "platform/linux/font_face.h"

namespace captionfx {
namespace {

/// Hinting stays on although matrices follow: GDI's outlines are hinted at 2048. FreeType's autohinter, which would
/// step in for fonts without instructions, is kept out: its results change from one FreeType version to the next.
constexpr FT_Int32 kLoadFlags = FT_LOAD_NO_BITMAP | FT_LOAD_NO_AUTOHINT;

/// Synthetic bold adds a 24th of the em in both directions.
constexpr FT_Pos kBoldStrength = kEmPx * 64 / 24;

constexpr int32_t kPixel = 64;

bool IsWithinLimits(const FT_BBox& box) {
    return box.xMin >= -kMaxOutlineCoordinate && box.yMin >= -kMaxOutlineCoordinate &&
           box.xMax <= kMaxOutlineCoordinate && box.yMax <= kMaxOutlineCoordinate;
}

/// The box of the control points, not of the curves. Its edges go outward to whole pixels, but those of an emboldened
/// glyph stay; then ascent and descent cut it. Both are so in GDI, and move ink only at the cut.
OutlineBox EmBoxOf(FT_BBox box, const OutlineSettings& settings) {
    if (!settings.MakeBold) {
        box.xMin &= -kPixel;
        box.yMin &= -kPixel;
        box.xMax = (box.xMax + kPixel - 1) & -kPixel;
        box.yMax = (box.yMax + kPixel - 1) & -kPixel;
    }
    const auto clamped = [](FT_Pos edge) {
        return static_cast<int32_t>(std::clamp<FT_Pos>(edge, -kMaxOutlineCoordinate, kMaxOutlineCoordinate));
    };
    return {clamped(box.xMin), clamped(std::max(box.yMin, FT_Pos{-kPixel} * settings.CellDescent)), clamped(box.xMax),
            clamped(std::min(box.yMax, FT_Pos{kPixel} * settings.CellAscent))};
}

void CopyShape(const FT_Outline& from, GlyphOutline& to) {
    const auto pointCount = static_cast<size_t>(from.n_points);
    to.Points.reserve(pointCount);
    for (const FT_Vector& point : std::span(from.points, pointCount)) {
        to.Points.push_back({static_cast<int32_t>(point.x), static_cast<int32_t>(point.y)});
    }
    to.Tags.assign(from.tags, from.tags + pointCount);
    to.ContourEnds.assign(from.contours, from.contours + static_cast<size_t>(from.n_contours));
    to.Flags = from.flags & ~FT_OUTLINE_OWNER;
}

}  // namespace

GlyphOutline LoadGlyphOutline(FT_Face face, FT_UInt glyph, HintTarget target, const OutlineSettings& settings) {
    GlyphOutline result;
    const FT_Int32 targetFlag = target == HintTarget::kMono ? FT_LOAD_TARGET_MONO : FT_LOAD_TARGET_NORMAL;
    if (FT_Load_Glyph(face, glyph, kLoadFlags | targetFlag) != 0) return result;
    FT_GlyphSlot const slot = face->glyph;
    constexpr FT_Pos kLongestAdvance = kMaxOutlineCoordinate;
    result.Advance =
        static_cast<int32_t>((std::clamp(slot->metrics.horiAdvance, -kLongestAdvance, kLongestAdvance) + 32) >> 6);
    if (slot->format != FT_GLYPH_FORMAT_OUTLINE || slot->outline.n_points <= 0) return result;

    FT_BBox box;
    FT_Outline_Get_CBox(&slot->outline, &box);
    if (settings.MakeBold && IsWithinLimits(box)) {
        FT_Outline_EmboldenXY(&slot->outline, kBoldStrength, kBoldStrength);
        FT_Outline_Get_CBox(&slot->outline, &box);
    }
    if (!IsWithinLimits(box)) return result;  // only a damaged font reaches so far
    result.EmBox = EmBoxOf(box, settings);
    if (result.EmBox.yMin <= result.EmBox.yMax) CopyShape(slot->outline, result);
    return result;
}

void OutlineTable::Insert(char16_t unit, const GlyphOutline& outline) {
    std::atomic<Page*>& slot = pages_[unit >> 8U];
    Page* page = slot.load(std::memory_order_relaxed);
    if (page == nullptr) {
        page = owned_.emplace_back(std::make_unique<Page>()).get();
        slot.store(page, std::memory_order_release);
    }
    (*page)[unit & 0xFFU].store(&outline, std::memory_order_release);
}

}  // namespace captionfx
