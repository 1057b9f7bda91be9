#include "platform/linux/font_fallback.h"

#include <algorithm>

#include "platform/linux/text_language.h"

namespace captionfx {
namespace {

constexpr bool NeverFallsBack(char16_t unit) {
    const bool controlOrBlank = unit <= 0x20 || (unit >= 0x7F && unit < 0xA0);
    const bool surrogateOrPrivate = unit >= 0xD800 && unit <= 0xF8FF;
    return controlOrBlank || surrogateOrPrivate;
}

}  // namespace

FontFallback& FontFallback::Instance() {
    static FontFallback& fallback = *std::make_unique<FontFallback>(FontRegistry::Instance()).release();
    return fallback;
}

std::optional<LogFont> FontFallback::FontFor(const LogFont& base, std::string_view hanLanguage, char16_t unit) {
    const FontFamily* const family = registry_.FamilyOf(base);
    if (family == nullptr || NeverFallsBack(unit)) return std::nullopt;
    const FontStyle style = StyleOf(base);
    const FontDesign design = DesignOf(*ChooseFace(*family, style).Face);

    const std::lock_guard lock(mutex_);
    List& list = ListFor(design, style, LanguageOf(unit, hanLanguage));
    auto known = list.Found.find(unit);
    if (known == list.Found.end()) known = list.Found.emplace(unit, FirstWith(unit, list)).first;
    const FallbackEntry* const entry = known->second;
    if (entry == nullptr) return std::nullopt;
    LogFont font = MakeLogFont(entry->Family->Name, entry->Style);
    font.lfHeight = base.lfHeight;
    return font;
}

FontFallback::List& FontFallback::ListFor(const FontDesign& base, FontStyle style, std::string_view language) {
    const ListKey key(base.Class, base.WidthClass, style.Bold, style.Italic, language);
    const auto known = lists_.find(key);
    if (known != lists_.end()) return known->second;
    return lists_.emplace(key, List{OrderFallback(registry_.Catalog(), base, style, language), {}}).first->second;
}

const FallbackEntry* FontFallback::FirstWith(char16_t unit, const List& list) {
    const auto found =
        std::ranges::find_if(list.Entries, [&](const FallbackEntry& entry) { return CanShow(entry, unit); });
    return found == list.Entries.end() ? nullptr : &*found;
}

bool FontFallback::CanShow(const FallbackEntry& entry, char16_t unit) {
    const FontFace& face = *entry.Choice.Face;
    if (face.Characters == nullptr || FcCharSetHasChar(face.Characters.get(), unit) == 0) return false;
    const std::shared_ptr<const OutlineFont> font = registry_.FontOf(*entry.Family, entry.Style);
    return font->HasGlyph(unit) && (!face.Colour || font->HasShape(unit));
}

}  // namespace captionfx
