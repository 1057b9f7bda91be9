// The smallest host. The header comes first, so that it has to stand on its own, and twice, so that its guard is
// needed.
#include <cstddef>
#include <vector>

#include <captionfx/caption_fx.h>

int main() {
    IKVT_CaptionFx* const title = GetTitleHost();
    if (title == nullptr) return 1;
    TitleRenderSettings settings{};
    bool good = title->GetRenderSettings(&settings) == kTitleOk;
    const int32_t string = title->AddString();
    good = good && title->InsertText(string, 0, u"Hi") == 2;
    std::vector<uint32_t> pixels(static_cast<std::size_t>(settings.Width) * static_cast<std::size_t>(settings.Height),
                                 0xFF000000u);
    good = good && title->RenderFrame(pixels.data(), 0.0f) == kTitleOk;
    good = ReleaseTitleHost(title) == 0 && good;
    return good ? 0 : 1;
}
