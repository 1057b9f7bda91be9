#include "platform/linux/font_link.h"

#include <algorithm>
#include <array>
#include <limits>

#include "platform/linux/text_language.h"

namespace captionfx {
namespace {

/// The code pages of East Asia in a mask, one for each way of drawing ideographs. A mask of a session carries exactly
/// one: what matters for a run is the language of its ideographs, since each character finds its font by itself.
struct CodePage {
    uint32_t Bit;
    std::string_view Language;
};
constexpr std::array<CodePage, 4> kCodePages{
    {{1U << 17U, "ja"}, {1U << 18U, "zh-cn"}, {1U << 19U, "ko"}, {1U << 20U, "zh-tw"}}};

class FontconfigLink final : public FontLink {
public:
    explicit FontconfigLink(FontFallback& fallback) : fallback_(fallback) {}

    CodePageRun GetStrCodePages(std::u16string_view text) override {
        constexpr size_t kLongestRun = std::numeric_limits<int32_t>::max();
        text = text.substr(0, kLongestRun);
        const auto* const page = std::ranges::find(kCodePages, HanLanguageOf(text), &CodePage::Language);
        return {page == kCodePages.end() ? 0 : page->Bit, static_cast<int32_t>(text.size())};
    }

    std::optional<LogFont> MapFont(const LogFont& base, uint32_t codePages, char16_t unit) override {
        const auto* const page = std::ranges::find_if(kCodePages, [=](CodePage p) { return (codePages & p.Bit) != 0; });
        const bool known = page != kCodePages.end();
        return fallback_.FontFor(base, known ? page->Language : HanLanguageOf({&unit, 1}), unit);
    }

    void ResetFontMapping() override {}  // fonts stay realised for the next session

private:
    FontFallback& fallback_;
};

}  // namespace

std::unique_ptr<FontLink> CreateFontconfigLink(FontFallback& fallback) {
    return std::make_unique<FontconfigLink>(fallback);
}

std::unique_ptr<FontLink> CreateFontconfigLink() {
    return CreateFontconfigLink(FontFallback::Instance());
}

}  // namespace captionfx
