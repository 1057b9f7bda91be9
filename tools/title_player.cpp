#include "tools/title_player.h"

#include <limits>
#include <new>
#include <numeric>

#include "tools/title_nodes.h"
#include "tools/title_setup.h"

namespace captionfx {
namespace {

/// A string of the title and when it can be seen.
struct PlayedString {
    xmlNode* node;
    float first, last;
};

PlayedString PlayedStringOf(xmlNode* node) {
    constexpr float kEver = std::numeric_limits<float>::infinity();
    const std::vector<Keyframe> keys = KeyframesOf(*node);
    return keys.empty() ? PlayedString{node, -kEver, kEver} : PlayedString{node, keys.front().time, keys.back().time};
}

}  // namespace

struct TitlePlayer::Strings {
    TitleDocument document;
    std::vector<PlayedString> all;
};

TitlePlayer::TitlePlayer(IKVT_CaptionFx& title) : title_(title) {
    constexpr int32_t kFew = 12;
    if (title.GetStringCount() <= kFew) return;
    Strings strings{SavedNodes(title), {}};
    for (xmlNode* const node : StringNodes(strings.document.get())) strings.all.push_back(PlayedStringOf(node));
    held_.resize(strings.all.size());
    std::iota(held_.begin(), held_.end(), size_t{0});
    strings_ = std::make_unique<const Strings>(std::move(strings));
}

TitlePlayer::~TitlePlayer() = default;

void TitlePlayer::Draw(uint32_t* pixels, float time) {
    if (strings_) {
        std::vector<size_t> seen;
        for (size_t i = 0; i < strings_->all.size(); ++i) {
            if (strings_->all[i].first <= time && time <= strings_->all[i].last) seen.push_back(i);
        }
        if (seen != held_) Hold(seen);
    }
    RenderWholeFrame(title_, pixels, time);
}

void TitlePlayer::Hold(const std::vector<size_t>& seen) {
    const TitleDocument document = EmptyTitleDocument();
    xmlNode* const list = xmlNewChild(xmlDocGetRootElement(document.get()), nullptr, XmlText("StringList"), nullptr);
    for (const size_t index : seen) {
        xmlNode* const copy = xmlDocCopyNode(strings_->all[index].node, document.get(), 1);
        if (xmlAddChild(list, copy) == nullptr) throw std::bad_alloc();
    }
    LoadNodes(title_, document.get());
    held_ = seen;
}

}  // namespace captionfx
