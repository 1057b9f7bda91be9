// Films by libav.
#include "tools/film.h"

#include <algorithm>
#include <optional>

#include "tools/console.h"
#include "tools/video/output_format.h"
#include "tools/video/video_reader.h"
#include "tools/video/video_writer.h"

namespace captionfx {
namespace {

class LibavFilm final : public FrameSink {
public:
    LibavFilm(const std::filesystem::path& output, const OutputFormat& format, const VideoSetup& setup)
        : writer_(output, format, setup), hasHardAlpha_(format.isOneBitAlpha && setup.isTransparent) {}

    void Put(const Frame& frame) override {
        constexpr auto isHalfThere = [](uint32_t pixel) { return pixel >> 24 != 0 && pixel >> 24 != 0xFF; };
        if (hasHardAlpha_ && !hasLostAlpha_) hasLostAlpha_ = std::ranges::any_of(frame.pixels, isHalfThere);
        writer_.Write(frame.pixels, frame.time);
    }

    void Finish() override {
        writer_.Finish();
        if (hasLostAlpha_)
            PrintLine(
                "note: a GIF knows no half-transparent pixels: soft edges became hard; --background keeps them soft");
    }

    /// Sound goes from the one to the other while frames are read, where the film has a place for it.
    void ConnectSound(VideoReader& video) {
        if (!writer_.CanHoldSound()) return;
        for (const AVStream* const sound : video.Sounds()) writer_.AddCopiedStream(*sound);
        video.OnSound([this](int number, AVPacket& packet) { writer_.WriteCopied(number, packet); });
    }

private:
    VideoWriter writer_;
    bool hasHardAlpha_, hasLostAlpha_ = false;
};

class LibavGround final : public GroundVideo {
public:
    explicit LibavGround(const std::filesystem::path& path) : video_(path) {}

    [[nodiscard]] FrameSize Size() const override { return video_.Size(); }
    [[nodiscard]] int64_t ExpectedFrames() const override { return video_.ExpectedFrames(); }

    [[nodiscard]] bool Fill(Frame& frame) override {
        const std::optional<int64_t> time = video_.Next(frame.pixels);
        if (!time) return false;
        frame.time = *time;
        frame.seconds = video_.SecondsOf(*time);
        return true;
    }

    [[nodiscard]] std::unique_ptr<FrameSink> MakeFilm(const std::filesystem::path& output, std::string_view format,
                                                      bool dropsSound) override {
        const VideoSetup setup{.size = video_.Size(),
                               .isTransparent = false,
                               .timeBase = video_.TimeBase(),
                               .frameRate = video_.FrameRate(),
                               .sampleAspect = video_.SampleAspect(),
                               .color = video_.Color()};
        auto film = std::make_unique<LibavFilm>(output, FormatOf(output, format), setup);
        if (!dropsSound) film->ConnectSound(video_);
        return film;
    }

private:
    VideoReader video_;
};

/// What libav would print, it also returns, and that is told once, as an exception.
void SilenceLibav() {
    av_log_set_level(AV_LOG_QUIET);
}

}  // namespace

void CheckFilmName(const std::filesystem::path& output, std::string_view format) {
    static_cast<void>(FormatOf(output, format));
}

std::unique_ptr<FrameSink> MakeFilm(const std::filesystem::path& output, std::string_view format,
                                    const FilmSetup& setup) {
    SilenceLibav();
    constexpr int kLargestDivisor = 1001;
    const AVRational rate = av_d2q(static_cast<double>(setup.rate), kLargestDivisor);
    return std::make_unique<LibavFilm>(output, FormatOf(output, format),
                                       VideoSetup{.size = setup.size,
                                                  .isTransparent = setup.isTransparent,
                                                  .timeBase = av_inv_q(rate),
                                                  .frameRate = rate,
                                                  .color = {}});
}

std::unique_ptr<GroundVideo> OpenVideo(const std::filesystem::path& path) {
    SilenceLibav();
    return std::make_unique<LibavGround>(path);
}

}  // namespace captionfx
