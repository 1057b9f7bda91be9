// From a polygon of whole numbers to its rows.
#pragma once

#include <cstdint>
#include <span>

#include "sgl/clipping.h"

namespace sgl {

/// One end of a row.
struct ScanEnd {
    int32_t x, z;
    Rgb color;
};
struct ScanEdge {
    ScanEnd left, right;
};

/// The rows of one polygon: `edges` is that of `firstRow`.
struct ScanRun {
    int32_t rows = 0, firstRow = 0;
    const ScanEdge* edges = nullptr;
};

/// Rows run from the least y to the greatest less 1; in a row pixels run from the left x to the right x less 1, so that
/// neighbours share no pixel. The table is written from its start, and never past its end. Colours are stepped only
/// when wanted. The run has no rows when the polygon has no height.
[[nodiscard]] ScanRun ScanConvert(const ScreenPolygon& polygon, std::span<ScanEdge> table, bool withColors);

}  // namespace sgl
