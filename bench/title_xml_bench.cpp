// Loading titles of 1,000, 4,000 and 16,000 characters: four times the text must not take much more than four times the
// time, whether it has paragraphs, is one unbroken line or wraps, and whether or not its fonts are those of the
// machine. The row that counts is the ratio of neighbours; TimePerCharacter should stay as it is.
#include <string>

#include <benchmark/benchmark.h>

#include "host/title_object.h"
#include "platform/services.h"

namespace captionfx {
namespace {

enum Shape { kParagraphs, kOneLine, kWrapped };

/// The XML of a title in DejaVu Sans; its fonts are those of another machine where `isForeign`.
std::u16string TitleOf(size_t characters, Shape shape, bool isForeign) {
    constexpr size_t kPerParagraph = 40;
    CCaptionFx title(SystemServices());
    StringSpec string{};
    title.GetStringSettings(-1, &string);
    if (shape == kWrapped) string.WidthLimit = 900;
    title.SetDefaultString(&string);
    FontSpec font{};
    SetText(font.FaceName, u"DejaVu Sans");
    font.Size = 24;
    title.SetDefaultFont(&font);
    std::u16string text;
    while (text.size() < characters) {
        const bool breaks = shape == kParagraphs && text.size() % kPerParagraph == 0 && !text.empty();
        text += breaks ? u"\r\n" : std::u16string(1, static_cast<char16_t>(u'a' + text.size() % 26));
    }
    title.AddString();
    title.InsertText(0, 0, text.c_str());

    uint32_t size = 0;
    title.SaveToBuffer(nullptr, &size);
    std::vector<char16_t> xml(size / sizeof(char16_t));
    title.SaveToBuffer(xml.data(), &size);
    std::u16string document(xml.data());
    constexpr std::u16string_view kName = u"440065006A00";  // "Dej" inside the font record
    if (const size_t at = document.find(kName); isForeign && at != std::u16string::npos)
        document.replace(at, kName.size(), u"4D0069006A00");
    return document;
}

void LoadTitle(benchmark::State& state, Shape shape, bool isForeign) {
    const std::u16string xml = TitleOf(static_cast<size_t>(state.range(0)), shape, isForeign);
    CCaptionFx title(SystemServices());
    for (auto _ : state) {
        if (title.LoadFromBuffer(xml.c_str()) != kTitleOk) return state.SkipWithError("the title does not load");
    }
    state.counters["TimePerCharacter"] = benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                                                            benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK_CAPTURE(LoadTitle, paragraphs, kParagraphs, false)
    ->Arg(1000)
    ->Arg(4000)
    ->Arg(16000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LoadTitle, oneLine, kOneLine, false)->Arg(1000)->Arg(4000)->Arg(16000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LoadTitle, wrapped, kWrapped, false)->Arg(1000)->Arg(4000)->Arg(16000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LoadTitle, wrappedOfAnotherMachine, kWrapped, true)
    ->Arg(1000)
    ->Arg(4000)
    ->Arg(16000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace captionfx
