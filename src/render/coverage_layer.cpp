#include "render/coverage_layer.h"

#include <algorithm>

#include "render/kernels/mask_kernels.h"

namespace captionfx {
namespace {

bool IsEmpty(const ColumnSpan& span) {
    return span.First == span.End;
}

/// The smallest span around both, of which an empty one takes no part.
ColumnSpan Around(const ColumnSpan& a, const ColumnSpan& b) {
    if (IsEmpty(a)) return b;
    if (IsEmpty(b)) return a;
    return {std::min(a.First, b.First), std::max(a.End, b.End)};
}

}  // namespace

ColumnSpan CoverageLayer::Filled(int32_t y) const {
    return BestMaskKernels().FindSpan(Row(y), width_);
}

void CoverageLayer::FindSpans() {
    placedSpans_.assign(static_cast<size_t>(height_) + 1, {});
    const auto find = BestMaskKernels().FindSpan;
    ColumnSpan above;
    for (int32_t y = 0; y <= height_; ++y) {
        const ColumnSpan here = y < height_ ? find(Row(y), width_) : ColumnSpan{};
        ColumnSpan& placed = placedSpans_[static_cast<size_t>(y)];
        placed = Around(above, here);
        if (!IsEmpty(placed)) ++placed.End;
        above = here;
    }
}

}  // namespace captionfx
