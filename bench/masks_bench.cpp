// What the masks of a border and of a soft shadow cost, plain and by vectors, in one run: the ratio is what carries
// over to another machine.
#include <algorithm>
#include <cstdlib>

#include <benchmark/benchmark.h>

#include "render/border.h"
#include "render/layer_blur.h"

namespace captionfx {
namespace {

/// Two bars and an arc with soft edges, about what a letter holds.
CoverageMask Letter(int32_t size) {
    CoverageMask mask = *MakeMask(size * 5 / 8, size * 3 / 4);
    for (int32_t y = 0; y < mask.Height; ++y) {
        for (int32_t x = 0; x < mask.Width; ++x) {
            const int32_t dx = 2 * x - mask.Width, dy = 2 * y - mask.Height;
            const int32_t arc = std::abs(dx * dx + dy * dy - size * size * 9 / 32) / size;
            const int32_t nearest = std::min({arc, std::abs(dx), std::abs(y - mask.Height / 3)});
            mask.Row(y)[x] = static_cast<uint8_t>(std::clamp(300 + (size / 12 - nearest) * 100, 0, 255));
        }
    }
    return mask;
}

void Dilate(benchmark::State& state, decltype(CBorder::DilateMask) dilate) {
    const CoverageMask mask = Letter(static_cast<int32_t>(state.range(0)));
    const float radius = static_cast<float>(state.range(1)) / 100;
    std::shared_ptr<const BorderKernel> kernel;
    SharedBorder().GetKernel(&kernel, radius, radius);
    CoverageMask dilated = *MakeMask(mask.Width + 2 * kernel->Cx, mask.Height + 2 * kernel->Cy);
    for (auto _ : state) {
        dilate(mask, dilated, *kernel);
        benchmark::DoNotOptimize(dilated.Bytes.data());
    }
}
void LetterSizes(benchmark::internal::Benchmark* bench) {
    // A font's size and a border's radius in hundredths of a pixel: 3 % of the size, and wide ones.
    for (const auto& [size, radius] : {std::pair{96, 288}, {192, 576}, {96, 1000}, {400, 5000}}) {
        bench->Args({size, radius});
    }
}
BENCHMARK_CAPTURE(Dilate, Plain, CBorder::DilateMaskPlain)->Apply(LetterSizes)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Dilate, Fast, CBorder::DilateMask)
    ->Apply(LetterSizes)
    ->Args({400, 40000})  // plain: most of a minute
    ->Unit(benchmark::kMicrosecond);

/// A plane of a soft edge; its size and the radius of three boxes, in hundredths of a pixel.
void Blur(benchmark::State& state, bool isFast) {
    const auto width = static_cast<int32_t>(state.range(0)), height = static_cast<int32_t>(state.range(1));
    std::vector<uint8_t> plane(static_cast<size_t>(width * height));
    for (size_t i = 0; i < plane.size(); ++i) plane[i] = static_cast<uint8_t>(i * 7);
    const float radius = static_cast<float>(state.range(2)) / 100;
    for (auto _ : state) {
        BlurCoverageWith(plane.data(), width, height, width, radius, BlurKind::kThreeBoxes,
                         isFast ? BestCoverageBlur() : nullptr);
        benchmark::DoNotOptimize(plane.data());
    }
}
void PlaneSizes(benchmark::internal::Benchmark* bench) {
    bench->Args({80, 110, 1000})->Args({80, 110, 430})->Args({1900, 140, 1000})->Args({1900, 140, 965});
}
BENCHMARK_CAPTURE(Blur, Plain, false)->Apply(PlaneSizes)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Blur, Fast, true)->Apply(PlaneSizes)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace captionfx
