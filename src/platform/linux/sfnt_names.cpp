#include "platform/linux/sfnt_names.h"

#include FT_SFNT_NAMES_H
#include FT_TRUETYPE_IDS_H

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/log_font.h"

namespace captionfx {
namespace {

constexpr size_t kMaxNameUnits = kFaceNameLength - 1;
constexpr int kPrimaryLanguageMask = 0x3FF;  // a Windows language id without its country
constexpr int kPrimaryEnglish = 9;

/// The upper half of the Macintosh Roman character set; 0xDB is the euro sign since 1998, 0xF0 the maker's own sign.
constexpr std::u16string_view kMacRomanUpper =
    u"\u00C4\u00C5\u00C7\u00C9\u00D1\u00D6\u00DC\u00E1\u00E0\u00E2\u00E4\u00E3\u00E5\u00E7\u00E9\u00E8"
    u"\u00EA\u00EB\u00ED\u00EC\u00EE\u00EF\u00F1\u00F3\u00F2\u00F4\u00F6\u00F5\u00FA\u00F9\u00FB\u00FC"
    u"\u2020\u00B0\u00A2\u00A3\u00A7\u2022\u00B6\u00DF\u00AE\u00A9\u2122\u00B4\u00A8\u2260\u00C6\u00D8"
    u"\u221E\u00B1\u2264\u2265\u00A5\u00B5\u2202\u2211\u220F\u03C0\u222B\u00AA\u00BA\u03A9\u00E6\u00F8"
    u"\u00BF\u00A1\u00AC\u221A\u0192\u2248\u2206\u00AB\u00BB\u2026\u00A0\u00C0\u00C3\u00D5\u0152\u0153"
    u"\u2013\u2014\u201C\u201D\u2018\u2019\u00F7\u25CA\u00FF\u0178\u2044\u20AC\u2039\u203A\uFB01\uFB02"
    u"\u2021\u00B7\u201A\u201E\u2030\u00C2\u00CA\u00C1\u00CB\u00C8\u00CD\u00CE\u00CF\u00CC\u00D3\u00D4"
    u"\uF8FF\u00D2\u00DA\u00DB\u00D9\u0131\u02C6\u02DC\u00AF\u02D8\u02D9\u02DA\u00B8\u02DD\u02DB\u02C7";
static_assert(kMacRomanUpper.size() == 128);

/// How well a name record serves as the English one; higher is better.
enum class NameRank { kUseless, kOtherLanguage, kMacEnglish, kEnglish, kUsEnglish };

/// Microsoft's encodings with UTF-16 strings. The others are code pages that no font of this century uses.
bool IsMicrosoftUtf16(const FT_SfntName& name) {
    return name.platform_id == TT_PLATFORM_MICROSOFT &&
           (name.encoding_id == TT_MS_ID_SYMBOL_CS || name.encoding_id == TT_MS_ID_UNICODE_CS ||
            name.encoding_id == TT_MS_ID_UCS_4);
}

NameRank RankOf(const FT_SfntName& name) {
    if (IsMicrosoftUtf16(name)) {
        if (name.language_id == TT_MS_LANGID_ENGLISH_UNITED_STATES) return NameRank::kUsEnglish;
        const bool english = (name.language_id & kPrimaryLanguageMask) == kPrimaryEnglish;
        return english ? NameRank::kEnglish : NameRank::kOtherLanguage;
    }
    const bool mac = name.platform_id == TT_PLATFORM_MACINTOSH && name.encoding_id == TT_MAC_ID_ROMAN &&
                     name.language_id == TT_MAC_LANGID_ENGLISH;
    return mac ? NameRank::kMacEnglish : NameRank::kUseless;
}

/// Cut at a zero as well, since the name will be read from a zero-terminated field.
std::u16string Decode(const FT_SfntName& name) {
    const std::span<const FT_Byte> bytes(name.string, name.string == nullptr ? 0 : name.string_len);
    std::u16string text;
    if (name.platform_id == TT_PLATFORM_MACINTOSH) {
        for (const FT_Byte byte : bytes)
            text += byte < 0x80 ? static_cast<char16_t>(byte) : kMacRomanUpper[byte - 0x80U];
    } else {
        for (size_t i = 0; i + 1 < bytes.size(); i += 2) text += static_cast<char16_t>(bytes[i] << 8 | bytes[i + 1]);
    }
    text.resize(std::min({text.size(), text.find(u'\0'), kMaxNameUnits}));
    return text;
}

/// Takes names as they come and keeps the best, the first among equals.
class BestName {
public:
    void Offer(NameRank rank, const std::u16string& text) {
        if (rank <= rank_ || text.empty()) return;
        rank_ = rank;
        text_ = text;
    }
    [[nodiscard]] const std::u16string& Text() const { return text_; }

private:
    NameRank rank_ = NameRank::kUseless;
    std::u16string text_;
};

}  // namespace

SfntNames ReadSfntNames(FT_Face face) {
    BestName family, fullName;
    SfntNames names;
    const FT_UInt count = FT_Get_Sfnt_Name_Count(face);
    for (FT_UInt i = 0; i < count; ++i) {
        FT_SfntName name{};
        if (FT_Get_Sfnt_Name(face, i, &name) != 0) continue;
        const NameRank rank = RankOf(name);
        if (rank == NameRank::kUseless) continue;
        if (name.name_id == TT_NAME_ID_FULL_NAME) fullName.Offer(rank, Decode(name));
        if (name.name_id != TT_NAME_ID_FONT_FAMILY) continue;
        const std::u16string text = Decode(name);
        family.Offer(rank, text);
        if (name.platform_id == TT_PLATFORM_MICROSOFT && !text.empty()) names.Aliases.push_back(text);
    }
    names.Family = family.Text();
    names.FullName = fullName.Text();
    std::ranges::sort(names.Aliases);
    names.Aliases.erase(std::unique(names.Aliases.begin(), names.Aliases.end()), names.Aliases.end());
    std::erase(names.Aliases, names.Family);
    return names;
}

}  // namespace captionfx
