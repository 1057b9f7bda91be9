#include "tools/script/script_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <span>

#include "tools/script/effect_names.h"
#include "tools/text_encoding.h"

namespace captionfx {
namespace {

/// What a file keeps of a font's size: its ratio to the em, with six decimals.
std::string SavedSize(float size) {
    constexpr double kEm = 2048.0;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.6f", static_cast<double>(size) / kEm);
    return text.data();
}

/// The number of fewest decimals that `isGood` takes for `number`.
template <class IsGood>
float Rounded(float number, IsGood isGood) {
    for (double unit = 1; unit <= 1e6; unit *= 10) {
        const auto rounded = static_cast<float>(std::round(static_cast<double>(number) * unit) / unit);
        if (isGood(rounded)) return rounded;
    }
    return number;
}

/// The size that was asked for most likely: a file cuts 72 to 71.9995.
float AskedSize(float size) {
    return Rounded(size, [&](float rounded) { return SavedSize(rounded) == SavedSize(size); });
}

std::string ColorText(uint32_t color) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", color & 0xFFU, color >> 8U & 0xFFU, color >> 16U & 0xFFU);
    return text.data();
}

/// Colours, opacity and softness of a part that differ from the base; the colours also where the base is not drawn.
template <class Style>
ScriptJson FillKeys(const Style& style, const Style& base, bool isBaseDrawn) {
    ScriptJson keys = ScriptJson::object();
    if (!isBaseDrawn || style.Color1 != base.Color1 || style.Color2 != base.Color2 || style.GradType != base.GradType) {
        constexpr int32_t kDown = 1;
        const bool isFlat = style.Color1 == style.Color2;
        keys["color"] = ColorText(style.Color1);
        if (!isFlat) keys["to"] = ColorText(style.Color2);
        const std::string_view word = WordFor(style.GradType, std::span<const ScriptWord<int32_t>>(kGradients));
        if (style.GradType != (isFlat ? 0 : kDown) && !word.empty()) keys["gradient"] = word;
    }
    if (style.Alpha != base.Alpha) {
        constexpr float kOpaque = 255.0F;
        const float opacity = static_cast<float>(style.Alpha) / kOpaque;
        keys["opacity"] =
            NumberText(Rounded(opacity, [&](float part) { return std::lround(kOpaque * part) == style.Alpha; }));
    }
    if (style.BlurRadius != base.BlurRadius) keys["blur"] = style.BlurRadius;
    return keys;
}

/// A colour alone is said without an object.
void AddPart(ScriptJson& object, const char* key, ScriptJson part) {
    if (part.size() == 1 && part.contains("color")) part = ScriptJson(part["color"]);
    object[key] = std::move(part);
}

template <class Record>
bool AreSame(const Record& a, const Record& b) {
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): the library's records, zeroed and without padding
    return std::memcmp(&a, &b, sizeof a) == 0;
}

void AddFace(ScriptJson& object, const MetaFace& face, const MetaFace& base) {
    if (AreSame(face, base)) return;
    ScriptJson keys = FillKeys(face, base, base.Enable != 0);
    if (face.Enable == 0) keys["visible"] = false;
    AddPart(object, "face", std::move(keys));
}

void AddBorder(ScriptJson& object, const MetaBorder& border, const MetaBorder& base) {
    if (AreSame(border, base)) return;
    if (AreSame(border, PlainStyle().border)) {
        object["border"] = "none";
        return;
    }
    ScriptJson keys = FillKeys(border, base, base.Enable != 0);
    if (border.Size != base.Size) keys["size"] = border.Size;
    if (border.Enable == 0) keys["visible"] = false;
    AddPart(object, "border", std::move(keys));
}

void AddShadow(ScriptJson& object, const MetaShadow& shadow, const MetaShadow& base) {
    if (AreSame(shadow, base)) return;
    if (AreSame(shadow, PlainStyle().shadow)) {
        object["shadow"] = "none";
        return;
    }
    const auto castersOf = [](const MetaShadow& s) {
        return (s.EnableFace != 0 ? 1 : 0) + (s.EnableBorder != 0 ? 2 : 0);
    };
    constexpr int kBoth = 3;
    const int casters = castersOf(shadow), baseCasters = castersOf(base);
    ScriptJson keys = FillKeys(shadow, base, baseCasters != 0);
    if (shadow.OffsetX != base.OffsetX || shadow.OffsetY != base.OffsetY)
        keys["offset"] = {NumberText(shadow.OffsetX), NumberText(shadow.OffsetY)};
    if (shadow.Height != base.Height) keys["extrude"] = shadow.Height != 0;
    if (casters != (baseCasters == 0 ? kBoth : baseCasters))
        keys["casts"] = WordFor(casters, std::span<const ScriptWord<int32_t>>(kCasters));
    AddPart(object, "shadow", std::move(keys));
}

ScriptJson PassageText(const Passage& passage) {
    return {{"effect", NameOfEffect(passage.effect)}, {"seconds", NumberText(passage.seconds)}};
}

std::string Bracketed(const ScriptJson& value, const std::string& text) {
    std::string bracketed(1, value.is_object() ? '{' : '[');
    bracketed += text;
    bracketed += value.is_object() ? '}' : ']';
    return bracketed;
}

/// On one line, with spaces where a person would set them.
std::string OneLine(const ScriptJson& value) {
    if (!value.is_structured()) return value.dump();
    std::string text;
    for (const auto& [key, item] : value.items()) {
        if (!text.empty()) text += ", ";
        if (value.is_object()) text += ScriptJson(key).dump() + ": ";
        text += OneLine(item);
    }
    return Bracketed(value, text);
}

std::string LaidOut(const ScriptJson& value, size_t indent, size_t used) {
    constexpr size_t kLineLength = 100, kStep = 2;
    std::string line = OneLine(value);
    if (!value.is_structured() || indent + used + line.size() <= kLineLength) return line;
    std::string text;
    const std::string start(indent + kStep, ' ');
    for (const auto& [key, item] : value.items()) {
        const std::string name = value.is_object() ? ScriptJson(key).dump() + ": " : "";
        text.append(text.empty() ? "\n" : ",\n").append(start).append(name);
        text += LaidOut(item, indent + kStep, name.size());
    }
    text.append(1, '\n').append(indent, ' ');
    return Bracketed(value, text);
}

}  // namespace

ScriptJson NumberText(float number) {
    if (number == std::trunc(number)) return static_cast<int64_t>(number);
    std::array<char, 64> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), number);
    double decimal = 0;
    std::from_chars(text.data(), end, decimal);
    return decimal;
}

void AddStyleKeys(ScriptJson& object, const TextStyle& style, const TextStyle& base) {
    const std::string name = Utf8FromField(style.font.FaceName);
    if (name != Utf8FromField(base.font.FaceName)) object["font"] = name;
    if (style.font.Size != base.font.Size) object["size"] = NumberText(AskedSize(style.font.Size));
    if (style.font.Bold != base.font.Bold) object["bold"] = style.font.Bold != 0;
    if (style.font.Italic != base.font.Italic) object["italic"] = style.font.Italic != 0;
    if (style.spacing.WidthScale != base.spacing.WidthScale) object["stretch"] = NumberText(style.spacing.WidthScale);
    if (style.spacing.Spacing != base.spacing.Spacing) object["spacing"] = NumberText(style.spacing.Spacing);
    AddFace(object, style.face, base.face);
    AddBorder(object, style.border, base.border);
    AddShadow(object, style.shadow, base.shadow);
}

void AddTimelineKeys(ScriptJson& object, const std::vector<Keyframe>& keys) {
    const std::optional<Timeline> timeline = PassagesOf(keys);
    if (timeline) {
        if (timeline->start != 0.0F) object["start"] = NumberText(timeline->start);
        if (timeline->in) object["in"] = PassageText(*timeline->in);
        object["hold"] = NumberText(timeline->hold.value_or(0.0F));
        if (timeline->out) object["out"] = PassageText(*timeline->out);
        return;
    }
    for (const Keyframe& key : keys) {
        object["keys"].push_back({{"time", NumberText(key.time)},
                                  {"effect", NameOfEffect(key.effect)},
                                  {"progress", NumberText(key.progress)}});
    }
}

std::string LaidOut(const ScriptJson& value) {
    return LaidOut(value, 0, 0) + "\n";
}

}  // namespace captionfx
