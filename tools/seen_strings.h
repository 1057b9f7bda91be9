// Titles that may have very many strings, such as the subtitles of a film.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include <captionfx/caption_fx.h>

namespace captionfx {

/// Every string of a title costs each of its frames, seen or not, and three planes of the frame's size. So a title of
/// many strings is made to hold those alone that are seen at the time of the frame; a frame is the same either way, and
/// times may come in any order.
class SeenStrings {
public:
    /// Keeps the strings of a loaded title, where they are many. Throws std::bad_alloc.
    explicit SeenStrings(IKVT_CaptionFx& title);
    SeenStrings(SeenStrings&& other) noexcept;
    SeenStrings& operator=(SeenStrings&& other) noexcept;
    ~SeenStrings();

    /// Lets the title, the same one, hold what is seen at `time`. Returns whether its strings were loaded anew. Throws
    /// std::bad_alloc.
    bool Hold(IKVT_CaptionFx& title, float time);

private:
    struct Strings;  // nodes of the system's XML library

    std::unique_ptr<const Strings> strings_;   // null for a title of few
    std::optional<std::vector<size_t>> held_;  // by index, once some were loaded
};

}  // namespace captionfx
