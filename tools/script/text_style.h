// How text of a script looks: all that the library keeps of a character's style, and the words for it.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/script/json_tree.h"
#include "tools/script/script_values.h"

namespace captionfx {

struct TextStyle {
    FontSpec font;
    CharSpacing spacing;
    MetaFace face;
    MetaBorder border;
    MetaShadow shadow;

    // Records without padding, filled field by field from numbers that are finite: equal is what has equal bytes.
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
    bool operator==(const TextStyle& other) const { return std::memcmp(this, &other, sizeof *this) == 0; }
};
static_assert(std::has_unique_object_representations_v<MetaBorder> && sizeof(TextStyle) == 88 + 8 + 24 + 28 + 40);

/// What a script that says nothing has: white DejaVu Sans of size 64 without border and shadow. Both are off, with the
/// values that they get when a script turns them on.
[[nodiscard]] TextStyle PlainStyle();

/// The keys of a style; "extends" besides in a named one, "style" besides where a named one may be used.
inline constexpr std::array<std::string_view, 9> kStyleKeys{"font",    "size", "bold",   "italic", "stretch",
                                                            "spacing", "face", "border", "shadow"};
inline constexpr std::array<std::string_view, 6> kFaceKeys{"color", "to", "gradient", "opacity", "blur", "visible"};
inline constexpr std::array<std::string_view, 7> kBorderKeys{"color",   "to",   "gradient", "opacity",
                                                             "visible", "blur", "size"};
inline constexpr std::array<std::string_view, 8> kShadowKeys{"color", "to",    "gradient", "opacity",
                                                             "blur",  "casts", "offset",   "extrude"};

/// Where a fill goes from its first colour to its second.
inline constexpr std::array<ScriptWord<int32_t>, 8> kGradients{{{"up", 0},
                                                                {"down", 1},
                                                                {"left", 2},
                                                                {"right", 3},
                                                                {"up-left", 4},
                                                                {"up-right", 5},
                                                                {"down-left", 6},
                                                                {"down-right", 7}}};

/// What of a character casts its shadow: 1 the face, 2 the border.
inline constexpr std::array<ScriptWord<int32_t>, 4> kCasters{{{"nothing", 0}, {"face", 1}, {"border", 2}, {"both", 3}}};

/// The named styles of a script.
class StyleTable {
public:
    StyleTable() = default;
    /// Reads the object of styles, which must outlive the table, and checks all of them. Throws PlacedError.
    explicit StyleTable(const JsonValue& styles);

    /// Lays over `style` what an object with style keys says: first the named style that its "style" names, with all
    /// that it extends, then the object's own keys. Other keys are passed over. Throws PlacedError.
    void Apply(const JsonValue& object, TextStyle& style) const;

private:
    void ApplyNamed(const JsonValue& reference, TextStyle& style, std::vector<std::string_view>& extending) const;

    std::map<std::string, const JsonValue*, std::less<>> styles_;
};

}  // namespace captionfx
