// What the image effects cost: whole frames of 1920 by 1080, the effect's share of them, and the box blur by radius.
// The frame of Fade, which leaves the image alone, is what the others add to; the blur must not depend on its radius.
#include <string>

#include <benchmark/benchmark.h>

#include "host/title_object.h"
#include "paths/path_catalog.h"
#include "platform/services.h"

namespace captionfx {
namespace {

constexpr int32_t kWidth = 1920, kHeight = 1080;
constexpr size_t kPixels = size_t{kWidth} * kHeight;

/// Fresh frames of one line of 40 characters at 96 pixels, half way through an effect.
void FrameWith(benchmark::State& state, const char* effect) {
    CCaptionFx title(SystemServices());
    TitleRenderSettings settings{};
    title.GetRenderSettings(&settings);
    settings.Width = settings.ClipRect.right = kWidth;
    settings.Height = settings.ClipRect.bottom = kHeight;
    title.SetRenderSettings(&settings);
    FontSpec font{};
    SetText(font.FaceName, u"DejaVu Sans");
    font.Size = 72;
    title.SetDefaultFont(&font);
    StringSpec string{};
    title.GetStringSettings(-1, &string);
    SetText(string.PathID, effect);
    string.PathProgress = 0.5F;
    title.SetDefaultString(&string);
    title.AddString();
    title.InsertText(0, 0, u"The quick brown fox jumps over the lazy.");
    std::vector<uint32_t> frame(kPixels, 0xFF000000);
    for (auto _ : state) {
        title.Strings().front().PathProgress = 0.5F;
        if (title.RenderFrame(frame.data(), 0) != kTitleOk) return state.SkipWithError("no frame");
    }
}
BENCHMARK_CAPTURE(FrameWith, Fade, "PATH_FADE")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FrameWith, BlurLeft, "PATH_BLURLEFT")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FrameWith, BlurRight, "PATH_BLURRIGHT")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FrameWith, Glow, "PATH_GLOW")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FrameWith, PerspectiveScroll, "PATH_PERSPECTIVESCROLL")->Unit(benchmark::kMillisecond);

/// The stage alone: what of the frames above is the effect's own work.
void StageOf(benchmark::State& state, const char* effect) {
    std::vector<uint32_t> source(kPixels), target(kPixels);
    for (size_t i = kPixels / 4; i < kPixels / 2; ++i)
        source[i] = 0xFF000000 | static_cast<uint32_t>(i * 2654435761U >> 8U);
    const auto path = FindPathMaker(effect)();
    path->SetSourceImage(reinterpret_cast<uint8_t*>(source.data()), kWidth, kHeight, kWidth * 4);
    path->SetTargetImage(reinterpret_cast<uint8_t*>(target.data()), kWidth, kHeight, kWidth * 4);
    for (auto _ : state) benchmark::DoNotOptimize(path->ProcessImage(0.5F));
}
BENCHMARK_CAPTURE(StageOf, BlurLeft, "PATH_BLURLEFT")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(StageOf, Glow, "PATH_GLOW")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(StageOf, PerspectiveScroll, "PATH_PERSPECTIVESCROLL")->Unit(benchmark::kMillisecond);

void BoxBlurOfRadius(benchmark::State& state) {
    KVTImageUtility::CImageARGB image(kWidth, kHeight);
    image.CpuLevel = static_cast<uint32_t>(state.range(1));
    image.Fill(0x80406080);
    for (auto _ : state) image.BoxBlur(static_cast<int32_t>(state.range(0)));
}
BENCHMARK(BoxBlurOfRadius)
    ->ArgNames({"radius", "level"})
    ->ArgsProduct({{5, 100}, {1, 3}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace captionfx
