#include "render/dilation.h"

#include <algorithm>
#include <cstddef>
#include <map>

namespace captionfx {
namespace {

constexpr int32_t kFull = 255;               // a position that fills its pixel over any edge
constexpr int32_t kNothing = -255;           // one that no level reaches through
constexpr ptrdiff_t kBlockBytes = 16 << 10;  // two of them lie in the nearest cache

/// Adds the full positions from `first` to `end` - 1. Runs have a middle, so an even number of positions becomes two
/// that overlap.
void AddRun(DilationPlan& plan, int32_t first, int32_t end, int32_t y) {
    const int32_t half = (end - 1 - first) / 2;
    plan.Runs.push_back({half, first + half, y});
    if ((end - first) % 2 == 0) plan.Runs.push_back({half, first + half + 1, y});
}

/// Zeros to both sides of what a loop works on.
class PaddedBytes {
public:
    PaddedBytes(ptrdiff_t count, ptrdiff_t padding)
        : bytes_(static_cast<size_t>(count + 2 * (padding + kDilationSlack))), padding_(padding + kDilationSlack) {}
    [[nodiscard]] uint8_t* First() { return bytes_.data() + padding_; }

private:
    std::vector<uint8_t> bytes_;
    ptrdiff_t padding_;
};

}  // namespace

DilationPlan MakeDilationPlan(std::span<const int16_t> values, int32_t cx, int32_t cy) {
    DilationPlan plan;
    plan.Cx = cx;
    plan.Cy = cy;
    const int32_t columns = 2 * cx + 1, rows = 2 * cy + 1;
    const auto at = [&](int32_t x, int32_t y) {
        return int32_t{values[static_cast<size_t>(y) * static_cast<size_t>(columns) + static_cast<size_t>(x)]};
    };
    for (int32_t firstRow = 0; firstRow < rows; firstRow += kMostBandRows) {
        const int32_t endRow = std::min(firstRow + kMostBandRows, rows);
        std::map<int32_t, std::vector<DilationPlan::Tap>> taps;
        for (int32_t y = firstRow; y < endRow; ++y) {
            for (int32_t x = 0; x < columns;) {
                const int32_t weight = at(x, y), first = x++;
                if (weight == kFull) {
                    while (x < columns && at(x, y) == kFull) ++x;
                    AddRun(plan, first, x, y);
                } else if (weight > kNothing) {
                    taps[weight].push_back({first, y});
                }
            }
        }
        for (const auto& [weight, group] : taps) {
            plan.Taps.insert(plan.Taps.end(), group.begin(), group.end());
            plan.Groups.push_back({weight, plan.Taps.size()});
        }
        plan.Bands.push_back({firstRow, endRow, plan.Groups.size(), plan.Taps.size()});
    }
    std::ranges::stable_sort(plan.Runs, {}, &DilationPlan::Run::Half);
    return plan;
}

void DilateByPlan(const CoverageMask& mask, CoverageMask& destination, const DilationPlan& plan, Dilator* dilate) {
    const ptrdiff_t pitch = destination.Width;
    const ptrdiff_t bandRows = std::min(kMostBandRows, 2 * plan.Cy + 1);
    const ptrdiff_t blockRows = std::clamp<ptrdiff_t>(kBlockBytes / pitch, 1, mask.Height);
    PaddedBytes levels(mask.Height * pitch, pitch), edges(mask.Height * pitch, bandRows * pitch + plan.Cx);
    PaddedBytes grown(blockRows * pitch, pitch), growing(blockRows * pitch, pitch);
    PaddedBytes out(destination.Height * pitch, plan.Cx);
    for (int32_t y = 0; y < mask.Height; ++y) {
        std::copy_n(mask.Row(y), mask.Width, levels.First() + y * pitch + plan.Cx);
    }
    std::vector<ptrdiff_t> offsets;
    offsets.reserve(plan.Taps.size());
    for (const DilationPlan::Tap& tap : plan.Taps) offsets.push_back(plan.Cx - tap.X - tap.Y * pitch);
    dilate({.Plan = plan,
            .Pitch = pitch,
            .Rows = mask.Height,
            .BlockRows = static_cast<int32_t>(blockRows),
            .Levels = levels.First(),
            .Edges = edges.First(),
            .Grown = grown.First(),
            .Growing = growing.First(),
            .Out = out.First(),
            .Offsets = offsets.data()});
    std::copy_n(out.First(), destination.Bytes.size(), destination.Bytes.begin());
}

}  // namespace captionfx
