// The records of a title: strings with their text, structure, style tables, keyframes and render caches.
//
// The names of records and fields are also those of the title's XML. Positions and sizes are document units, relative
// to the next larger record. Style records are plain bytes, built from zeroed storage, since the tables compare bytes.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <string_view>
#include <type_traits>
#include <vector>

#include "host/caption_fx.h"
#include "paths/path_handle.h"
#include "platform/log_font.h"
#include "render/glyph_bitmap.h"
#include "render/string_planes.h"

namespace captionfx {

/// The height at which every font is realised. A font's size lives in MetaFont::SizeRatio alone.
inline constexpr uint32_t kEmSize = 2048;

/// Below this code unit vertical text lays characters on their side.
inline constexpr char16_t kFirstUprightCharacter = 128;

inline constexpr size_t kNameLength = 260;  // of effect names and file names, the terminating zero included

/// Text of a fixed field. A host may fill a field to its last unit, without a terminating zero.
template <class Char, size_t N>
[[nodiscard]] std::basic_string_view<Char> TextOf(const Char (&field)[N]) {
    const std::basic_string_view<Char> whole(field, N);
    return whole.substr(0, whole.find(Char{}));
}

/// Sets a fixed field to a text, cut to fit; the rest of the field is zero.
template <class Char, size_t N>
void SetText(Char (&field)[N], std::type_identity_t<std::basic_string_view<Char>> text) {
    std::memset(field, 0, sizeof field);
    text.copy(field, N - 1);
}

/// A realised font: LogFont at kEmSize, metrics in document units at the requested size.
struct MetaFont {
    captionfx::LogFont LogFont;
    float SizeRatio;  ///< Requested size over kEmSize.
    float Ascent, Descent;
    float IntLead, ExtLead;
    float StrikeoutPos, StrikeoutSize;
    float UnderlinePos, UnderlineSize;
};

/// One UTF-16 code unit.
struct MetaCharacter {
    uint32_t Value;       ///< The code unit; the upper half is 0.
    float Left, Top;      ///< Inside the line.
    float Width, Height;  ///< Extent without stretch; crossed where a vertical string lays the character on its side.
    float WidthScale, Spacing;
    int32_t LineIndex;
    int32_t FontIndex, FaceIndex, BorderIndex, ShadowIndex;
};

struct MetaLine {
    float Left, Top, Width, Height;
    int32_t CharStart, CharEnd;  ///< Both inclusive.
    int32_t ParagraphIndex;
};

struct MetaParagraph {
    float Left, Top, Width, Height;
    int32_t LineStart, LineEnd;  ///< Both inclusive.
    uint32_t Align;
    float LineSpace, BeforeSpace, AfterSpace;
    float LeftIndent, RightIndent;
};

/// What a keyframe sets; its time is the key of the map.
struct MetaPath {
    char PathID[kNameLength];
    float PathProgress;
};

static_assert(std::is_trivially_copyable_v<MetaFont> && sizeof(MetaFont) == 128, "compared as bytes: no padding");

/// A string of a title.
///
/// It owns its caches and can be moved, not copied. Lines partition the characters and paragraphs partition the lines;
/// a string without text has neither. A paragraph begins at the LF of a CR LF, whose CR ends the paragraph before.
struct MetaString {
    float Left = 0, Top = 0;
    float Width = 0, Height = 0;  ///< Set by layout.
    int32_t ParagraphCount = 0;   ///< Carried by titles as it stands; nobody counts here.
    float WidthLimit = 0;
    float RotateDegree = 0;
    int32_t Vertical = 0;
    char PathID[kNameLength] = {};  ///< The effect in force; follows PathList while frames are drawn.
    float PathProgress = 0;
    char MaskFile[kNameLength] = {};

    PathHandle PathObject;
    int32_t PathChanged = 0;  ///< The effect must be bound anew before it is used.

    std::vector<MetaCharacter> Characters;
    std::vector<MetaLine> Lines;
    std::vector<MetaParagraph> Paragraphs;
    std::vector<MetaFont> Fonts;
    std::vector<MetaFace> Faces;
    std::vector<MetaBorder> Borders;
    std::vector<MetaShadow> Shadows;
    std::map<float, MetaPath> PathList;
    const MetaPath* KeyCursor = nullptr;  ///< The last keyframe reached by the walk; null before the first.

    std::vector<GlyphLayers> GlyphLayersList;  ///< One for each character.
    float RotateSin = 0, RotateCos = 1;        ///< Of minus RotateDegree.
    float OriginX = 0, OriginY = 0;            ///< Centre of the rotation, pixels; as of AddString or loading.
    captionfx::StringPlanes StringPlanes;
    TitleRect DirtyRect{};  ///< Pixels touched in this frame.
    TitleRect DrawnRect{};  ///< Pixels of the planes that may not be zero.
};

static_assert(!std::is_copy_constructible_v<MetaString>);
static_assert(std::is_nothrow_move_constructible_v<MetaString>, "a growing vector moves its strings");

/// The styles that new text and new strings take.
struct TitleDefaults {
    FontSpec DefaultFont;
    MetaFace DefaultFace;
    MetaBorder DefaultBorder;
    MetaShadow DefaultShadow;
    CharSpacing DefaultCharSpacing;
    ParagraphSpec DefaultParagraph;
    StringSpec DefaultString;
};

/// Copies the six settings that ParagraphSpec and MetaParagraph share.
template <class To, class From>
void CopyParagraphSettings(To& to, const From& from) {
    to.Align = from.Align;
    to.LineSpace = from.LineSpace;
    to.BeforeSpace = from.BeforeSpace;
    to.AfterSpace = from.AfterSpace;
    to.LeftIndent = from.LeftIndent;
    to.RightIndent = from.RightIndent;
}

/// Copies the eight settings that StringSpec and MetaString share. Texts come out terminated.
template <class To, class From>
void CopyStringSettings(To& to, const From& from) {
    to.Left = from.Left;
    to.Top = from.Top;
    to.WidthLimit = from.WidthLimit;
    to.RotateDegree = from.RotateDegree;
    to.Vertical = from.Vertical;
    SetText(to.PathID, TextOf(from.PathID));
    to.PathProgress = from.PathProgress;
    SetText(to.MaskFile, TextOf(from.MaskFile));
}

/// Whether `index` names an entry of `list`.
template <class List>
[[nodiscard]] bool IsIndexOf(const List& list, int32_t index) {
    return index >= 0 && static_cast<size_t>(index) < list.size();
}

/// Sizes of lists fit 32 bits: an index into one does.
template <class List>
[[nodiscard]] int32_t CountOf(const List& list) {
    return static_cast<int32_t>(list.size());
}

/// Entry `index` of a list, for an index that is known to be good.
template <class List>
[[nodiscard]] auto& At(List& list, int32_t index) {
    return list[static_cast<size_t>(index)];
}

}  // namespace captionfx
