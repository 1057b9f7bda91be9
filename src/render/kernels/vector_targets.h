// For tests: a row loop of every vector width that this processor has. Only files that Highway includes again see this.
#pragma once

#include <vector>

#include <hwy/highway.h>

namespace captionfx {

/// What choose(), which holds a HWY_DYNAMIC_DISPATCH, gives with each width set in turn; widths without a loop, null,
/// are left out.
template <class Choose>
auto OfEachVectorTarget(Choose choose) {
    std::vector<decltype(choose())> all;
    for (int64_t left = hwy::SupportedTargets() & HWY_TARGETS; left != 0; left &= left - 1) {
        hwy::SetSupportedTargetsForTest(left & -left);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
        if (const auto chosen = choose()) all.push_back(chosen);
    }
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    return all;
}

}  // namespace captionfx
