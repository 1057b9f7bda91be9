// Frames of a title as pure functions of the time, whatever was drawn before.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/seen_strings.h"
#include "tools/title_handle.h"

namespace captionfx {

/// Once every string is at rest the library keeps the picture and shows it in all frames at rest that follow. It keeps
/// the last string alone, as that string's effect had left it. The painter lets the kept picture stand where it is what
/// drawing would give, one string that rests in the same effect, and makes the library draw everywhere else.
class FramePainter {
public:
    /// The title has its strings and its frame. From here on only the painter draws it.
    explicit FramePainter(TitleHandle title) : title_(std::move(title)), strings_(*title_) {}

    /// Composites the title at `time` onto `pixels`, which hold the ground and have the frame's size. Throws
    /// std::bad_alloc.
    void Draw(float time, std::span<uint32_t> pixels);

private:
    /// The effect of the last string, where all strings are at rest.
    [[nodiscard]] std::optional<std::string> EffectAtRest() const;
    void Render(float time, std::span<uint32_t> pixels);
    void ForgetKeptFrame();

    TitleHandle title_;
    SeenStrings strings_;
    std::optional<std::string> kept_;  // the effect in which the kept picture rests
    std::vector<uint32_t> ground_;
};

}  // namespace captionfx
