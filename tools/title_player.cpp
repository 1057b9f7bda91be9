#include "tools/title_player.h"

#include <limits>

#include "tools/title_nodes.h"
#include "tools/title_setup.h"

namespace captionfx {

TitlePlayer::TitlePlayer(IKVT_CaptionFx& title) : title_(title) {
    constexpr int32_t kFew = 12;
    if (title.GetStringCount() <= kFew) return;
    constexpr float kEver = std::numeric_limits<float>::infinity();
    for (const TitleNode& node : StringNodes(SavedNodes(title))) {
        const std::vector<Keyframe> keys = KeyframesOf(node);
        strings_.push_back(keys.empty() ? PlayedString{node, -kEver, kEver}
                                        : PlayedString{node, keys.front().time, keys.back().time});
    }
}

void TitlePlayer::Draw(uint32_t* pixels, float time) {
    if (!strings_.empty()) {
        std::vector<size_t> seen;
        for (size_t i = 0; i < strings_.size(); ++i) {
            if (strings_[i].first <= time && time <= strings_[i].last) seen.push_back(i);
        }
        if (seen != held_) Hold(seen);
    }
    RenderWholeFrame(title_, pixels, time);
}

void TitlePlayer::Hold(const std::vector<size_t>& seen) {
    const TitleNode root = MakeTitleDocument(kTitleRoot);
    const TitleNode list = root.AddChild("StringList");
    for (const size_t index : seen) list.AddCopy(strings_[index].node);
    LoadNodes(title_, root);
    held_ = seen;
}

}  // namespace captionfx
