// What the GStreamer element knows of its title, without GObject: settings that any thread may change, and the title
// that the streaming thread draws.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "tools/title_overlay.h"

namespace captionfx {

struct OverlaySettings {
    std::string location;  ///< A title file; empty for none.
    std::string script;    ///< The text of a title script, in its place.
    double scale = 1.0;
    double offsetSeconds = 0.0;
};

class OverlayTitle {
public:
    [[nodiscard]] OverlaySettings Settings() const;

    /// Runs `change` on the settings. The title is loaded anew, with the next frame, if `reloads`.
    template <class Change>
    void Set(Change change, bool reloads) {
        const std::scoped_lock lock(mutex_);
        change(settings_);
        isStale_ = isStale_ || reloads;
    }

    [[nodiscard]] bool HasTitle() const;

    /// Loads the title for frames of this size and order, or only to see whether it can be loaded, without a frame.
    /// Throws std::runtime_error with one line, std::bad_alloc.
    void Prepare(std::optional<FrameSize> frame, PixelOrder order);

    /// Draws onto a frame that was prepared for. `streamSeconds` is the stream's time, to which the offset is added.
    /// Throws as Prepare.
    void Draw(double streamSeconds, FrameRows rows);

private:
    mutable std::mutex mutex_;  // of what setters change
    OverlaySettings settings_;
    bool isStale_ = false;
    // Of the streaming thread alone:
    TitleOverlay::Setup setup_;
    std::unique_ptr<TitleOverlay> overlay_;
};

}  // namespace captionfx
