// For tests: a row loop of every vector width that this processor has. Only files that Highway includes again see this.
#pragma once

#include <hwy/highway.h>

namespace captionfx {

/// Calls use() with each width set in turn, so that a HWY_DYNAMIC_DISPATCH in it gives the loop of that width.
template <class Use>
void ForEachVectorTarget(Use use) {
    for (int64_t left = hwy::SupportedTargets() & HWY_TARGETS; left != 0; left &= left - 1) {
        hwy::SetSupportedTargetsForTest(left & -left);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
        use();
    }
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

}  // namespace captionfx
