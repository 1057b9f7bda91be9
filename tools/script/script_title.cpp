#include "tools/script/script_title.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <new>
#include <set>
#include <string>
#include <vector>

#include "tools/script/word_wrap.h"
#include "tools/title_file.h"
#include "tools/title_setup.h"

namespace captionfx {
namespace {

StringSpec SettingsOf(const ScriptString& string, Position corner) {
    StringSpec settings{};
    settings.Left = corner.x;
    settings.Top = corner.y;
    settings.WidthLimit = string.placement.widthLimit;
    settings.RotateDegree = string.placement.rotateDegree;
    settings.Vertical = string.placement.isVertical ? 1 : 0;
    string.effect.copy(settings.PathID, std::size(settings.PathID) - 1);
    settings.PathProgress = string.progress;
    return settings;
}

void SetStyle(IKVT_CaptionFx& title, const TextStyle& style) {
    title.SetDefaultFont(&style.font);
    title.SetDefaultCharSpacing(&style.spacing);
    title.SetDefaultFace(&style.face);
    title.SetDefaultBorder(&style.border);
    title.SetDefaultShadow(&style.shadow);
}

/// The box around a rectangle that is turned about the origin, clockwise.
TitleRectF Turned(const TitleRectF& rect, float degrees) {
    constexpr double kHalfTurn = 180.0, kPi = 3.14159265358979323846;
    const double radians = static_cast<double>(degrees) * kPi / kHalfTurn;
    const double c = std::cos(radians), s = std::sin(radians);
    double left = HUGE_VAL, top = HUGE_VAL, right = -HUGE_VAL, bottom = -HUGE_VAL;
    for (const float x : {rect.x, rect.x + rect.width}) {
        for (const float y : {rect.y, rect.y + rect.height}) {
            const double turnedX = static_cast<double>(x) * c - static_cast<double>(y) * s;
            const double turnedY = static_cast<double>(x) * s + static_cast<double>(y) * c;
            left = std::min(left, turnedX);
            right = std::max(right, turnedX);
            top = std::min(top, turnedY);
            bottom = std::max(bottom, turnedY);
        }
    }
    return {static_cast<float>(left), static_cast<float>(top), static_cast<float>(right - left),
            static_cast<float>(bottom - top)};
}

/// Where a text of a length begins between two margins: `side` 0 at the first, 1 in the middle, 2 at the last.
float Begin(int side, float pageLength, float marginPercent, float length) {
    constexpr float kPercent = 100.0F;
    const float margin = pageLength * marginPercent / kPercent;
    if (side == 0) return margin;
    return side == 1 ? (pageLength - length) / 2.0F : pageLength - margin - length;
}

}  // namespace

int32_t StringRuler::Add(const ScriptString& string) {
    const int32_t index = AddScriptString(*title_, string, {0.0F, 0.0F});
    if (SetDirection(*title_, isVertical_)) SetKeyframes(*title_, {});  // loads it again
    return index;
}

StringRuler::Layout StringRuler::LayoutOf(const ScriptString& string) {
    const int32_t index = Add(string);
    Layout layout;
    layout.characters.resize(static_cast<size_t>(title_->GetCharCount(index)));
    layout.lines.resize(static_cast<size_t>(title_->GetLineCount(index)));
    for (size_t i = 0; i < layout.characters.size(); ++i)
        title_->GetCharRect(index, static_cast<int32_t>(i), &layout.characters[i], 1);
    for (size_t i = 0; i < layout.lines.size(); ++i)
        title_->GetLineRect(index, static_cast<int32_t>(i), &layout.lines[i]);
    title_->RemoveAllStrings();
    return layout;
}

TitleRectF StringRuler::BoxOf(const ScriptString& string) {
    const int32_t index = Add(string);
    TitleRectF box{};
    title_->GetStringRect(index, &box);
    if (string.placement.isVertical) {
        // Columns go left from the corner, and their letters stand a leading to the left of them.
        float left = HUGE_VALF, right = -HUGE_VALF;
        for (int32_t i = 0; i < title_->GetCharCount(index); ++i) {
            TitleRectF character{};
            if (title_->GetCharRect(index, i, &character, 0) != kTitleOk) continue;  // a paragraph's end
            left = std::min(left, character.x);
            right = std::max(right, character.x + character.width);
        }
        box.x = left;
        box.width = right - left;
    }
    title_->RemoveAllStrings();
    return Turned(box, string.placement.rotateDegree);
}

Position CornerOf(StringRuler& ruler, const ScriptString& string, Page page) {
    const Placement& place = string.placement;
    if (place.corner) return *place.corner;
    const TitleRectF box = ruler.BoxOf(string);
    // Whole units, since a glyph between two pixels is a little softer.
    return {std::floor(Begin(place.anchor.column, page.width, place.margin.x, box.width) - box.x),
            std::floor(Begin(place.anchor.row, page.height, place.margin.y, box.height) - box.y)};
}

std::set<std::u16string> FontsOf(const TitleScript& script) {
    std::set<std::u16string> names;
    for (const ScriptString& string : script.strings) {
        for (const ScriptRun& run : string.runs) names.emplace(run.style.font.FaceName);
    }
    return names;
}

bool IsVertical(const TitleScript& script) {
    const auto isVertical = [](const ScriptString& string) { return string.placement.isVertical; };
    return !script.strings.empty() && std::ranges::all_of(script.strings, isVertical);
}

int32_t AddScriptString(IKVT_CaptionFx& title, const ScriptString& string, Position corner) {
    const StringSpec settings = SettingsOf(string, corner);
    title.SetDefaultString(&settings);
    title.SetDefaultParagraph(&string.paragraph);
    const int32_t index = title.AddString();
    if (index < 0) throw std::bad_alloc();
    for (const ScriptRun& run : string.runs) {
        SetStyle(title, run.style);
        if (title.InsertText(index, title.GetCharCount(index), run.text.c_str()) < 0) throw std::bad_alloc();
    }
    return index;
}

void BuildTitle(IKVT_CaptionFx& title, const TitleScript& script, FrameSize usual) {
    const Page page = PageOf(script.frame.value_or(usual), script.scale);
    const float duration = DurationOf(script);
    const bool isVertical = IsVertical(script);
    StringRuler ruler(isVertical);
    std::vector<std::vector<Keyframe>> keys;
    title.RemoveAllStrings();
    for (const ScriptString& written : script.strings) {
        const ScriptString string = WrappedAtWords(ruler, written);
        AddScriptString(title, string, CornerOf(ruler, string, page));
        keys.push_back(KeyframesOf(string.timeline, duration));
    }
    SetDirection(title, isVertical);
    SetKeyframes(title, keys);
}

}  // namespace captionfx
