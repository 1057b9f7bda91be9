#include "platform/windows/font_system.h"

#include <windows.h>
#include <cstring>
#include <exception>

#include "platform/windows/screen_font.h"
#include "platform/windows/wide_text.h"

namespace captionfx {
namespace {

/// A device context of the screen without a font of ours.
class ScreenContext {
public:
    ScreenContext() : context_(GetDC(nullptr)) {}
    ScreenContext(const ScreenContext&) = delete;
    ScreenContext& operator=(const ScreenContext&) = delete;
    ~ScreenContext() {
        if (context_ != nullptr) ReleaseDC(nullptr, context_);
    }
    [[nodiscard]] HDC Get() const { return context_; }

private:
    HDC context_;
};

struct Visit {
    const std::function<void(std::u16string_view)>& Call;
    std::exception_ptr Thrown;  // carried past GDI, which knows no exceptions
};

int CALLBACK VisitFont(const LOGFONTW* font, const TEXTMETRICW* /*metrics*/, DWORD /*type*/, LPARAM parameter) {
    auto& visit = *reinterpret_cast<Visit*>(parameter);
    try {
        visit.Call(Utf16Of(font->lfFaceName));
        return 1;
    } catch (...) {
        visit.Thrown = std::current_exception();
        return 0;
    }
}

}  // namespace

void GdiFontSystem::EnumerateFamilies(const std::function<void(std::u16string_view)>& visit) {
    Visit carried{visit, nullptr};
    const ScreenContext context;
    EnumFontsW(context.Get(), nullptr, &VisitFont, reinterpret_cast<LPARAM>(&carried));
    if (carried.Thrown) std::rethrow_exception(carried.Thrown);
}

LogFont GdiFontSystem::DefaultGuiFont() {
    return LogFontOf(GetStockObject(DEFAULT_GUI_FONT));
}

bool GdiFontSystem::ByBytes::operator()(const LogFont& left, const LogFont& right) const {
    return std::memcmp(&left, &right, sizeof left) < 0;
}

std::shared_ptr<const PlatformFont> GdiFontSystem::Realise(const LogFont& request) {
    // Requests hold sizes and names that hosts and files choose: what they add up to is bounded.
    constexpr size_t kMostFonts = 1024;
    const std::lock_guard lock(mutex_);
    if (fonts_.size() >= kMostFonts && !fonts_.contains(request)) fonts_.clear();
    std::shared_ptr<const GdiFont>& font = fonts_[request];
    if (font == nullptr) font = std::make_shared<const GdiFont>(request);
    return font;
}

}  // namespace captionfx
