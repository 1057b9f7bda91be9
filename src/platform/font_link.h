// Font linking: which font can show a character that the wanted one lacks.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/log_font.h"

namespace captionfx {

/// The longest run from the start of a text whose characters share a mask of code pages.
struct CodePageRun {
    uint32_t CodePages;  ///< Meaningful only to the MapFont of the same session.
    int32_t Length;      ///< In code units; 0 is tolerated by the caller and counts as 1.
};

/// One session of font linking; it lives for one insertion of text and is used on one thread.
class FontLink {
public:
    virtual ~FontLink() = default;

    [[nodiscard]] virtual CodePageRun GetStrCodePages(std::u16string_view text) = 0;

    /// A font with a glyph for `unit`, in the style of `base` and close to its design. Nothing if there is none.
    [[nodiscard]] virtual std::optional<LogFont> MapFont(const LogFont& base, uint32_t codePages, char16_t unit) = 0;

    /// Ends the use of the fonts that were mapped.
    virtual void ResetFontMapping() = 0;
};

}  // namespace captionfx
