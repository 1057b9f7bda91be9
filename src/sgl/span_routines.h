// The textured fills. There are seven, one of them in floats; which one runs depends on the depth buffer and on
// blending.
#pragma once

#include <cstdint>
#include <memory>

#include "sgl/records.h"
#include "sgl/scan_conversion.h"

namespace sgl {

enum class BlendMode : uint8_t { kOpaque, kAlphaTest, kBlend };

inline constexpr int32_t kFloatRasterMode = 3;

/// What a column or row of the frame sees: eye x / z of columns 0 to the width, eye y / z of rows 0 to the height. Only
/// the integers, 16.16, or only the floats are there.
struct RayTables {
    std::unique_ptr<int32_t[]> x, y;
    std::unique_ptr<float[]> xFloat, yFloat;
};

/// What the routines draw into. Whatever may be missing is null, and a routine that needs it draws nothing.
struct SpanSurface {
    uint32_t* frame;
    int32_t* depth;
    const int32_t* rowPixels;
    const RayTables& rays;
    bool perspective;
};

/// Draws the rows of one polygon with the texture of `triangle`, which is not null.
using SpanRoutine = void(const SpanSurface& surface, const ScanRun& run, const SGLTriangle& triangle);

[[nodiscard]] SpanRoutine* SelectSpanRoutine(int32_t rasterMode, bool depthEnabled, BlendMode blendMode);

}  // namespace sgl
