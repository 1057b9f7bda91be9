// The dilation of a mask at speed: how a kernel is taken apart for the vectors, and the memory that they work in.
#pragma once

#include <cstdint>
#include <span>

#include "render/coverage_mask.h"
#include "render/kernels/dilation_kernels.h"

namespace captionfx {

/// Takes (2 cx + 1) by (2 cy + 1) values, row by row, each from -255 to 255, apart.
[[nodiscard]] DilationPlan MakeDilationPlan(std::span<const int16_t> values, int32_t cx, int32_t cy);

/// Writes the dilation of `mask` into `destination`, whose size is that of the mask grown by the plan's Cx and Cy on
/// each side. Both are at least 1.
void DilateByPlan(const CoverageMask& mask, CoverageMask& destination, const DilationPlan& plan, Dilator* dilate);

}  // namespace captionfx
