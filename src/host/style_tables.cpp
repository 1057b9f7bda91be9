#include "host/style_tables.h"

#include <algorithm>
#include <cstring>

namespace captionfx {
namespace {

template <class Style>
int32_t Intern(std::vector<Style>& table, const Style& style) {
    static_assert(std::is_trivially_copyable_v<Style>);
    // Equal is what has equal bytes: records come from zeroed storage, have no padding, and -0 is another size than 0.
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
    const auto equal = [&](const Style& entry) { return std::memcmp(&entry, &style, sizeof style) == 0; };
    const auto found = std::ranges::find_if(table, equal);
    const auto index = static_cast<int32_t>(found - table.begin());
    if (found == table.end()) table.push_back(style);
    return index;
}

template <class Style>
int32_t ReleaseRange(std::vector<MetaCharacter>& characters, std::vector<Style>& table, int32_t MetaCharacter::*index,
                     int32_t first, int32_t count) {
    if (!IsIndexOf(characters, first) || int64_t{first} + count > CountOf(characters)) return 0;

    // Whether an entry is used outside the range; indices only ever move down, and so do these marks.
    std::vector<bool> keptByOthers(table.size(), false);
    for (int32_t i = 0; i < CountOf(characters); ++i) {
        const bool outside = i < first || i >= first + count;
        const int32_t entry = At(characters, i).*index;
        if (outside && IsIndexOf(table, entry)) keptByOthers[static_cast<size_t>(entry)] = true;
    }
    for (int32_t i = first; i < first + count; ++i) {
        const int32_t entry = At(characters, i).*index;
        if (!IsIndexOf(table, entry) || keptByOthers[static_cast<size_t>(entry)]) continue;
        table.erase(table.begin() + entry);
        keptByOthers.erase(keptByOthers.begin() + entry);
        for (MetaCharacter& character : characters) {
            int32_t& used = character.*index;
            if (used == entry) used = -1;
            if (used > entry) --used;
        }
    }
    return 1;
}

}  // namespace

int32_t InternFont(MetaString& string, const MetaFont& font) {
    return Intern(string.Fonts, font);
}
int32_t InternFace(MetaString& string, const MetaFace& face) {
    return Intern(string.Faces, face);
}
int32_t InternBorder(MetaString& string, const MetaBorder& border) {
    return Intern(string.Borders, border);
}
int32_t InternShadow(MetaString& string, const MetaShadow& shadow) {
    return Intern(string.Shadows, shadow);
}

int32_t ReleaseFontRange(MetaString& string, int32_t first, int32_t count) {
    return ReleaseRange(string.Characters, string.Fonts, &MetaCharacter::FontIndex, first, count);
}
int32_t ReleaseFaceRange(MetaString& string, int32_t first, int32_t count) {
    return ReleaseRange(string.Characters, string.Faces, &MetaCharacter::FaceIndex, first, count);
}
int32_t ReleaseBorderRange(MetaString& string, int32_t first, int32_t count) {
    return ReleaseRange(string.Characters, string.Borders, &MetaCharacter::BorderIndex, first, count);
}
int32_t ReleaseShadowRange(MetaString& string, int32_t first, int32_t count) {
    return ReleaseRange(string.Characters, string.Shadows, &MetaCharacter::ShadowIndex, first, count);
}

}  // namespace captionfx
