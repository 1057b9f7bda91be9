// Titles on the frames of other programs: what the plugins and the Python module have in common.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/argument_values.h"
#include "tools/frame_painter.h"
#include "tools/title_setup.h"

namespace captionfx {

/// TitleRenderSettings::PixelFormat.
enum class PixelOrder { kBgra = 0, kVuya = 1 };

/// The text of a title script.
struct ScriptText {
    std::string text;
};

/// A title file, or a script.
using TitleText = std::variant<std::filesystem::path, ScriptText>;

/// The rows of a frame: four bytes a pixel, and `stride` bytes from one row to the next, which may be more than the
/// pixels of a row take, or negative.
struct FrameRows {
    uint8_t* first;
    ptrdiff_t stride;
};

/// One title at one frame size. One call at a time; different overlays may be used on different threads at once.
class TitleOverlay {
public:
    struct Setup {
        std::optional<FrameSize> frame;  ///< Without it the frame that the title is made for, or 1280x720.
        PixelOrder order = PixelOrder::kBgra;
        float scale = 1.0F;  ///< Enlarges the title about the frame's upper left corner; above 0.
    };

    /// Throws std::runtime_error with one line: the file, the place, the reason; std::bad_alloc.
    TitleOverlay(const TitleText& text, const Setup& setup);

    [[nodiscard]] FrameSize Frame() const { return frame_; }

    /// Seconds, the script's own or to the last keyframe; 0 for a still.
    [[nodiscard]] float Duration() const { return duration_; }

    /// The title itself. It is drawn here alone.
    [[nodiscard]] IKVT_CaptionFx& Title() { return *title_; }

    /// Composites the title at a time onto a frame. Pixels that are all opaque stay so and are composited as a film is;
    /// others have straight alpha. Throws std::bad_alloc.
    void Draw(float seconds, FrameRows rows);

private:
    void DrawPixels(float seconds, std::span<uint32_t> pixels);
    void SetGround(Ground ground);

    IKVT_CaptionFx* title_ = nullptr;  // the painter's
    FrameSize frame_{};
    float duration_ = 0.0F;
    Ground ground_ = Ground::kTransparent;
    std::optional<FramePainter> painter_;
    std::vector<uint32_t> packed_;  // a frame whose own rows are padded
};

}  // namespace captionfx
