#include "sgl/rasterizer.h"

#include <algorithm>

#include "sgl/allocation.h"
#include "sgl/fixed_point.h"

namespace sgl {
namespace {

/// The rays through the columns or rows 0 to `count` - 1: eye x / z, or y / z, a pixel past each of them.
template <class Number, class Convert>
std::unique_ptr<Number[]> MakeRays(size_t count, int32_t center, float scale, Convert convert) {
    auto rays = TryMakeArray<Number>(count);
    for (size_t i = 0; rays != nullptr && i < count; ++i)
        rays[i] = convert(static_cast<float>(Low32(static_cast<int64_t>(i) - center + 1)) / scale);
    return rays;
}

}  // namespace

void RasterizerGen::Configure(bool perspective, int32_t width, int32_t height, const ViewVolume& volume,
                              uint32_t* frame) {
    const bool sameSize = width == width_ && height == height_;
    width_ = width;
    height_ = height;
    projection_ = ScreenProjection(perspective, width, height, volume);
    frame_ = frame;
    MakeRayTables();
    if (sameSize) return;

    const size_t rows = PixelCount() > 0 ? static_cast<size_t>(height) + 1 : 0;
    rowPixels_ = TryMakeArray<int32_t>(rows);
    for (size_t y = 0; rowPixels_ != nullptr && y < rows; ++y)
        rowPixels_[y] = static_cast<int32_t>(y * static_cast<size_t>(width));
    edges_ = TryMakeArray<ScanEdge>(rows);
    MakeDepth();
}

void RasterizerGen::SetDepthTest(bool isEnabled) {
    if (isEnabled == depthEnabled_) return;
    depthEnabled_ = isEnabled;
    MakeDepth();
}

void RasterizerGen::ClearDepth() {
    if (depth_ != nullptr) std::fill_n(depth_.get(), PixelCount(), 0);
}

/// 0 before the first configuration, and for frames without pixels, which need no tables.
size_t RasterizerGen::PixelCount() const {
    return width_ > 0 && height_ > 0 ? static_cast<size_t>(width_) * static_cast<size_t>(height_) : 0;
}

std::span<ScanEdge> RasterizerGen::EdgeTable() const {
    if (edges_ == nullptr || rowPixels_ == nullptr || PixelCount() == 0) return {};
    return {edges_.get(), static_cast<size_t>(height_) + 1};
}

void RasterizerGen::MakeDepth() {
    depth_ = depthEnabled_ ? TryMakeArray<int32_t>(PixelCount()) : nullptr;
}

void RasterizerGen::MakeRayTables() {
    rays_ = {};
    if (PixelCount() == 0) return;
    const auto make = [&]<class Number>(auto convert, std::unique_ptr<Number[]>& x, std::unique_ptr<Number[]>& y) {
        x = MakeRays<Number>(static_cast<size_t>(width_) + 1, projection_.centerXi, projection_.projScale, convert);
        y = MakeRays<Number>(static_cast<size_t>(height_) + 1, projection_.centerYi, projection_.projScale, convert);
    };
    if (rasterMode_ == kFloatRasterMode) {
        make([](float ray) { return ray; }, rays_.xFloat, rays_.yFloat);
    } else {
        make([](float ray) { return ToInt32(ray * 65536.0f); }, rays_.x, rays_.y);
    }
}

void RasterizerGen::FillTextured(const ScreenPolygon& polygon, const SGLTriangle& triangle, BlendMode blendMode) {
    const ScanRun run = ScanConvert(polygon, EdgeTable(), false);
    if (run.rows == 0) return;
    const SpanSurface surface{frame_, depth_.get(), rowPixels_.get(), rays_, projection_.perspective};
    SelectSpanRoutine(rasterMode_, depthEnabled_, blendMode)(surface, run, triangle);
}

}  // namespace sgl
