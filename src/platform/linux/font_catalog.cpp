#include "platform/linux/font_catalog.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace captionfx {
namespace {

struct FontSetCloser {
    void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
};
struct PatternCloser {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
struct ObjectSetCloser {
    void operator()(FcObjectSet* set) const { FcObjectSetDestroy(set); }
};
using FontSetHandle = std::unique_ptr<FcFontSet, FontSetCloser>;

/// Where one face lies, and Fontconfig's record of it.
struct ListedFace {
    std::string Path;
    int Index;
    FcPattern* Pattern;  // of the set that was listed
};

FontSetHandle ListPatterns() {
    const std::unique_ptr<FcPattern, PatternCloser> any(FcPatternCreate());
    const std::unique_ptr<FcObjectSet, ObjectSetCloser> wanted(
        FcObjectSetBuild(FC_FILE, FC_INDEX, FC_CHARSET, FC_LANG, nullptr));
    if (any == nullptr || wanted == nullptr) return nullptr;
    return FontSetHandle(FcFontList(nullptr, any.get(), wanted.get()));
}

/// Ordered by path and index. Named instances of variable fonts (upper half of the index) are left out; the default
/// instance is listed twice with one index and taken once.
std::vector<ListedFace> FacesOf(const FcFontSet& set) {
    std::vector<ListedFace> faces;
    for (int i = 0; i < set.nfont; ++i) {
        FcChar8* file = nullptr;
        int index = 0;
        if (FcPatternGetString(set.fonts[i], FC_FILE, 0, &file) != FcResultMatch) continue;
        if (FcPatternGetInteger(set.fonts[i], FC_INDEX, 0, &index) != FcResultMatch || (index >> 16) != 0) continue;
        faces.push_back({reinterpret_cast<const char*>(file), index, set.fonts[i]});
    }
    const auto place = [](const ListedFace& face) { return std::tie(face.Path, face.Index); };
    const auto isSame = [place](const ListedFace& a, const ListedFace& b) { return place(a) == place(b); };
    std::ranges::stable_sort(faces, {}, place);
    faces.erase(std::unique(faces.begin(), faces.end(), isSame), faces.end());
    return faces;
}

void AddCoverage(FcPattern* pattern, FontFace& face) {
    FcCharSet* characters = nullptr;
    if (FcPatternGetCharSet(pattern, FC_CHARSET, 0, &characters) == FcResultMatch) {
        face.Characters.reset(FcCharSetCopy(characters));
        face.CharacterCount = FcCharSetCount(characters);
    }
    FcLangSet* languages = nullptr;
    if (FcPatternGetLangSet(pattern, FC_LANG, 0, &languages) == FcResultMatch) {
        face.Languages.reset(FcLangSetCopy(languages));
    }
}

/// Adds a face to its family unless the family has one of that name and style that is as new.
void AddFace(FontFamily& family, FontFace face) {
    const auto isSame = [&](const FontFace& other) {
        return other.Names.FullName == face.Names.FullName && other.Bold == face.Bold && other.Italic == face.Italic;
    };
    const auto known = std::ranges::find_if(family.Faces, isSame);
    if (known == family.Faces.end()) {
        family.Faces.push_back(std::move(face));
    } else if (face.Revision > known->Revision) {
        // The newer one keeps its own place in the order, behind the others.
        family.Faces.erase(known);
        family.Faces.push_back(std::move(face));
    }
}

}  // namespace

FaceChoice ChooseFace(const FontFamily& family, FontStyle style) {
    constexpr int kLacksItalic = 8, kOtherWeight = 4, kUnwantedItalic = 1;
    const auto costOf = [style](const FontFace& face) {
        return (style.Italic && !face.Italic ? kLacksItalic : 0) + (style.Bold != face.Bold ? kOtherWeight : 0) +
               (face.Italic && !style.Italic ? kUnwantedItalic : 0);
    };
    const FontFace* best = &family.Faces.front();
    int bestCost = costOf(*best);
    for (const FontFace& face : family.Faces) {
        if (bestCost == 0) break;  // the first perfect one, but the last of equals otherwise
        const int cost = costOf(face);
        if (cost > bestCost) continue;
        best = &face;
        bestCost = cost;
    }
    return {best, style.Bold && !best->Bold, style.Italic && !best->Italic};
}

FontCatalog::FontCatalog(std::vector<FontFace> faces) {
    std::map<std::u16string, FontFamily> byName;
    for (FontFace& face : faces) {
        FontFamily& family = byName[face.Names.Family];
        family.Name = face.Names.Family;
        AddFace(family, std::move(face));
    }
    families_.reserve(byName.size());
    for (auto& [name, family] : byName) {
        byName_.emplace(name, families_.size());
        families_.push_back(std::move(family));
    }
    // Aliases second, so that none takes another family's own name.
    for (size_t i = 0; i < families_.size(); ++i) {
        for (const FontFace& face : families_[i].Faces) {
            for (const std::u16string& alias : face.Names.Aliases) byName_.emplace(alias, i);
        }
    }
}

FontCatalog FontCatalog::OfSystem() {
    const FontSetHandle set = ListPatterns();
    const LibraryHandle library = NewFreeTypeLibrary();
    if (set == nullptr || library == nullptr) return {};
    std::vector<FontFace> faces;
    for (const ListedFace& listed : FacesOf(*set)) {
        std::optional<FontFace> face = ReadFontFace(library.get(), listed.Path, listed.Index);
        if (!face) continue;
        AddCoverage(listed.Pattern, *face);
        faces.push_back(std::move(*face));
    }
    return FontCatalog(std::move(faces));
}

const FontFamily* FontCatalog::Find(std::u16string_view name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : &families_[found->second];
}

std::vector<std::u16string_view> FontCatalog::Names() const {
    std::vector<std::u16string_view> names;
    names.reserve(byName_.size());
    for (const auto& [name, family] : byName_) names.emplace_back(name);
    return names;
}

}  // namespace captionfx
