// The order in which fonts are asked for a character that another font lacks. It depends on the installed fonts only:
// not on locale, environment or Fontconfig's rules, whose answers change from one user to the next.
#pragma once

#include <string_view>
#include <vector>

#include "platform/linux/font_catalog.h"

namespace captionfx {

/// What of a base font counts when a font is sought that goes with it.
struct FontDesign {
    FontClass Class;
    int WidthClass;
};

[[nodiscard]] inline FontDesign DesignOf(const FontFace& face) {
    return {face.Class, face.WidthClass};
}

/// A family in one style. `Style` is the wanted one or plain; asking the family for it gives `Choice`.
struct FallbackEntry {
    const FontFamily* Family;
    FontStyle Style;
    FaceChoice Choice;
};

/// All families but those of symbols, the most suitable first: each in the wanted style, and once more plain where
/// another face stands for that. `language` is one of Fontconfig's tags.
[[nodiscard]] std::vector<FallbackEntry> OrderFallback(const FontCatalog& catalog, const FontDesign& base,
                                                       FontStyle style, std::string_view language);

}  // namespace captionfx
