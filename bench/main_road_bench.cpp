// The main road, stage by stage, with real fonts: text in, layout, layers, frames of 1920 by 1080.
//
//     build/release/bin/captionfx_bench
//
// Times depend on the machine: compare rows of one run with each other.
#include <string>

#include <benchmark/benchmark.h>

#include "host/title_object.h"
#include "layout/reflow.h"
#include "layout/string_layout.h"
#include "platform/services.h"
#include "render/glyph_layers.h"
#include "render/image_utility.h"

namespace captionfx {
namespace {

constexpr int32_t kWidth = 1920, kHeight = 1080;
constexpr std::u16string_view kLine = u"The quick brown fox jumps over the lazy.";  // 40 characters

/// A full-HD title in DejaVu Sans of a size.
class Stage {
public:
    explicit Stage(float size, float widthLimit = 1e9F) {
        TitleRenderSettings settings{};
        Title.GetRenderSettings(&settings);
        settings.Width = settings.ClipRect.right = kWidth;
        settings.Height = settings.ClipRect.bottom = kHeight;
        Title.SetRenderSettings(&settings);
        FontSpec font{};
        SetText(font.FaceName, u"DejaVu Sans");
        font.CharSet = kDefaultCharSet;
        font.Size = size;
        Title.SetDefaultFont(&font);
        StringSpec string{};
        Title.GetStringSettings(-1, &string);
        string.WidthLimit = widthLimit;
        Title.SetDefaultString(&string);
        Title.AddString();
    }
    MetaString& String() { return Title.Strings().front(); }

    CCaptionFx Title{SystemServices()};
    std::vector<uint32_t> Pixels = std::vector<uint32_t>(static_cast<size_t>(kWidth) * kHeight, 0xFF000000);
};

std::u16string Text(size_t characters) {
    std::u16string text;
    while (text.size() < characters) text += kLine;
    text.resize(characters);
    return text;
}

void InsertTenThousandCharacters(benchmark::State& state) {
    const std::u16string text = Text(10000);
    Stage stage(32, 1600);
    for (auto _ : state) {
        stage.Title.ClearString(0);
        benchmark::DoNotOptimize(stage.Title.InsertText(0, 0, text.c_str()));
    }
    state.SetItemsProcessed(state.iterations() * 10000);
}
BENCHMARK(InsertTenThousandCharacters)->Unit(benchmark::kMillisecond);

void LayOutTenThousandCharacters(benchmark::State& state) {
    Stage stage(32, 1600);
    stage.Title.InsertText(0, 0, Text(10000).c_str());
    for (auto _ : state) {
        ReflowLines(stage.String(), 0, 10000, false);
        LayoutString(SystemServices().Fonts(), {}, stage.String());
    }
    state.SetItemsProcessed(state.iterations() * 10000);
}
BENCHMARK(LayOutTenThousandCharacters)->Unit(benchmark::kMillisecond);

void BuildLayersOfALine(benchmark::State& state) {
    Stage stage(96);
    stage.Title.InsertText(0, 0, std::u16string(kLine).c_str());
    TitleRenderSettings settings{};
    stage.Title.GetRenderSettings(&settings);
    const GlyphSettings glyphs{SystemServices().Fonts(), settings, false};
    for (auto _ : state) {
        for (int32_t i = 0; i < static_cast<int32_t>(kLine.size()); ++i) {
            GlyphLayers layers;
            BuildGlyphLayers(glyphs, BuiltInImageUtility(), stage.String(), i, layers, {1, 1, 0});
            benchmark::DoNotOptimize(layers.Face.Pixels.get());
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kLine.size()));
}
BENCHMARK(BuildLayersOfALine)->Unit(benchmark::kMillisecond);

/// From the kept frame: no drawing at all.
void FrameAtRest(benchmark::State& state) {
    Stage stage(48);
    stage.Title.InsertText(0, 0, std::u16string(kLine).c_str());
    for (auto _ : state) stage.Title.RenderFrame(stage.Pixels.data(), 0);
}
BENCHMARK(FrameAtRest)->Unit(benchmark::kMillisecond);

/// Characters from kept layers, as under an effect that fades.
void FrameInMotion(benchmark::State& state) {
    Stage stage(48);
    stage.Title.InsertText(0, 0, std::u16string(kLine).c_str());
    stage.String().PathProgress = 0.9F;
    for (auto _ : state) stage.Title.RenderFrame(stage.Pixels.data(), 0);
}
BENCHMARK(FrameInMotion)->Unit(benchmark::kMillisecond);

/// Everything from nothing: planes, layers, kernels.
void FreshFrame(benchmark::State& state) {
    Stage stage(48);
    stage.Title.InsertText(0, 0, std::u16string(kLine).c_str());
    for (auto _ : state) {
        stage.Title.FlushRenderCaches();
        stage.Title.RenderFrame(stage.Pixels.data(), 0);
    }
}
BENCHMARK(FreshFrame)->Unit(benchmark::kMillisecond);

/// 200 characters in motion on so many threads: layers made for the frame, drawn in bands. What counts is the ratio.
void MovingTitleOfTwoHundred(benchmark::State& state) {
    Stage stage(64, 1700);
    stage.Title.InsertText(0, 0, Text(200).c_str());
    TitleRenderSettings settings{};
    stage.Title.GetRenderSettings(&settings);
    settings.MaxThreads = static_cast<int32_t>(state.range(0));
    settings.GlyphCacheEnabled = static_cast<int32_t>(state.range(1));
    stage.Title.SetRenderSettings(&settings);
    stage.String().PathProgress = 0.9F;
    for (auto _ : state) stage.Title.RenderFrame(stage.Pixels.data(), 0);
    state.counters["frames"] = benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(MovingTitleOfTwoHundred)
    ->ArgNames({"threads", "cached"})
    ->ArgsProduct({{1, 2}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

}  // namespace
}  // namespace captionfx
