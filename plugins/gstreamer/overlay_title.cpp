#include "plugins/gstreamer/overlay_title.h"

#include <filesystem>
#include <stdexcept>

namespace captionfx {
namespace {

TitleText TextOf(const OverlaySettings& settings) {
    if (settings.location.empty()) return ScriptText{settings.script};
    if (!settings.script.empty())
        throw std::runtime_error("'location' and 'script' are both set; one of the two must go");
    return std::filesystem::path(settings.location);
}

}  // namespace

OverlaySettings OverlayTitle::Settings() const {
    const std::scoped_lock lock(mutex_);
    return settings_;
}

bool OverlayTitle::HasTitle() const {
    const std::scoped_lock lock(mutex_);
    return !settings_.location.empty() || !settings_.script.empty();
}

void OverlayTitle::Prepare(std::optional<FrameSize> frame, PixelOrder order) {
    OverlaySettings settings;
    {
        const std::scoped_lock lock(mutex_);
        settings = settings_;
        isStale_ = false;
    }
    overlay_.reset();
    setup_ = {.frame = frame, .order = order, .scale = static_cast<float>(settings.scale)};
    if (settings.location.empty() && settings.script.empty()) return;
    auto overlay = std::make_unique<TitleOverlay>(TextOf(settings), setup_);
    if (frame) overlay_ = std::move(overlay);
}

void OverlayTitle::Draw(double streamSeconds, FrameRows rows) {
    double offset = 0.0;
    bool isStale = false;
    {
        const std::scoped_lock lock(mutex_);
        offset = settings_.offsetSeconds;
        isStale = isStale_;
    }
    if (isStale) Prepare(setup_.frame, setup_.order);
    if (overlay_) overlay_->Draw(static_cast<float>(streamSeconds + offset), rows);
}

}  // namespace captionfx
