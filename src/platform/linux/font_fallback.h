// The font that shows a character which another font lacks: found among the installed ones, and remembered.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "platform/linux/fallback_order.h"
#include "platform/linux/font_registry.h"

namespace captionfx {

/// Safe on any number of threads. Answers depend on the installed fonts and the arguments alone.
class FontFallback {
public:
    /// Over FontRegistry::Instance(); as long-lived as that.
    [[nodiscard]] static FontFallback& Instance();

    /// The registry must outlive this object.
    explicit FontFallback(FontRegistry& registry) : registry_(registry) {}

    /// A font with a glyph for `unit`: its family, height of `base`, and the style of `base` or, where only the plain
    /// face has the glyph, plain. Realising it gives that glyph. `hanLanguage` as HanLanguageOf answers it. Nothing if
    /// no font has a glyph, and for controls, blanks, private use and surrogate halves, which mean nothing in another
    /// font.
    [[nodiscard]] std::optional<LogFont> FontFor(const LogFont& base, std::string_view hanLanguage, char16_t unit);

private:
    /// Class and width of the base font, bold, italic, language.
    using ListKey = std::tuple<FontClass, int, bool, bool, std::string>;

    struct List {
        std::vector<FallbackEntry> Entries;
        std::unordered_map<char16_t, const FallbackEntry*> Found;  // null for what no font has
    };

    [[nodiscard]] List& ListFor(const FontDesign& base, FontStyle style, std::string_view language);
    [[nodiscard]] const FallbackEntry* FirstWith(char16_t unit, const List& list);
    [[nodiscard]] bool CanShow(const FallbackEntry& entry, char16_t unit);

    FontRegistry& registry_;
    std::mutex mutex_;  // held for a whole look-up; it also keeps Fontconfig to one thread at a time
    std::map<ListKey, List> lists_;
};

}  // namespace captionfx
