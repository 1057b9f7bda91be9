#include "tools/title_nodes.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <new>
#include <system_error>

namespace captionfx {

bool IsElement(const xmlNode& node, std::string_view name) {
    return node.type == XML_ELEMENT_NODE && name == reinterpret_cast<const char*>(node.name);
}

xmlNode* ChildOf(const xmlNode* parent, std::string_view name) {
    xmlNode* child = parent == nullptr ? nullptr : parent->children;
    while (child != nullptr && !IsElement(*child, name)) child = child->next;
    return child;
}

std::vector<xmlNode*> ItemsOf(const xmlNode* list, std::string_view name) {
    std::vector<xmlNode*> items;
    for (xmlNode* child = list == nullptr ? nullptr : list->children; child != nullptr; child = child->next) {
        if (IsElement(*child, name)) items.push_back(child);
    }
    return items;
}

std::string AttributeOf(const xmlNode* node, const char* name) {
    const std::unique_ptr<xmlChar, decltype(xmlFree)> text(xmlGetNoNsProp(node, XmlText(name)), xmlFree);
    return text ? reinterpret_cast<const char*>(text.get()) : "";
}

std::vector<xmlNode*> StringNodes(const xmlDoc* document) {
    return ItemsOf(ChildOf(xmlDocGetRootElement(document), "StringList"), "MetaString");
}

/// The number that a text begins with, 0 without one; nothing for one that is not finite.
std::optional<float> FiniteNumber(std::string_view text) {
    float value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::vector<Keyframe> KeyframesOf(const xmlNode& string) {
    std::vector<Keyframe> keys;
    for (const xmlNode* const key : ItemsOf(ChildOf(&string, "PathList"), "MetaPath")) {
        keys.push_back({.time = FiniteNumber(AttributeOf(key, "KeyFrame")).value_or(0.0F),
                        .effect = AttributeOf(key, "PathID"),
                        .progress = FiniteNumber(AttributeOf(key, "PathProgress")).value_or(0.0F)});
    }
    std::ranges::stable_sort(keys, {}, &Keyframe::time);
    return keys;
}

TitleDocument EmptyTitleDocument() {
    TitleDocument document(xmlNewDoc(nullptr));
    xmlNode* const root = xmlNewDocNode(document.get(), nullptr, XmlText("CCaptionFx"), nullptr);
    if (root == nullptr) throw std::bad_alloc();
    xmlDocSetRootElement(document.get(), root);
    return document;
}

TitleDocument SavedNodes(IKVT_CaptionFx& title) {
    TitleDocument document = EmptyTitleDocument();
    if (title.SaveToNode(xmlDocGetRootElement(document.get())) != kTitleOk ||
        StringNodes(document.get()).size() != static_cast<size_t>(title.GetStringCount()))
        throw std::bad_alloc();
    return document;
}

void LoadNodes(IKVT_CaptionFx& title, const xmlDoc* document) {
    if (title.LoadFromNode(xmlDocGetRootElement(document)) != kTitleOk ||
        static_cast<size_t>(title.GetStringCount()) != StringNodes(document).size())
        throw std::bad_alloc();
}

}  // namespace captionfx
