// What is known of one installed face without keeping its file open.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <fontconfig/fontconfig.h>

#include "platform/font_system.h"
#include "platform/linux/freetype_library.h"
#include "platform/linux/sfnt_names.h"

namespace captionfx {

/// Height of the em at which all fonts are asked, in pixels.
inline constexpr int32_t kEmPx = 2048;

/// The broad design of a face, for finding one that goes with another.
enum class FontClass : uint8_t { kSans, kSerif, kMono };

struct CharSetCloser {
    void operator()(FcCharSet* set) const { FcCharSetDestroy(set); }
};
struct LangSetCloser {
    void operator()(FcLangSet* set) const { FcLangSetDestroy(set); }
};

struct FontFace {
    std::string Path;
    int Index = 0;  ///< Within a collection.
    SfntNames Names;
    int32_t Revision = 0;  ///< 16.16
    bool Bold = false, Italic = false;
    bool SymbolSet = false;  ///< It answers requests for the symbol character set.
    bool SymbolMap = false;  ///< It has no Unicode map: its codes stand for pictures, not for characters.
    bool Colour = false;     ///< It may have glyphs without an outline.
    FontClass Class = FontClass::kSans;
    int WidthClass = 5;                       ///< 1 (ultra-condensed) to 9 (ultra-expanded).
    OutlineMetrics Metrics{};                 ///< At an em of kEmPx.
    int32_t CellAscent = 0, CellDescent = 0;  ///< Pixels above and below the baseline that text may ink.

    // What Fontconfig's cache tells; null if it was not asked.
    std::unique_ptr<FcCharSet, CharSetCloser> Characters;
    std::unique_ptr<FcLangSet, LangSetCloser> Languages;
    uint32_t CharacterCount = 0;
};

/// Reads one face. Nothing for a file that cannot be read, a face without outlines, a name or an OS/2 table: such a
/// face does not exist for titles.
[[nodiscard]] std::optional<FontFace> ReadFontFace(FT_Library library, const std::string& path, int index);

}  // namespace captionfx
