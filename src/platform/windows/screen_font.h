// A font in a device context of the screen, for the length of one question. GDI has its handles for the whole process
// and has few of them: neither is kept.
#pragma once

#include <windows.h>
#include <bit>

#include "platform/log_font.h"

namespace captionfx {

class ScreenFont {
public:
    explicit ScreenFont(const LogFont& request)
        : context_(GetDC(nullptr)), font_(Create(request)), former_(SelectObject(context_, font_)) {}
    ScreenFont(const ScreenFont&) = delete;
    ScreenFont& operator=(const ScreenFont&) = delete;
    ~ScreenFont() {
        if (former_ != nullptr) SelectObject(context_, former_);
        if (font_ != nullptr) DeleteObject(font_);
        if (context_ != nullptr) ReleaseDC(nullptr, context_);
    }

    /// With the font selected; null where there is none, with which every question fails.
    [[nodiscard]] HDC Context() const { return former_ == nullptr ? nullptr : context_; }

private:
    static HFONT Create(const LogFont& request) {
        const auto record = std::bit_cast<LOGFONTW>(request);
        return CreateFontIndirectW(&record);
    }

    HDC context_;
    HFONT font_;
    HGDIOBJ former_;
};

/// The record that a font was made from; all zero for what is no font.
[[nodiscard]] inline LogFont LogFontOf(HGDIOBJ font) {
    LOGFONTW record{};
    GetObjectW(font, sizeof record, &record);
    return std::bit_cast<LogFont>(record);
}

}  // namespace captionfx
