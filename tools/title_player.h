// Frames of titles that may have very many strings, such as the subtitles of a film.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/title_document.h"

namespace captionfx {

/// Draws the frames of a loaded title. Every string of a title costs each of its frames, seen or not, and three planes
/// of the frame's size. So a title of many strings holds those alone that are seen at the time of the frame; a frame is
/// the same either way, and times may come in any order.
class TitlePlayer {
public:
    /// The title must outlive the player, which from now on decides what strings it holds. Throws std::bad_alloc.
    explicit TitlePlayer(IKVT_CaptionFx& title);
    TitlePlayer(const TitlePlayer&) = delete;
    TitlePlayer& operator=(const TitlePlayer&) = delete;

    /// Composites the frame onto `pixels`, all strings in it. Throws std::bad_alloc.
    void Draw(uint32_t* pixels, float time);

private:
    /// A string of the title and when it can be seen.
    struct PlayedString {
        TitleNode node;
        float first, last;
    };

    void Hold(const std::vector<size_t>& seen);

    IKVT_CaptionFx& title_;
    std::vector<PlayedString> strings_;  // none for a title of few
    std::optional<std::vector<size_t>>
        held_;  // by index, once some were loaded: what was saved differs by a file's decimals
};

}  // namespace captionfx
