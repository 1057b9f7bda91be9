// RasterizerGen: all that depends on the size of a frame, the lights, and the fills.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "sgl/clipping.h"
#include "sgl/lighting.h"
#include "sgl/scan_conversion.h"
#include "sgl/span_routines.h"

namespace sgl {

class RasterizerGen {
public:
    /// `rasterMode` kFloatRasterMode draws all textures in floats, any other value in fixed point.
    explicit RasterizerGen(int32_t rasterMode) : rasterMode_(rasterMode) {}

    /// Takes over the frame, of `width` times `height` pixels, and the volume. The depth buffer is made anew, and
    /// clear, when the size changes. What cannot be allocated is missing, and what needs it draws nothing.
    void Configure(bool perspective, int32_t width, int32_t height, const ViewVolume& volume, uint32_t* frame);

    /// Draws nothing until configured again: the frame is about to go.
    void ForgetFrame() { frame_ = nullptr; }

    /// A changed setting makes or frees the depth buffer. A new one is clear: infinitely far everywhere.
    void SetDepthTest(bool isEnabled);
    void ClearDepth();

    /// Not 0: flat triangles are written as 0xAAYYUUVV, as long as there is no depth test.
    void SetColorSpace(uint32_t yuv) { colorSpace_ = yuv; }

    [[nodiscard]] const ScreenProjection& Projection() const { return projection_; }
    [[nodiscard]] Lighting& Lights() { return lighting_; }

    // One polygon each, which came from `triangle`.
    void FillFlat(const ScreenPolygon& polygon, const SGLTriangle& triangle);
    void FillSmooth(const ScreenPolygon& polygon);  ///< Only with a depth buffer; without one nothing appears.
    void FillTextured(const ScreenPolygon& polygon, const SGLTriangle& triangle, BlendMode blendMode);

private:
    [[nodiscard]] std::span<ScanEdge> EdgeTable() const;
    [[nodiscard]] size_t PixelCount() const;
    /// The index of the first pixel of row `i` of a run.
    [[nodiscard]] int32_t FirstPixel(const ScanRun& run, int32_t i) const { return rowPixels_.get()[run.firstRow + i]; }
    void MakeDepth();
    void MakeRayTables();
    void FillFlatRows(const ScanRun& run, const Bgr& color);
    void FillFlatRowsWithDepth(const ScanRun& run, const Bgr& color);

    ScreenProjection projection_;
    uint32_t* frame_ = nullptr;
    std::unique_ptr<int32_t[]> rowPixels_;  ///< height + 1: the index of each row's first pixel.
    bool depthEnabled_ = false;
    std::unique_ptr<int32_t[]> depth_;  ///< width x height; see ScreenVertex::z. 0 is infinitely far.
    Lighting lighting_;
    int32_t width_ = -1, height_ = -1;   ///< -1 until first configured.
    std::unique_ptr<ScanEdge[]> edges_;  ///< height + 1
    RayTables rays_;
    uint32_t colorSpace_ = 0;
    int32_t rasterMode_;
};

}  // namespace sgl
