// Frames of a title as pure functions of the time, whatever was drawn before.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/title_handle.h"
#include "tools/title_player.h"

namespace captionfx {

/// Once every string is at rest the library keeps the picture and shows it in all frames at rest that follow. It keeps
/// the last string alone, as that string's effect had left it. The painter lets the kept picture stand where it is what
/// drawing would give, one string that rests in the same effect, and makes the library draw everywhere else; of several
/// strings the player sees to that.
class FramePainter {
public:
    /// The title has its strings and its frame. From here on only the painter draws it.
    explicit FramePainter(TitleHandle title);

    /// Composites the title at `time` onto `pixels`, which hold the ground and have the frame's size. Throws
    /// std::bad_alloc.
    void Draw(float time, std::span<uint32_t> pixels);

private:
    /// The effect of a title of one string that is at rest.
    [[nodiscard]] std::optional<std::string> EffectAtRest() const;
    void ForgetKeptFrame();

    TitleHandle title_;
    std::unique_ptr<TitlePlayer> player_;
    std::optional<std::string> kept_;  // the effect in which the kept picture rests
    std::vector<uint32_t> ground_;
};

}  // namespace captionfx
