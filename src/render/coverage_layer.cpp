#include "render/coverage_layer.h"

#include "render/kernels/mask_kernels.h"

namespace captionfx {

void CoverageLayer::FindSpans() {
    spans_.assign(static_cast<size_t>(height_) + 2, {});
    const auto find = BestMaskKernels().FindSpan;
    for (int32_t y = 0; y < height_; ++y) spans_[static_cast<size_t>(y) + 1] = find(Row(y), width_);
}

}  // namespace captionfx
