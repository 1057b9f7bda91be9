// A byte string as the XML of a title: loaded, drawn at three times, edited and saved, on the fake platform. Whatever
// loads is sound, and what a title saves loads again and is saved as the same text from then on.
#include <cstdio>
#include <cstdlib>

#include "support/fake_platform.h"
#include "support/title_text.h"

namespace captionfx::fuzz {
namespace {

constexpr int32_t kWidth = 40, kHeight = 30;

void Demand(bool holds, const char* rule) {
    if (holds) return;
    std::fprintf(stderr, "%s\n", rule);
    std::abort();
}

void DemandSoundness(test::TestTitle& owner) {
    for (const MetaString& string : owner.Title.Strings()) {
        const std::string fault = test::StructureFault(string);
        Demand(fault.empty(), fault.c_str());
    }
}

/// Whether frames take milliseconds: the time for a border grows with the square of its radius.
bool IsQuick(test::TestTitle& owner) {
    constexpr int32_t kWideBorder = 40;
    for (const MetaString& string : owner.Title.Strings()) {
        for (const MetaBorder& border : string.Borders) {
            if (border.Size > kWideBorder) return false;
        }
    }
    return owner.Title.GetStringCount() < 20;
}

void Draw(test::TestTitle& owner) {
    std::vector<uint32_t> frame(static_cast<size_t>(kWidth) * kHeight);
    for (const float time : {0.0F, 1.5F, 3.0F}) owner.Title.RenderFrame(frame.data(), time);
}

void Run(const std::string& text) {
    test::TestTitle owner;
    owner.ChangeSettings([](TitleRenderSettings& settings) {
        settings.Width = settings.ClipRect.right = kWidth;
        settings.Height = settings.ClipRect.bottom = kHeight;
        settings.ScaleX = settings.ScaleY = 1.0F / 16;  // the largest font is a hundred pixels high
    });
    const bool isLoaded = test::LoadText(owner.Title, text) == kTitleOk;
    Demand(isLoaded || owner.Title.GetStringCount() == 0, "a refused title left strings");
    DemandSoundness(owner);
    if (IsQuick(owner)) Draw(owner);

    const std::string first = test::SavedText(owner.Title);  // a layout that overflows cannot be saved
    if (!first.empty()) {
        Demand(test::LoadText(owner.Title, first) == kTitleOk, "what was saved does not load");
        const std::string second = test::SavedText(owner.Title);
        Demand(test::LoadText(owner.Title, second) == kTitleOk, "what was saved twice does not load");
        Demand(test::SavedText(owner.Title) == second, "a loaded title is saved as another text");
    }
    owner.Title.InsertText(0, owner.Title.GetCharCount(0) / 2, u"a\r\n\u4e00");
    owner.Title.DeleteText(0, 0, owner.Title.GetCharCount(0) / 3);
    DemandSoundness(owner);
    if (IsQuick(owner)) Draw(owner);
}

}  // namespace
}  // namespace captionfx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    captionfx::fuzz::Run(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
