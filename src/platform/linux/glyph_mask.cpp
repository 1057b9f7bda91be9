#include "platform/linux/glyph_mask.h"

#include FT_OUTLINE_H

#include <algorithm>
#include <array>
#include <type_traits>

namespace captionfx {
namespace {

constexpr int64_t kPixel = 64;                        // 26.6
constexpr int64_t kOne = 0x10000;                     // 16.16
constexpr int64_t kShear = 0x4000;                    // synthetic italic leans by a quarter
constexpr int64_t kMaxSide = 32767;                   // pixels; FreeType's rasterisers are made for 16-bit coordinates
constexpr int64_t kMaxArea = 1LL << 26U;              // pixels
constexpr int64_t kMaxPoint = 2 * kMaxSide * kPixel;  // points may lie outside the mask, but not by much

/// A 16.16 matrix in 64 bits, x' = xx x + xy y. With factors below 2^33 and coordinates up to 2^26 nothing overflows.
struct WideMatrix {
    int64_t xx, xy, yx, yy;
};
struct WidePoint {
    int64_t x, y;
};

/// Rounds to nearest, halves away from zero, as FT_MulFix does.
constexpr int64_t MulFix(int64_t a, int64_t b) {
    const int64_t product = a * b;
    return (product + kOne / 2 - (product < 0 ? 1 : 0)) >> 16U;
}

constexpr WidePoint Transform(const WideMatrix& m, int64_t x, int64_t y) {
    return {MulFix(x, m.xx) + MulFix(y, m.xy), MulFix(x, m.yx) + MulFix(y, m.yy)};
}

/// The matrix with the slant in it. One matrix: slanting the points first would round twice.
WideMatrix MatrixOf(const GlyphMatrix& matrix, bool oblique) {
    WideMatrix result{matrix.eM11, matrix.eM21, matrix.eM12, matrix.eM22};
    if (oblique) {
        result.xy += MulFix(result.xx, kShear);
        result.yy += MulFix(result.yx, kShear);
    }
    return result;
}

/// Whole pixels; top above bottom.
struct DeviceBox {
    int64_t Left, Bottom, Right, Top;
    [[nodiscard]] int64_t Width() const { return Right - Left; }
    [[nodiscard]] int64_t Height() const { return Top - Bottom; }
};

/// The hull of the transformed em box, not of the transformed outline: turned and slanted glyphs have empty margins, as
/// they have in GDI, so that masks can be compared.
DeviceBox DeviceBoxOf(const OutlineBox& em, const WideMatrix& m) {
    const std::array corners{Transform(m, em.xMin, em.yMin), Transform(m, em.xMin, em.yMax),
                             Transform(m, em.xMax, em.yMin), Transform(m, em.xMax, em.yMax)};
    const auto [left, right] = std::ranges::minmax(corners, {}, &WidePoint::x);
    const auto [bottom, top] = std::ranges::minmax(corners, {}, &WidePoint::y);
    return {left.x >> 6U, bottom.y >> 6U, (right.x + kPixel - 1) >> 6U, (top.y + kPixel - 1) >> 6U};
}

bool IsDrawable(const DeviceBox& box) {
    constexpr int64_t kFarthest = 1LL << 30U;  // the origin must fit into 32 bits
    return box.Width() > 0 && box.Height() > 0 && box.Width() <= kMaxSide && box.Height() <= kMaxSide &&
           box.Width() * box.Height() <= kMaxArea && std::min(box.Left, box.Bottom) >= -kFarthest &&
           std::max(box.Right, box.Top) <= kFarthest;
}

/// FreeType's view of an outline in memory that may be written to. One for each thread, for its capacity.
struct DrawingBuffer {
    LibraryHandle Library = NewFreeTypeLibrary();
    std::vector<FT_Vector> Points;
    std::vector<std::remove_pointer_t<decltype(FT_Outline::tags)>> Tags;
    std::vector<std::remove_pointer_t<decltype(FT_Outline::contours)>> ContourEnds;
    int Flags = 0;

    [[nodiscard]] FT_Outline Outline() {
        FT_Outline outline{};
        outline.n_points = static_cast<decltype(outline.n_points)>(Points.size());
        outline.n_contours = static_cast<decltype(outline.n_contours)>(ContourEnds.size());
        outline.points = Points.data();
        outline.tags = Tags.data();
        outline.contours = ContourEnds.data();
        outline.flags = Flags;
        return outline;
    }
};

/// Fills `buffer` with the transformed outline, (0, 0) being the lower left corner of `box`. False if a point lies out
/// of all reach.
bool PlaceOutline(const GlyphOutline& outline, const WideMatrix& m, const DeviceBox& box, DrawingBuffer& buffer) {
    buffer.Points.clear();
    buffer.Points.reserve(outline.Points.size());
    for (const OutlinePoint& point : outline.Points) {
        const WidePoint moved = Transform(m, point.x, point.y);
        const int64_t x = moved.x - box.Left * kPixel, y = moved.y - box.Bottom * kPixel;
        if (std::max(x, y) > kMaxPoint || std::min(x, y) < -kMaxPoint) return false;
        buffer.Points.push_back({x, y});
    }
    buffer.Tags.assign(outline.Tags.begin(), outline.Tags.end());
    buffer.ContourEnds.assign(outline.ContourEnds.begin(), outline.ContourEnds.end());
    buffer.Flags = outline.Flags;
    return true;
}

/// Bytes from one row to the next.
int64_t PitchOf(int64_t width, GlyphFormat format) {
    return format == GlyphFormat::kMono ? (width + 31) / 32 * 4 : (width + 3) / 4 * 4;
}

/// Levels above 0 of a gray format: the square of its samples in one direction.
unsigned TopLevelOf(GlyphFormat format) {
    switch (format) {
        case GlyphFormat::kGray2:
            return 2 * 2;
        case GlyphFormat::kGray4:
            return 4 * 4;
        default:
            return 8 * 8;
    }
}

void ReduceLevels(std::vector<uint8_t>& bytes, unsigned topLevel) {
    for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(byte * (topLevel + 1) >> 8U);
}

}  // namespace

std::optional<GlyphCoverage> DrawGlyphMask(const GlyphOutline& outline, const GlyphMatrix& matrix, bool oblique,
                                           GlyphFormat format) {
    if (outline.Points.empty()) return std::nullopt;
    const WideMatrix wide = MatrixOf(matrix, oblique);
    const DeviceBox box = DeviceBoxOf(outline.EmBox, wide);
    thread_local DrawingBuffer buffer;
    if (!IsDrawable(box) || !PlaceOutline(outline, wide, box, buffer)) return std::nullopt;

    GlyphCoverage result;
    result.BlackBoxX = static_cast<int32_t>(box.Width());
    result.BlackBoxY = static_cast<int32_t>(box.Height());
    result.OriginX = static_cast<int32_t>(box.Left);
    result.OriginY = static_cast<int32_t>(box.Top);
    const int64_t pitch = PitchOf(box.Width(), format);
    result.Bytes.resize(static_cast<size_t>(pitch * box.Height()));

    const bool mono = format == GlyphFormat::kMono;
    FT_Bitmap bitmap{};
    bitmap.width = static_cast<unsigned>(box.Width());
    bitmap.rows = static_cast<unsigned>(box.Height());
    bitmap.pitch = static_cast<int>(pitch);  // positive: the upper row first
    bitmap.buffer = result.Bytes.data();
    bitmap.num_grays = 256;
    bitmap.pixel_mode = static_cast<unsigned char>(mono ? FT_PIXEL_MODE_MONO : FT_PIXEL_MODE_GRAY);
    FT_Outline shape = buffer.Outline();
    if (buffer.Library == nullptr || FT_Outline_Get_Bitmap(buffer.Library.get(), &shape, &bitmap) != 0)
        return std::nullopt;
    if (!mono) ReduceLevels(result.Bytes, TopLevelOf(format));
    return result;
}

}  // namespace captionfx
