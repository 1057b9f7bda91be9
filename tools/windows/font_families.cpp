#include "tools/font_families.h"

#include <windows.h>
#include <algorithm>
#include <iterator>
#include <memory>

#include "tools/windows/wide_text.h"

namespace captionfx {
namespace {

/// Families whose names begin with "@" are the others again, turned for vertical writing. GDI, which calls this, knows
/// no exceptions.
int CALLBACK AddFamily(const LOGFONTW* font, const TEXTMETRICW* /*metrics*/, DWORD /*type*/, LPARAM names) noexcept {
    const wchar_t* const end = std::find(std::begin(font->lfFaceName), std::end(font->lfFaceName), L'\0');
    const std::wstring_view name(font->lfFaceName, static_cast<size_t>(end - font->lfFaceName));
    if (!name.starts_with(L'@')) reinterpret_cast<std::set<std::string>*>(names)->insert(Utf8FromWide(name));
    return 1;
}

}  // namespace

std::set<std::string> FontFamilies() {
    std::set<std::string> names;
    const auto release = [](HDC context) { ReleaseDC(nullptr, context); };
    const std::unique_ptr<HDC__, decltype(release)> screen(GetDC(nullptr), release);
    LOGFONTW any{};
    any.lfCharSet = DEFAULT_CHARSET;
    EnumFontFamiliesExW(screen.get(), &any, &AddFamily, reinterpret_cast<LPARAM>(&names), 0);
    return names;
}

}  // namespace captionfx
