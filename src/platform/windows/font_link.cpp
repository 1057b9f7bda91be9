#include "platform/windows/font_link.h"

#include <windows.h>
#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <map>
#include <mlang.h>
#include <mmsystem.h>
#include <utility>

#include "platform/windows/com.h"
#include "platform/windows/screen_font.h"
#include "platform/windows/wide_text.h"

namespace captionfx {

template <>
inline constexpr GUID kInterfaceId<IMLangFontLink2>{
    0xdccfc162, 0x2b38, 0x11d2, {0xb7, 0xec, 0x00, 0xc0, 0x4f, 0x8f, 0x5d, 0x9a}};

namespace {

constexpr GUID kMultiLanguage{0x275c23e2, 0x3747, 0x11d0, {0x9f, 0xea, 0x00, 0xaa, 0x00, 0x3f, 0x86, 0x46}};

/// The system's timer at its finest while it stands.
class FineTimer {
public:
    FineTimer() { timeBeginPeriod(kPeriodMs); }
    FineTimer(const FineTimer&) = delete;
    FineTimer& operator=(const FineTimer&) = delete;
    ~FineTimer() { timeEndPeriod(kPeriodMs); }

private:
    static constexpr UINT kPeriodMs = 1;
};

class MLangFontLink final : public FontLink {
public:
    explicit MLangFontLink(ComPtr<IMLangFontLink2> link) : link_(std::move(link)) {}

    CodePageRun GetStrCodePages(std::u16string_view text) override {
        constexpr size_t kLongestRun = std::numeric_limits<int32_t>::max();
        text = text.substr(0, kLongestRun);
        DWORD codePages = 0;
        LONG length = 0;
        if (FAILED(link_->GetStrCodePages(Units(text), static_cast<LONG>(text.size()), 0, &codePages, &length)))
            return {0, 0};
        return {codePages, length};
    }

    std::optional<LogFont> MapFont(const LogFont& base, uint32_t codePages, char16_t unit) override {
        if (std::memcmp(&base, &base_, sizeof base) != 0) {
            base_ = base;
            mapped_.clear();
        }
        const auto [found, isNew] = mapped_.try_emplace({codePages, unit});
        if (isNew) found->second = AskForFont(codePages, unit);
        return found->second;
    }

    void ResetFontMapping() override {
        mapped_.clear();
        link_->ResetFontMapping();
    }

private:
    [[nodiscard]] std::optional<LogFont> AskForFont(uint32_t codePages, char16_t unit) const {
        const ScreenFont font(base_);
        HFONT mapped = nullptr;
        if (FAILED(link_->MapFont(font.Context(), codePages, static_cast<WCHAR>(unit), &mapped))) return std::nullopt;
        LogFont answer = LogFontOf(mapped);
        link_->ReleaseFont(mapped);
        if (answer.lfFaceName[0] == u'\0') NameFace(answer);
        return answer;
    }

    /// A font that is told by its character set alone is another one on every machine: titles keep the face it has
    /// here.
    static void NameFace(LogFont& answer) {
        const ScreenFont font(answer);
        std::array<wchar_t, kFaceNameLength> name{};
        GetTextFaceW(font.Context(), static_cast<int>(name.size()), name.data());
        std::ranges::copy(name, answer.lfFaceName);
    }

    const FineTimer timer_;
    const ComPtr<IMLangFontLink2> link_;
    LogFont base_{};
    std::map<std::pair<uint32_t, char16_t>, std::optional<LogFont>> mapped_;  // of base_
};

}  // namespace

std::unique_ptr<FontLink> CreateMLangFontLink() {
    ComPtr<IMLangFontLink2> link = CreateComObject<IMLangFontLink2>(kMultiLanguage);
    return link ? std::make_unique<MLangFontLink>(std::move(link)) : nullptr;
}

}  // namespace captionfx
