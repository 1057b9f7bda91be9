#include "tools/title_nodes.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <new>
#include <system_error>

namespace captionfx {

TitleNode ChildOf(const TitleNode& parent, std::string_view name) {
    const std::vector<TitleNode> found = ItemsOf(parent, name);
    return found.empty() ? TitleNode() : found.front();
}

std::vector<TitleNode> ItemsOf(const TitleNode& list, std::string_view name) {
    std::vector<TitleNode> items = list.Children();
    std::erase_if(items, [&](const TitleNode& item) { return item.Name() != name; });
    return items;
}

std::vector<TitleNode> StringNodes(const TitleNode& root) {
    return ItemsOf(ChildOf(root, "StringList"), "MetaString");
}

std::optional<float> FiniteNumber(std::string_view text) {
    float value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::vector<Keyframe> KeyframesOf(const TitleNode& string) {
    std::vector<Keyframe> keys;
    for (const TitleNode& key : ItemsOf(ChildOf(string, "PathList"), "MetaPath")) {
        keys.push_back({.time = FiniteNumber(key.Attribute("KeyFrame")).value_or(0.0F),
                        .effect = key.Attribute("PathID"),
                        .progress = FiniteNumber(key.Attribute("PathProgress")).value_or(0.0F)});
    }
    std::ranges::stable_sort(keys, {}, &Keyframe::time);
    return keys;
}

TitleNode SavedNodes(IKVT_CaptionFx& title) {
    TitleNode root = MakeTitleDocument(kTitleRoot);
    if (title.SaveToNode(root.Handle()) != kTitleOk ||
        StringNodes(root).size() != static_cast<size_t>(title.GetStringCount()))
        throw std::bad_alloc();
    return root;
}

void LoadNodes(IKVT_CaptionFx& title, const TitleNode& root) {
    if (title.LoadFromNode(root.Handle()) != kTitleOk ||
        static_cast<size_t>(title.GetStringCount()) != StringNodes(root).size())
        throw std::bad_alloc();
}

}  // namespace captionfx
