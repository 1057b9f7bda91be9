#include "tools/script/effect_names.h"

#include <algorithm>
#include <array>
#include <vector>

#include "tools/effect_list.h"
#include "tools/script/script_values.h"

namespace captionfx {
namespace {

constexpr std::string_view kPrefix = "PATH_", kRest = "PATH_NOEFFECT", kRestName = "none", kNothingName = "nothing";

/// Letters and digits in capitals.
std::string Folded(std::string_view name) {
    std::string folded;
    for (const char c : name) {
        if (c == '-' || c == '_' || c == ' ') continue;
        folded += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return folded;
}

/// Where a name falls into two words: before its direction or its axis, behind "PERSPECTIVE".
size_t LengthOfFirstWord(std::string_view token) {
    constexpr std::array<std::string_view, 10> kLastWords{"LEFT", "RIGHT",  "DOWN",    "UP",       "CCW",
                                                          "CW",   "CENTER", "INWARDS", "OUTWARDS", "SCROLL"};
    for (const std::string_view word : kLastWords) {
        if (token.size() > word.size() && token.ends_with(word)) return token.size() - word.size();
    }
    const bool hasAxis = token.starts_with("AMPLIFY") || token.starts_with("DOUBLEVISION");
    return hasAxis ? token.size() - 1 : token.size();
}

}  // namespace

std::optional<std::string> EffectOfName(std::string_view name) {
    if (name == kRestName) return std::string(kRest);
    if (name == kNothingName) return std::string();
    const std::string folded = Folded(name);
    for (const EffectInfo& effect : EffectList()) {
        if (name == effect.name || folded == effect.name.substr(kPrefix.size())) return std::string(effect.name);
    }
    return std::nullopt;
}

std::string NameOfEffect(std::string_view effect) {
    if (effect == kRest) return std::string(kRestName);
    if (effect.empty()) return std::string(kNothingName);
    if (std::ranges::find(EffectList(), effect, &EffectInfo::name) == EffectList().end()) return std::string(effect);
    const std::string_view token = effect.substr(kPrefix.size());
    std::string name;
    for (size_t i = 0; i < token.size(); ++i) {
        if (i == LengthOfFirstWord(token)) name += '-';
        name += token[i] >= 'A' && token[i] <= 'Z' ? static_cast<char>(token[i] - 'A' + 'a') : token[i];
    }
    return name;
}

std::string NearestEffectName(std::string_view name) {
    std::vector<std::string> names;
    for (const EffectInfo& effect : EffectList()) names.push_back(NameOfEffect(effect.name));
    const std::vector<std::string_view> views(names.begin(), names.end());
    return std::string(NearestName(name, views));
}

}  // namespace captionfx
