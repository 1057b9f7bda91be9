// What a host of frei0r holds of our plugins: a title at a frame size, with its two parameters.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "tools/title_overlay.h"

namespace captionfx {

/// frei0r has no way to tell of a failure while parameters are set or frames are drawn. So a title that cannot be read
/// is told in one line on standard error, once for all instances, and frames pass as they are. Nothing is thrown.
class TitleInstance {
public:
    explicit TitleInstance(FrameSize frame) : frame_(frame) {}

    /// The title file; empty for none. Hosts set it again and again: only another one is loaded, with the next frame.
    void SetFile(const char* path) noexcept;
    [[nodiscard]] const std::string& File() const { return file_; }

    /// Seconds of one unit of the host's time; 0 tells them apart by the host itself (host_time.h).
    void SetTimeScale(double scale) noexcept { timeScale_ = scale; }
    [[nodiscard]] double TimeScale() const { return timeScale_; }

    /// Draws onto `pixels`, which hold the frame. `caller` is an address in the host's code.
    void Draw(double hostTime, const void* caller, uint32_t* pixels) noexcept;

    [[nodiscard]] size_t FrameBytes() const {
        return static_cast<size_t>(frame_.width) * static_cast<size_t>(frame_.height) * sizeof(uint32_t);
    }

private:
    const FrameSize frame_;
    std::mutex mutex_;  // a host that cuts frames into slices calls one instance from several threads
    std::string file_;
    double timeScale_ = 0.0;
    bool isLoaded_ = false;                  // or told to be unreadable
    std::unique_ptr<TitleOverlay> overlay_;  // null without a title
};

}  // namespace captionfx
