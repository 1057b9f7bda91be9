#include "tools/script/title_difference.h"

#include <cstddef>
#include <utility>

#include "tools/title_nodes.h"

namespace captionfx {
namespace {

void AddTags(const TitleNode& node, std::vector<XmlTag>& tags) {
    XmlTag tag{.name = node.Name(), .attributes = {}};
    for (const auto& [name, value] : node.Attributes()) {
        if (name != "Index") tag.attributes[name] = value;
    }
    tags.push_back(std::move(tag));
    for (const TitleNode& child : node.Children()) AddTags(child, tags);
}

/// How often each element is there, the second title's counted down.
std::map<std::string, int> CountDifferences(const std::vector<XmlTag>& a, const std::vector<XmlTag>& b) {
    std::map<std::string, int> counts;
    for (const XmlTag& tag : a) ++counts[tag.name];
    for (const XmlTag& tag : b) --counts[tag.name];
    return counts;
}

}  // namespace

std::vector<std::vector<XmlTag>> TagsByString(IKVT_CaptionFx& title) {
    std::vector<std::vector<XmlTag>> strings;
    for (const TitleNode& node : StringNodes(SavedNodes(title))) AddTags(node, strings.emplace_back());
    return strings;
}

std::set<std::string> Differences(const std::vector<XmlTag>& a, const std::vector<XmlTag>& b) {
    std::set<std::string> differences;
    for (const auto& [name, count] : CountDifferences(a, b)) {
        if (count != 0) differences.insert(name);
    }
    if (!differences.empty()) return differences;
    for (size_t i = 0; i < a.size(); ++i) {
        for (const auto& [name, value] : a[i].attributes) {
            const auto other = b[i].attributes.find(name);
            if (other == b[i].attributes.end() || other->second != value) differences.insert(a[i].name + " " + name);
        }
    }
    return differences;
}

}  // namespace captionfx
