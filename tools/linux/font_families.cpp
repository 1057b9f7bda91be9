#include "tools/font_families.h"

#include <memory>

#include <fontconfig/fontconfig.h>

namespace captionfx {
namespace {

template <auto Free>
struct FontconfigFree {
    template <class Object>
    void operator()(Object* object) const noexcept {
        Free(object);
    }
};

}  // namespace

std::set<std::string> FontFamilies() {
    const std::unique_ptr<FcPattern, FontconfigFree<&FcPatternDestroy>> all(FcPatternCreate());
    const std::unique_ptr<FcObjectSet, FontconfigFree<&FcObjectSetDestroy>> family(
        FcObjectSetBuild(FC_FAMILY, static_cast<char*>(nullptr)));
    const std::unique_ptr<FcFontSet, FontconfigFree<&FcFontSetDestroy>> fonts(
        FcFontList(nullptr, all.get(), family.get()));
    std::set<std::string> names;
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
        FcChar8* name = nullptr;
        if (FcPatternGetString(fonts->fonts[i], FC_FAMILY, 0, &name) == FcResultMatch)
            names.insert(reinterpret_cast<const char*>(name));
    }
    return names;
}

}  // namespace captionfx
