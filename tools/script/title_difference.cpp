#include "tools/script/title_difference.h"

#include <cstddef>
#include <regex>

#include "tools/text_encoding.h"
#include "tools/title_file.h"

namespace captionfx {
namespace {

/// How often each element is there, the second title's counted down.
std::map<std::string, int> CountDifferences(const std::vector<XmlTag>& a, const std::vector<XmlTag>& b) {
    std::map<std::string, int> counts;
    for (const XmlTag& tag : a) ++counts[tag.name];
    for (const XmlTag& tag : b) --counts[tag.name];
    return counts;
}

}  // namespace

std::vector<std::vector<XmlTag>> TagsByString(IKVT_CaptionFx& title) {
    // The library writes its XML itself: tags and attributes have one form.
    static const std::regex tag("<(\\w+)([^>]*)>"), attribute("(\\w+)=\"([^\"]*)\"");
    const std::string xml = Utf8FromUtf16(TitleXml(title));
    std::vector<std::vector<XmlTag>> strings;
    const std::sregex_iterator end;
    for (std::sregex_iterator at(xml.begin(), xml.end(), tag); at != end; ++at) {
        if ((*at)[1] == "MetaString") strings.emplace_back();
        if (strings.empty()) continue;
        XmlTag& added = strings.back().emplace_back();
        added.name = (*at)[1];
        const std::string rest = (*at)[2];
        for (std::sregex_iterator each(rest.begin(), rest.end(), attribute); each != end; ++each) {
            if ((*each)[1] != "Index") added.attributes[(*each)[1]] = (*each)[2];
        }
    }
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
