// What it costs to place one character, for each effect of characters. Placing must not allocate: the program puts its
// own operator new in the place of the library's and refuses a figure for an effect that does.
//
//     build/release/bin/captionfx_placement_bench
#include <cstdlib>
#include <new>

#include <benchmark/benchmark.h>

#include "paths/path_catalog.h"
#include "paths/path_random.h"

namespace {
size_t allocations = 0;
}

// NOLINTBEGIN(cppcoreguidelines-no-malloc): what the library's own do
void* operator new(size_t bytes) {
    ++allocations;
    void* const block = std::malloc(bytes);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, size_t /*bytes*/) noexcept {
    std::free(block);
}
// NOLINTEND(cppcoreguidelines-no-malloc)

namespace captionfx {
namespace {

constexpr int32_t kCharacters = 40;
constexpr float kLeft = 200, kTop = 500, kWidth = 32, kHeight = 72;

/// Bound to a line of 40 characters in the middle of 1920 by 1080.
std::unique_ptr<CPathBase> BoundToALine(PathMaker* make) {
    std::unique_ptr<CPathBase> path = make();
    path->SetCanvasSize(1920, 1080);
    path->SetStringRect({kLeft, kTop, kCharacters * kWidth, kHeight}, 0);
    path->SetCharCount(kCharacters);
    for (int32_t i = 0; i < kCharacters; ++i) {
        const float left = kLeft + static_cast<float>(i) * kWidth;
        path->SetCharBox(i, {left, kTop, kWidth, kHeight, left, kTop + 48});
    }
    return path;
}

/// Frames of a progress that runs from 0 to 1, so that every branch of an effect has its share.
void PlaceCharacters(benchmark::State& state, PathMaker* make, int32_t passCount) {
    constexpr int32_t kFrames = 64;
    const std::unique_ptr<CPathBase> path = BoundToALine(make);
    const size_t before = allocations;
    int32_t frame = 0;
    for (auto _ : state) {
        const float progress = static_cast<float>(++frame % kFrames) / kFrames;
        for (int32_t pass = 0; pass < passCount; ++pass) {
            SeedPathRandom(1);
            for (int32_t i = 0; i < kCharacters; ++i) {
                CharPlacement at;
                path->CalcCharacter(pass, i, progress, &at);
                benchmark::DoNotOptimize(at);
            }
        }
    }
    if (allocations != before) state.SkipWithError("placing a character allocates memory");
    const auto placements = static_cast<double>(state.iterations()) * passCount * kCharacters;
    state.counters["placement"] =
        benchmark::Counter(placements, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

}  // namespace
}  // namespace captionfx

int main(int argc, char** argv) {
    using namespace captionfx;
    benchmark::Initialize(&argc, argv);
    for (const PathCatalogEntry& row : PathCatalog()) {
        if (row.Make == nullptr || row.ImageBased != 0) continue;
        benchmark::RegisterBenchmark(row.PathName, PlaceCharacters, row.Make, row.PassCount);
    }
    benchmark::RunSpecifiedBenchmarks();
}
