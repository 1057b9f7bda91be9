#include "platform/linux/fallback_order.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <tuple>
#include <utility>

namespace captionfx {
namespace {

/// What families of CJK fonts call the regions that they are drawn for. Each region draws some ideographs in its own
/// way; Hong Kong is never the right one, since no text is known to be from there.
struct Region {
    std::string_view Language;
    std::u16string_view Word;
};
constexpr std::array<Region, 7> kRegions{{{"ja", u"JP"},
                                          {"ko", u"KR"},
                                          {"zh-cn", u"SC"},
                                          {"zh-cn", u"CN"},
                                          {"zh-tw", u"TC"},
                                          {"zh-tw", u"TW"},
                                          {"zh-hk", u"HK"}}};

/// Whether a name has a word, with blanks or its ends around it.
bool HasWord(std::u16string_view name, std::u16string_view word) {
    while (!name.empty()) {
        const size_t end = name.find(u' ');
        if (name.substr(0, end) == word) return true;
        name = end == std::u16string_view::npos ? std::u16string_view() : name.substr(end + 1);
    }
    return false;
}

/// 0 for a name with the region of `language`, 1 without any, 2 with another one. All 0 for languages without a region.
int RegionRank(const std::u16string& name, std::string_view language) {
    if (std::ranges::find(kRegions, language, &Region::Language) == kRegions.end()) return 0;
    const auto* const named =
        std::ranges::find_if(kRegions, [&name](const Region& region) { return HasWord(name, region.Word); });
    if (named == kRegions.end()) return 1;
    return named->Language == language ? 0 : 2;
}

/// 0 for the class of the base, 1 for sans, which goes with all, 2 for others.
int ClassRank(FontClass face, FontClass base) {
    if (face == base) return 0;
    return face == FontClass::kSans ? 1 : 2;
}

/// Smaller is better; compared from left to right.
using Rank = std::tuple<bool, bool, int, int, int, bool, int, int64_t>;

Rank RankOf(const FallbackEntry& entry, const FontDesign& base, FontStyle style, const std::string& language) {
    const FontFace& face = *entry.Choice.Face;
    const auto* const tag = reinterpret_cast<const FcChar8*>(language.c_str());
    const bool otherLanguage = face.Languages == nullptr || FcLangSetHasLang(face.Languages.get(), tag) != FcLangEqual;
    return {face.Colour,
            otherLanguage,
            RegionRank(entry.Family->Name, language),
            ClassRank(face.Class, base.Class),
            std::abs(face.WidthClass - base.WidthClass),
            entry.Style != style,
            (entry.Choice.MakeBold ? 1 : 0) + (entry.Choice.MakeOblique ? 1 : 0),
            -int64_t{face.CharacterCount}};
}

}  // namespace

std::vector<FallbackEntry> OrderFallback(const FontCatalog& catalog, const FontDesign& base, FontStyle style,
                                         std::string_view language) {
    std::vector<std::pair<Rank, FallbackEntry>> ranked;
    const std::string tag(language);
    const auto add = [&](const FallbackEntry& entry) {
        if (!entry.Choice.Face->SymbolMap) ranked.emplace_back(RankOf(entry, base, style, tag), entry);
    };
    for (const FontFamily& family : catalog.Families()) {
        const FallbackEntry wanted{&family, style, ChooseFace(family, style)};
        const FallbackEntry plain{&family, FontStyle{}, ChooseFace(family, FontStyle{})};
        add(wanted);
        if (plain.Choice.Face != wanted.Choice.Face) add(plain);
    }
    // Families come by name, and so the name decides between equals.
    std::ranges::stable_sort(ranked, {}, &std::pair<Rank, FallbackEntry>::first);
    std::vector<FallbackEntry> order;
    order.reserve(ranked.size());
    for (const auto& [rank, entry] : ranked) order.push_back(entry);
    return order;
}

}  // namespace captionfx
