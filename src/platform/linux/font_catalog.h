// All installed faces by family, and the choice of a face for a style. Built once; never changes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/linux/font_face.h"

namespace captionfx {

struct FontStyle {
    bool Bold = false, Italic = false;
    bool operator==(const FontStyle&) const = default;
};

struct FontFamily {
    std::u16string Name;
    std::vector<FontFace> Faces;  ///< At least one; in the order of the catalog.
};

/// The face that stands for a style, and what of the style it lacks.
struct FaceChoice {
    const FontFace* Face;
    bool MakeBold, MakeOblique;
};

/// The face of `family` nearest to `style`. A wanted slant weighs most, then the right weight, then no unwanted slant;
/// the weight class plays no part, only the bold flag.
[[nodiscard]] FaceChoice ChooseFace(const FontFamily& family, FontStyle style);

class FontCatalog {
public:
    /// Without any font.
    FontCatalog() = default;

    /// `faces` in the order that decides between equals. Of two faces of one family with the same full name and flags
    /// only the newer revision stays, among equals the first.
    explicit FontCatalog(std::vector<FontFace> faces);

    /// The faces that Fontconfig lists, ordered by path and index. Opens every font file: 20 ms for 66 faces.
    [[nodiscard]] static FontCatalog OfSystem();

    /// By name.
    [[nodiscard]] const std::vector<FontFamily>& Families() const { return families_; }

    /// The family of that very name or alias, or null. The family lives as long as the catalog.
    [[nodiscard]] const FontFamily* Find(std::u16string_view name) const;

    /// All names and aliases that Find knows, in no order.
    [[nodiscard]] std::vector<std::u16string_view> Names() const;

private:
    struct NameHash {
        using is_transparent = void;
        size_t operator()(std::u16string_view name) const { return std::hash<std::u16string_view>()(name); }
    };

    std::vector<FontFamily> families_;
    std::unordered_map<std::u16string, size_t, NameHash, std::equal_to<>> byName_;
};

}  // namespace captionfx
