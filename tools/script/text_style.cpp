#include "tools/script/text_style.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "tools/colors.h"
#include "tools/text_encoding.h"

namespace captionfx {
namespace {

constexpr std::string_view kNone = "none";

bool IsNone(const JsonValue& value) {
    return value.kind == JsonKind::kString && value.text == kNone;
}

/// Calls `read` with the member of that key, if there is one.
template <class Read>
void With(const JsonValue& object, std::string_view key, Read read) {
    if (const JsonValue* const member = FindMember(object, key)) read(*member);
}

int32_t AlphaOf(const JsonValue& value) {
    constexpr float kOpaque = 255.0F;
    return static_cast<int32_t>(std::lround(kOpaque * NumberOf(value, 0.0F, 1.0F, "an opacity from 0 to 1")));
}

/// A first colour makes the fill flat; a second one makes it run, downward where nothing else is said.
template <class Style>
void ApplyColors(const JsonValue& object, Style& style) {
    With(object, "color", [&](const JsonValue& v) {
        style.Color1 = style.Color2 = StyleColor(ColorOf(v));
        style.GradType = 0;
    });
    With(object, "to", [&](const JsonValue& v) {
        style.Color2 = StyleColor(ColorOf(v));
        style.GradType = 1;
    });
    With(object, "gradient",
         [&](const JsonValue& v) { style.GradType = WordOf(v, std::span<const ScriptWord<int32_t>>(kGradients)); });
    With(object, "opacity", [&](const JsonValue& v) { style.Alpha = AlphaOf(v); });
    With(object, "blur", [&](const JsonValue& v) { style.BlurRadius = IntegerOf(v, "a whole number"); });
}

/// Reads a style that is "none", a colour, or an object: a colour is short for an object with it alone.
template <class Style, size_t N, class ApplyMore>
void ApplyPart(const JsonValue& value, const std::array<std::string_view, N>& keys, const Style& plain, Style& style,
               ApplyMore applyMore) {
    if (IsNone(value)) {
        style = plain;
        return;
    }
    if (value.kind == JsonKind::kString) {
        style.Color1 = style.Color2 = StyleColor(ColorOf(value));
        style.GradType = 0;
    } else {
        if (value.kind != JsonKind::kObject) FailExpected(value, "a colour #RRGGBB, \"none\" or an object");
        CheckObject(value, keys);
        ApplyColors(value, style);
    }
    applyMore();
}

void ApplyFace(const JsonValue& value, MetaFace& face) {
    MetaFace none = PlainStyle().face;
    none.Enable = 0;
    ApplyPart(value, kFaceKeys, none, face, [&] {
        face.Enable = 1;
        With(value, "visible", [&](const JsonValue& v) { face.Enable = BooleanOf(v) ? 1 : 0; });
    });
}

void ApplyBorder(const JsonValue& value, MetaBorder& border) {
    ApplyPart(value, kBorderKeys, PlainStyle().border, border, [&] {
        border.Enable = 1;
        With(value, "visible", [&](const JsonValue& v) { border.Enable = BooleanOf(v) ? 1 : 0; });
        With(value, "size", [&](const JsonValue& v) {
            border.Size = IntegerOf(v, "a whole number, 10 for one eighth of the font's size");
        });
    });
}

void ApplyShadow(const JsonValue& value, MetaShadow& shadow) {
    ApplyPart(value, kShadowKeys, PlainStyle().shadow, shadow, [&] {
        if (shadow.EnableFace == 0 && shadow.EnableBorder == 0) shadow.EnableFace = shadow.EnableBorder = 1;
        With(value, "casts", [&](const JsonValue& v) {
            const int32_t caster = WordOf(v, std::span<const ScriptWord<int32_t>>(kCasters));
            shadow.EnableFace = caster % 2;
            shadow.EnableBorder = caster / 2;
        });
        With(value, "offset", [&](const JsonValue& v) {
            const Position offset = PairOf(v, "an offset [right, down]");
            shadow.OffsetX = offset.x;
            shadow.OffsetY = offset.y;
        });
        With(value, "extrude", [&](const JsonValue& v) { shadow.Height = BooleanOf(v) ? 1 : 0; });
    });
}

void ApplyFont(const JsonValue& object, TextStyle& style) {
    constexpr float kLargestSize = 1638.0F, kWidest = 100.0F;
    With(object, "font", [&](const JsonValue& v) {
        const auto name = v.kind == JsonKind::kString ? ParseFontName(v.text) : std::nullopt;
        if (!name) FailExpected(v, "a font name of 1 to 31 characters");
        std::fill(std::begin(style.font.FaceName), std::end(style.font.FaceName), u'\0');
        name->copy(style.font.FaceName, std::size(style.font.FaceName) - 1);
    });
    With(object, "size",
         [&](const JsonValue& v) { style.font.Size = NumberOf(v, 0.0F, kLargestSize, "a font size from 0 to 1638"); });
    With(object, "bold", [&](const JsonValue& v) { style.font.Bold = BooleanOf(v) ? 1 : 0; });
    With(object, "italic", [&](const JsonValue& v) { style.font.Italic = BooleanOf(v) ? 1 : 0; });
    With(object, "stretch", [&](const JsonValue& v) {
        style.spacing.WidthScale = NumberOf(v, 0.0F, kWidest, "a stretch from 0 to 100, 1 for none");
    });
    With(object, "spacing", [&](const JsonValue& v) { style.spacing.Spacing = NumberOf(v); });
}

void ApplyKeys(const JsonValue& object, TextStyle& style) {
    ApplyFont(object, style);
    With(object, "face", [&](const JsonValue& v) { ApplyFace(v, style.face); });
    With(object, "border", [&](const JsonValue& v) { ApplyBorder(v, style.border); });
    With(object, "shadow", [&](const JsonValue& v) { ApplyShadow(v, style.shadow); });
}

}  // namespace

TextStyle PlainStyle() {
    constexpr uint32_t kWhite = 0x00FFFFFF, kAnyCharSet = 1;
    constexpr std::u16string_view kFont = u"DejaVu Sans";
    TextStyle style{};
    kFont.copy(style.font.FaceName, kFont.size());
    style.font.CharSet = kAnyCharSet;
    style.font.Size = 64.0F;
    style.spacing = {.WidthScale = 1.0F, .Spacing = 0.0F};
    style.face = {.Enable = 1, .Color1 = kWhite, .Color2 = kWhite, .GradType = 0, .Alpha = 255, .BlurRadius = 0};
    style.border = {.Enable = 0, .Size = 3, .Color1 = 0, .Color2 = 0, .GradType = 0, .Alpha = 255, .BlurRadius = 0};
    style.shadow = {.EnableFace = 0,
                    .EnableBorder = 0,
                    .Color1 = 0,
                    .Color2 = 0,
                    .GradType = 0,
                    .Alpha = 128,
                    .BlurRadius = 3,
                    .OffsetX = 3.0F,
                    .OffsetY = 3.0F,
                    .Height = 0};
    return style;
}

StyleTable::StyleTable(const JsonValue& styles) {
    std::vector<std::string_view> keys(kStyleKeys.begin(), kStyleKeys.end());
    keys.emplace_back("extends");
    if (styles.kind != JsonKind::kObject) FailExpected(styles, "an object of named styles");
    for (const JsonValue& style : styles.items) {
        CheckObject(style, keys);
        styles_.emplace(style.key, &style);
    }
    for (const JsonValue& style : styles.items) {
        TextStyle unused = PlainStyle();
        std::vector<std::string_view> extending{style.key};
        With(style, "extends", [&](const JsonValue& base) { ApplyNamed(base, unused, extending); });
        ApplyKeys(style, unused);
    }
}

void StyleTable::Apply(const JsonValue& object, TextStyle& style) const {
    std::vector<std::string_view> extending;
    With(object, "style", [&](const JsonValue& reference) { ApplyNamed(reference, style, extending); });
    ApplyKeys(object, style);
}

void StyleTable::ApplyNamed(const JsonValue& reference, TextStyle& style,
                            std::vector<std::string_view>& extending) const {
    const auto found = styles_.find(NameOf(reference, "the name of a style"));
    if (found == styles_.end()) {
        std::vector<std::string_view> names;
        for (const auto& [name, unused] : styles_) names.push_back(name);
        const std::string_view nearest = NearestName(reference.text, names);
        Fail(reference, "there is no style '" + reference.text + "'" +
                            (nearest.empty() ? "" : "; is '" + std::string(nearest) + "' meant?"));
    }
    if (std::ranges::find(extending, found->first) != extending.end())
        Fail(reference, "the style '" + reference.text + "' extends itself");
    extending.push_back(found->first);
    With(*found->second, "extends", [&](const JsonValue& base) { ApplyNamed(base, style, extending); });
    ApplyKeys(*found->second, style);
}

}  // namespace captionfx
