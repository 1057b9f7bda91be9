#include "plugins/frei0r/title_instance.h"

#include <exception>
#include <filesystem>
#include <set>

#include "plugins/frei0r/host_time.h"
#include "tools/console.h"

namespace captionfx {
namespace {

/// Hosts make an instance a thread, and all of them fail alike.
void TellOnce(const std::string& message) {
    static std::mutex mutex;
    static std::set<std::string> told;
    const std::scoped_lock lock(mutex);
    if (told.insert(message).second) PrintLine(message);
}

/// Runs what may fail, and tells why it did. Memory may be short even for that.
template <class Work>
void Guarded(Work work) noexcept {
    try {
        try {
            work();
        } catch (const std::exception& error) {
            TellOnce(error.what());
        }
    } catch (...) {
    }
}

}  // namespace

void TitleInstance::SetFile(const char* path) noexcept {
    Guarded([&] {
        const std::scoped_lock lock(mutex_);
        const std::string file = path == nullptr ? "" : path;
        if (file == file_) return;
        file_ = file;
        isLoaded_ = false;
    });
}

void TitleInstance::Draw(double hostTime, const void* caller, uint32_t* pixels) noexcept {
    Guarded([&] {
        const std::scoped_lock lock(mutex_);
        if (!isLoaded_) {
            isLoaded_ = true;
            overlay_.reset();
            if (!file_.empty())
                overlay_ =
                    std::make_unique<TitleOverlay>(std::filesystem::path(file_), TitleOverlay::Setup{.frame = frame_});
        }
        if (!overlay_) return;
        const double scale = timeScale_ > 0.0 ? timeScale_ : SecondsOfHostTime(caller);
        overlay_->Draw(static_cast<float>(hostTime * scale),
                       {reinterpret_cast<uint8_t*>(pixels), static_cast<ptrdiff_t>(frame_.width) * 4});
    });
}

}  // namespace captionfx
