// Compiled once for each width of vectors.
#include "render/kernels/dilation_kernels.h"

#include <algorithm>
#include <utility>

// The two lines that Highway includes this file again by.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/kernels/dilation_kernels.cpp"  // NOLINT(cppcoreguidelines-macro-usage): Highway's
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "render/kernels/vector_targets.h"

HWY_BEFORE_NAMESPACE();
namespace captionfx::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

Dilator* Dilation() {
    return nullptr;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Lanes8 = hn::ScalableTag<uint8_t>;
using Bytes = hn::Vec<Lanes8>;

constexpr Lanes8 kLanes8;

HWY_INLINE ptrdiff_t LaneCount() {
    return static_cast<ptrdiff_t>(hn::Lanes(kLanes8));
}

/// Keeps the levels of the pixels that lie above a neighbour, and fills the inner ones in the dilation.
void FindEdges(const DilationJob& job) {
    const Bytes zero = hn::Zero(kLanes8), full = hn::Set(kLanes8, 255);
    uint8_t* const inner = job.Out + job.Plan.Cy * job.Pitch;
    for (ptrdiff_t i = 0; i < job.Rows * job.Pitch; i += LaneCount()) {
        const uint8_t* const at = job.Levels + i;
        const Bytes level = hn::LoadU(kLanes8, at);
        const Bytes beside = hn::Min(hn::LoadU(kLanes8, at - 1), hn::LoadU(kLanes8, at + 1));
        const Bytes along = hn::Min(hn::LoadU(kLanes8, at - job.Pitch), hn::LoadU(kLanes8, at + job.Pitch));
        const auto isEdge = hn::Lt(hn::Min(beside, along), level);
        hn::StoreU(hn::IfThenElseZero(isEdge, level), kLanes8, job.Edges + i);
        hn::StoreU(hn::IfThenZeroElse(hn::Or(isEdge, hn::Eq(level, zero)), full), kLanes8, inner + i);
    }
}

/// out[i] = in[i - step] | in[i] | in[i + step]: runs that are not shorter than the step grow by it on both sides.
HWY_INLINE void Grow(const uint8_t* in, uint8_t* out, ptrdiff_t count, ptrdiff_t step) {
    for (ptrdiff_t i = 0; i < count; i += LaneCount()) {
        const Bytes sides = hn::Or(hn::LoadU(kLanes8, in + i - step), hn::LoadU(kLanes8, in + i + step));
        hn::StoreU(hn::Or(sides, hn::LoadU(kLanes8, in + i)), kLanes8, out + i);
    }
}

HWY_INLINE void OrInto(uint8_t* out, const uint8_t* in, ptrdiff_t count) {
    for (ptrdiff_t i = 0; i < count; i += LaneCount()) {
        hn::StoreU(hn::Or(hn::LoadU(kLanes8, out + i), hn::LoadU(kLanes8, in + i)), kLanes8, out + i);
    }
}

/// Any edge under a full position makes a full pixel, whatever its level.
void AddRuns(const DilationJob& job) {
    const Bytes zero = hn::Zero(kLanes8), full = hn::Set(kLanes8, 255);
    for (int32_t top = 0; top < job.Rows; top += job.BlockRows) {
        const ptrdiff_t count = std::min(job.BlockRows, job.Rows - top) * job.Pitch;
        const uint8_t* const edges = job.Edges + top * job.Pitch;
        uint8_t *grown = job.Grown, *growing = job.Growing;
        for (ptrdiff_t i = 0; i < count; i += LaneCount()) {
            const auto isClear = hn::Eq(hn::LoadU(kLanes8, edges + i), zero);
            hn::StoreU(hn::IfThenZeroElse(isClear, full), kLanes8, grown + i);
        }
        // The last vector may have taken in edges of the next block, and a last block is shorter than those before.
        std::fill_n(grown + count, job.Pitch + kDilationSlack, uint8_t{0});
        std::fill_n(growing + count, job.Pitch + kDilationSlack, uint8_t{0});
        int32_t half = 0;
        for (const DilationPlan::Run& run : job.Plan.Runs) {
            while (half < run.Half) {
                const int32_t step = std::min(run.Half - half, 2 * half + 1);
                Grow(grown, growing, count, step);
                std::swap(grown, growing);
                half += step;
            }
            OrInto(job.Out + (top + run.Y) * job.Pitch + run.X - job.Plan.Cx, grown, count);
        }
    }
}

/// `level` with a weight, which is the same for all its bytes.
HWY_INLINE Bytes Weighted(Bytes level, int32_t weight) {
    if (weight < 0) return hn::SaturatedSub(level, hn::Set(kLanes8, static_cast<uint8_t>(-weight)));
    const Bytes raised = hn::SaturatedAdd(level, hn::Set(kLanes8, static_cast<uint8_t>(weight)));
    return hn::IfThenZeroElse(hn::Eq(level, hn::Zero(kLanes8)), raised);  // where no edge is, nothing is raised
}

/// Raises two vectors of the dilation to the largest of the levels that lie `tap` to `endTap` from `edges`.
HWY_INLINE void AddGroup(int32_t weight, const ptrdiff_t* tap, const ptrdiff_t* endTap, const uint8_t* edges,
                         Bytes& first, Bytes& second) {
    Bytes level1 = hn::LoadU(kLanes8, edges + *tap), level2 = hn::LoadU(kLanes8, edges + *tap + LaneCount());
    while (++tap != endTap) {
        level1 = hn::Max(level1, hn::LoadU(kLanes8, edges + *tap));
        level2 = hn::Max(level2, hn::LoadU(kLanes8, edges + *tap + LaneCount()));
    }
    first = hn::Max(first, Weighted(level1, weight));
    second = hn::Max(second, Weighted(level2, weight));
}

HWY_INLINE bool IsFull(Bytes bytes) {
    return hn::AllTrue(kLanes8, hn::Eq(bytes, hn::Set(kLanes8, 255)));
}

/// Vectors that are full already, most of a wide border, are left at once.
void AddRim(const DilationJob& job) {
    const DilationPlan& plan = job.Plan;
    const ptrdiff_t count = (job.Rows + 2 * ptrdiff_t{plan.Cy}) * job.Pitch, step = 2 * LaneCount();
    for (ptrdiff_t i = 0; i < count; i += step) {
        Bytes first = hn::LoadU(kLanes8, job.Out + i), second = hn::LoadU(kLanes8, job.Out + i + LaneCount());
        const ptrdiff_t firstRow = i / job.Pitch, lastRow = (i + step - 1) / job.Pitch;
        size_t group = 0, tap = 0;
        for (const DilationPlan::Band& band : plan.Bands) {
            if (IsFull(hn::And(first, second)) || lastRow < band.FirstRow) break;
            if (firstRow - (band.EndRow - 1) >= job.Rows) {
                group = band.EndGroup;
                tap = band.EndTap;
                continue;
            }
            for (; group < band.EndGroup; ++group) {
                const size_t endTap = plan.Groups[group].EndTap;
                AddGroup(plan.Groups[group].Weight, job.Offsets + tap, job.Offsets + endTap, job.Edges + i, first,
                         second);
                tap = endTap;
            }
        }
        hn::StoreU(first, kLanes8, job.Out + i);
        hn::StoreU(second, kLanes8, job.Out + i + LaneCount());
    }
}

void Dilate(const DilationJob& job) {
    FindEdges(job);
    AddRuns(job);
    AddRim(job);
}

Dilator* Dilation() {
    return Dilate;
}

#endif

}  // namespace
}  // namespace captionfx::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace captionfx {

HWY_EXPORT(Dilation);

Dilator* BestDilator() {
    static Dilator* const best = HWY_DYNAMIC_DISPATCH(Dilation)();
    return best;
}

std::vector<Dilator*> VectorDilators() {
    return OfEachVectorTarget([] { return HWY_DYNAMIC_DISPATCH(Dilation)(); });
}

}  // namespace captionfx
#endif
