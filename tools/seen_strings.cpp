#include "tools/seen_strings.h"

#include <limits>
#include <new>
#include <utility>

#include "tools/title_nodes.h"

namespace captionfx {
namespace {

/// A string of the title and when it can be seen.
struct TimedString {
    xmlNode* node;
    float first, last;
};

TimedString TimedStringOf(xmlNode* node) {
    constexpr float kEver = std::numeric_limits<float>::infinity();
    const std::vector<Keyframe> keys = KeyframesOf(*node);
    return keys.empty() ? TimedString{node, -kEver, kEver} : TimedString{node, keys.front().time, keys.back().time};
}

}  // namespace

struct SeenStrings::Strings {
    TitleDocument document;
    std::vector<TimedString> all;
};

SeenStrings::SeenStrings(IKVT_CaptionFx& title) {
    constexpr int32_t kFew = 12;
    if (title.GetStringCount() <= kFew) return;
    Strings strings{SavedNodes(title), {}};
    for (xmlNode* const node : StringNodes(strings.document.get())) strings.all.push_back(TimedStringOf(node));
    strings_ = std::make_unique<const Strings>(std::move(strings));
}

SeenStrings::SeenStrings(SeenStrings&& other) noexcept = default;
SeenStrings& SeenStrings::operator=(SeenStrings&& other) noexcept = default;
SeenStrings::~SeenStrings() = default;

bool SeenStrings::Hold(IKVT_CaptionFx& title, float time) {
    if (!strings_) return false;
    std::vector<size_t> seen;
    for (size_t i = 0; i < strings_->all.size(); ++i) {
        if (strings_->all[i].first <= time && time <= strings_->all[i].last) seen.push_back(i);
    }
    if (seen == held_) return false;
    const TitleDocument document = EmptyTitleDocument();
    xmlNode* const list = xmlNewChild(xmlDocGetRootElement(document.get()), nullptr, XmlText("StringList"), nullptr);
    for (const size_t index : seen) {
        xmlNode* const copy = xmlDocCopyNode(strings_->all[index].node, document.get(), 1);
        if (xmlAddChild(list, copy) == nullptr) throw std::bad_alloc();
    }
    LoadNodes(title, document.get());
    held_ = std::move(seen);
    return true;
}

}  // namespace captionfx
