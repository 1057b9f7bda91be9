#include "tools/title_player.h"

#include <algorithm>
#include <limits>
#include <new>

#include "tools/title_file.h"
#include "tools/title_setup.h"

namespace captionfx {

TitlePlayer::TitlePlayer(IKVT_CaptionFx& title) : title_(title) {
    constexpr int32_t kFew = 12;
    if (title.GetStringCount() <= kFew) return;
    document_ = SavedNodes(title);
    const std::vector<xmlNode*> nodes = StringNodes(document_.get());
    for (size_t i = 0; i < nodes.size(); ++i) {
        constexpr float kEver = std::numeric_limits<float>::infinity();
        const std::vector<Keyframe> keys = KeyframesOf(*nodes[i]);
        strings_.push_back(keys.empty() ? PlayedString{nodes[i], -kEver, kEver}
                                        : PlayedString{nodes[i], keys.front().time, keys.back().time});
        held_.push_back(i);
    }
}

void TitlePlayer::Draw(uint32_t* pixels, float time) {
    if (document_) {
        std::vector<size_t> seen;
        for (size_t i = 0; i < strings_.size(); ++i) {
            if (strings_[i].first <= time && time <= strings_[i].last) seen.push_back(i);
        }
        if (seen != held_) Hold(seen);
    }
    RenderWholeFrame(title_, pixels, time);
}

void TitlePlayer::Hold(const std::vector<size_t>& seen) {
    const TitleDocument document = EmptyTitleDocument();
    xmlNode* const list = xmlNewChild(xmlDocGetRootElement(document.get()), nullptr, XmlText("StringList"), nullptr);
    for (const size_t index : seen) {
        xmlNode* const copy = xmlDocCopyNode(strings_[index].node, document.get(), 1);
        if (xmlAddChild(list, copy) == nullptr) throw std::bad_alloc();
    }
    LoadNodes(title_, document.get());
    held_ = seen;
}

}  // namespace captionfx
