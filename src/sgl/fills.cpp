// The fills without a picture: one colour a polygon, or colours that run from corner to corner.
#include <algorithm>
#include <utility>

#include "sgl/fixed_point.h"
#include "sgl/rasterizer.h"

namespace sgl {
namespace {

constexpr uint32_t kOpaque = 0xFF000000;

uint32_t RgbWord(const Bgr& c) {
    return uint32_t{c.r} << 16 | uint32_t{c.g} << 8 | c.b;
}

/// Studio range: Y 16..235, U and V 16..240 about 128; 12 bits of fraction, with a half added for rounding.
uint32_t YuvWord(const Bgr& c) {
    const int32_t r = c.r, g = c.g, b = c.b;
    const int32_t y = (1053 * r + 2064 * g + 401 * b + 67584) >> 12;
    const int32_t u = (-606 * r - 1192 * g + 1798 * b + 526336) >> 12;
    const int32_t v = (1798 * r - 1507 * g - 291 * b + 526336) >> 12;
    return static_cast<uint32_t>(y << 16 | u << 8 | v);
}

/// A row of a fill with depth, inside the frame. Its start values are those of the row's end, wherever that lies.
struct DepthRow {
    ScanEnd from, to;  ///< From left to right.
    int32_t start, length;
    int32_t zStep;

    DepthRow(const ScanEdge& edge, const ScreenProjection& s) : from(edge.left), to(edge.right) {
        if (from.x > to.x) std::swap(from, to);
        start = std::max(from.x, s.clipLeftI);
        length = from.x < s.clipRightI && to.x >= s.clipLeftI ? std::min(to.x, s.clipRightI) - start : 0;
        zStep = Subtract(to.z, from.z) / (length + 1);
    }
};

/// Nearer is greater, and wins.
bool PassesDepth(int32_t& depth, int32_t z) {
    if (depth >= z) return false;
    depth = z;
    return true;
}

}  // namespace

void RasterizerGen::FillFlat(const ScreenPolygon& polygon, const SGLTriangle& triangle) {
    if (frame_ == nullptr) return;
    const ScanRun run = ScanConvert(polygon, EdgeTable(), false);
    if (run.rows == 0) return;
    const Bgr color = lighting_.FaceColor(triangle);
    depthEnabled_ ? FillFlatRowsWithDepth(run, color) : FillFlatRows(run, color);
}

void RasterizerGen::FillFlatRows(const ScanRun& run, const Bgr& color) {
    const uint32_t word = kOpaque | (colorSpace_ != 0 ? YuvWord(color) : RgbWord(color));
    for (int32_t i = 0; i < run.rows; ++i) {
        const auto [x0, x1] = std::minmax({run.edges[i].left.x, run.edges[i].right.x});
        if (x0 >= projection_.clipRightI || x1 < projection_.clipLeftI) continue;
        uint32_t* row = frame_ + FirstPixel(run, i);
        std::fill(row + std::max(x0, projection_.clipLeftI), row + std::min(x1, projection_.clipRightI), word);
    }
}

/// Unlike the fill without depth this one writes alpha 0, and never YUV.
void RasterizerGen::FillFlatRowsWithDepth(const ScanRun& run, const Bgr& color) {
    if (depth_ == nullptr) return;
    const uint32_t word = RgbWord(color);
    for (int32_t i = 0; i < run.rows; ++i) {
        const DepthRow row(run.edges[i], projection_);
        const int32_t first = FirstPixel(run, i) + row.start;
        int32_t z = row.from.z;
        for (int32_t p = first; p < first + row.length; ++p, z = Add(z, row.zStep)) {
            if (PassesDepth(depth_[static_cast<size_t>(p)], z)) frame_[p] = word;
        }
    }
}

void RasterizerGen::FillSmooth(const ScreenPolygon& polygon) {
    if (frame_ == nullptr || depth_ == nullptr) return;
    const ScanRun run = ScanConvert(polygon, EdgeTable(), true);
    for (int32_t i = 0; i < run.rows; ++i) {
        const DepthRow row(run.edges[i], projection_);
        if (row.length == 0) continue;
        const int32_t first = FirstPixel(run, i) + row.start;
        const auto [c0, c1] = std::pair(row.from.color, row.to.color);
        const Rgb step{Subtract(c1.r, c0.r) / row.length, Subtract(c1.g, c0.g) / row.length,
                       Subtract(c1.b, c0.b) / row.length};
        Rgb color = c0;
        int32_t z = row.from.z;
        for (int32_t p = first; p < first + row.length; ++p, z = Add(z, row.zStep)) {
            if (PassesDepth(depth_[static_cast<size_t>(p)], z)) {
                const auto byte = [](int32_t sum) { return static_cast<uint8_t>(sum >> 16); };
                frame_[p] = (frame_[p] & kOpaque) | RgbWord({byte(color.b), byte(color.g), byte(color.r)});
            }
            color = {Add(color.r, step.r), Add(color.g, step.g), Add(color.b, step.b)};
        }
    }
}

}  // namespace sgl
