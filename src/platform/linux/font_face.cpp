#include "platform/linux/font_face.h"

#include FT_TRUETYPE_TABLES_H

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace captionfx {
namespace {

constexpr FT_UShort kNoOs2Table = 0xFFFF;  // FreeType's mark in the version of a table that is not there
constexpr FT_ULong kSymbolCodePage = 1UL << 31;

template <class Table>
const Table* TableOf(FT_Face face, FT_Sfnt_Tag tag) {
    return static_cast<const Table*>(FT_Get_Sfnt_Table(face, tag));
}

/// Sizes of the text cell in font units. The win values are what GDI goes by; only when their sum is 0 (raw, so that a
/// single 0 stays) do those of hhea step in. The descent is read as signed and made positive: some fonts store it
/// negative.
struct Cell {
    int32_t Ascent, Descent;
};
Cell CellOf(const TT_OS2& os2, const TT_HoriHeader& hhea) {
    if (os2.usWinAscent + os2.usWinDescent == 0) return {hhea.Ascender, -hhea.Descender};
    return {os2.usWinAscent, std::abs(static_cast<int16_t>(os2.usWinDescent))};
}

void ReadMetrics(FT_Face face, const TT_OS2& os2, const TT_HoriHeader& hhea, FontFace& out) {
    // The rounded scale counts: 1052 units of an em of 1000 are 2155 pixels, not 2154.
    const FT_Fixed scale = FT_MulDiv(kEmPx, 0x10000, face->units_per_EM);
    const auto toPx = [scale](int32_t units) { return static_cast<int32_t>(FT_MulFix(units, scale)); };

    const Cell cell = CellOf(os2, hhea);
    const int32_t cellUnits = cell.Ascent + cell.Descent;
    out.CellAscent = toPx(cell.Ascent);
    out.CellDescent = toPx(cell.Descent);
    out.Metrics.Height = out.CellAscent + out.CellDescent;
    out.Metrics.InternalLeading = toPx(cellUnits - face->units_per_EM);  // rounded once: not Height - kEmPx
    out.Metrics.ExternalLeading = std::max(0, toPx(hhea.Line_Gap - (cellUnits - (hhea.Ascender - hhea.Descender))));
    out.Metrics.Ascent = toPx(os2.sTypoAscender);
    out.Metrics.Descent = toPx(os2.sTypoDescender);
    out.Metrics.StrikeoutSize = toPx(os2.yStrikeoutSize);
    out.Metrics.StrikeoutPosition = toPx(os2.yStrikeoutPosition);
    // The raw fields: FT_Face::underline_position is moved by half the thickness.
    if (const auto* const post = TableOf<TT_Postscript>(face, FT_SFNT_POST)) {
        out.Metrics.UnderscoreSize = toPx(post->underlineThickness);
        out.Metrics.UnderscorePosition = toPx(post->underlinePosition);
    }
}

bool NameHas(const std::u16string& name, std::u16string_view part) {
    return name.find(part) != std::u16string::npos;
}

/// Panose first where it is a text face's (family kind 2); then what the name says, since many faces leave it at 0.
FontClass ClassOf(FT_Face face, const TT_OS2& os2, const std::u16string& family) {
    constexpr FT_Byte kLatinText = 2, kMonospaced = 9, kFirstSerif = 2, kFirstSans = 11, kLastSans = 15;
    const bool hasPanose = os2.panose[0] == kLatinText;
    if (FT_IS_FIXED_WIDTH(face) || (hasPanose && os2.panose[3] == kMonospaced) || NameHas(family, u"Mono")) {
        return FontClass::kMono;
    }
    const FT_Byte serifs = os2.panose[1];
    if (hasPanose && serifs >= kFirstSerif && serifs <= kLastSans) {
        return serifs < kFirstSans ? FontClass::kSerif : FontClass::kSans;
    }
    if (NameHas(family, u"Sans")) return FontClass::kSans;
    constexpr std::array<std::u16string_view, 6> kSerifWords{u"Serif", u"Mincho", u"Ming",
                                                             u"Song",  u"Batang", u"Myeongjo"};
    const bool serif =
        std::ranges::any_of(kSerifWords, [&](std::u16string_view word) { return NameHas(family, word); });
    return serif ? FontClass::kSerif : FontClass::kSans;
}

}  // namespace

std::optional<FontFace> ReadFontFace(FT_Library library, const std::string& path, int index) {
    const FaceHandle handle = OpenFace(library, path, index);
    FT_Face const face = handle.get();
    if (face == nullptr || !FT_IS_SCALABLE(face) || face->units_per_EM == 0) return std::nullopt;
    const auto* const head = TableOf<TT_Header>(face, FT_SFNT_HEAD);
    const auto* const hhea = TableOf<TT_HoriHeader>(face, FT_SFNT_HHEA);
    const auto* const os2 = TableOf<TT_OS2>(face, FT_SFNT_OS2);
    if (head == nullptr || hhea == nullptr || os2 == nullptr || os2->version == kNoOs2Table) return std::nullopt;

    FontFace result;
    result.Names = ReadSfntNames(face);
    if (result.Names.Family.empty()) return std::nullopt;
    result.Path = path;
    result.Index = index;
    result.Revision = static_cast<int32_t>(head->Font_Revision);
    result.Bold = (face->style_flags & FT_STYLE_FLAG_BOLD) != 0;
    result.Italic = (face->style_flags & FT_STYLE_FLAG_ITALIC) != 0;
    result.SymbolMap = face->charmap != nullptr && face->charmap->encoding == FT_ENCODING_MS_SYMBOL;
    result.SymbolSet = result.SymbolMap || (os2->ulCodePageRange1 & kSymbolCodePage) != 0;
    result.Colour = FT_HAS_COLOR(face);
    result.Class = ClassOf(face, *os2, result.Names.Family);
    if (os2->usWidthClass >= 1 && os2->usWidthClass <= 9) result.WidthClass = os2->usWidthClass;
    ReadMetrics(face, *os2, *hhea, result);
    return result;
}

}  // namespace captionfx
