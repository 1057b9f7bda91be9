#include "tools/render_output.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <optional>
#include <span>
#include <stdexcept>
#include <thread>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/colors.h"
#include "tools/console.h"
#include "tools/frame_painter.h"
#include "tools/frame_pipeline.h"
#include "tools/frame_sink.h"
#include "tools/frame_times.h"
#include "tools/interrupt.h"
#include "tools/png_file.h"
#include "tools/progress.h"
#include "tools/title_handle.h"
#include "tools/title_setup.h"
#include "tools/title_source.h"
#include "tools/video/video_reader.h"

namespace captionfx {
namespace {

/// A title that is ready to draw, and its frame.
struct ReadyTitle {
    TitleHandle title;
    FrameSize frame;
    TitleSource source;
};

/// `asked` is the frame that the title must fit, where there is one.
ReadyTitle BuildTitle(const RenderRequest& request, std::optional<FrameSize> asked, Ground ground) {
    ReadyTitle ready{.title = MakeTitle(), .frame = {}, .source = {}};
    ready.frame = SetSourceFrame(*ready.title, {}, asked, ground);
    if (!request.titleFile.empty()) {
        ready.source = LoadTitle(*ready.title, request.titleFile, request.style);
        ready.frame = SetSourceFrame(*ready.title, ready.source, asked, ground);
        return ready;
    }
    AddTypedTitle(*ready.title, request.typed, ready.frame);
    for (const Keyframe& key : request.typed.keys) ready.source.duration = std::max(ready.source.duration, key.time);
    return ready;
}

size_t PixelsOf(FrameSize frame) {
    return static_cast<size_t>(frame.width) * static_cast<size_t>(frame.height);
}

/// Tells of a title that leaves its ground bare. Not by the dirty rectangle: it keeps a rim around text without ink.
class InkWatch {
public:
    explicit InkWatch(uint32_t ground) : ground_(ground) {}

    void See(std::span<const uint32_t> pixels) {
        hasInk_ = hasInk_ || std::ranges::any_of(pixels, [this](uint32_t pixel) { return pixel != ground_; });
    }
    void Tell() const {
        if (!hasInk_) PrintLine("note: nothing was drawn");
    }

private:
    uint32_t ground_;
    bool hasInk_ = false;
};

/// The painters of a request, each with a title of its own that is built in the same way.
class Studio {
public:
    Studio(const RenderRequest& request, std::optional<FrameSize> asked, Ground ground) {
        ReadyTitle first = BuildTitle(request, asked, ground);
        frame_ = first.frame;
        end_ = first.source.duration;
        if (request.titleFile.empty()) NoteFontSubstitute(*first.title, request.typed.fontName);
        NoteFontSubstitutes(*first.title, first.source);
        if (!request.saveAs.empty()) SaveTitle(*first.title, request.saveAs);
        painters_.emplace_back(std::move(first.title));
        if (!IsSequence(request) || request.output.empty()) return;
        const auto jobs = static_cast<size_t>(request.jobs.value_or(DefaultJobs()));
        while (painters_.size() < jobs) painters_.emplace_back(BuildTitle(request, asked, ground).title);
    }

    [[nodiscard]] FrameSize Frame() const { return frame_; }
    [[nodiscard]] float End() const { return end_; }

    void DrawOne(float seconds, std::span<uint32_t> pixels) { painters_.front().Draw(seconds, pixels); }

    /// Draws and delivers all frames, and tells how far it is.
    void DrawAll(const std::function<bool(captionfx::Frame&)>& fill,
                 const std::function<void(const captionfx::Frame&)>& deliver, Progress& progress) {
        DrawInOrder(painters_, PixelsOf(frame_), fill, [&](const captionfx::Frame& frame) {
            ThrowIfInterrupted();
            deliver(frame);
            progress.Advance();
        });
    }

private:
    static int32_t DefaultJobs() {
        constexpr unsigned kMost = 8;  // each needs memory for its planes
        return static_cast<int32_t>(std::clamp(std::thread::hardware_concurrency(), 1U, kMost));
    }

    FrameSize frame_{};
    float end_ = 0.0F;
    std::vector<FramePainter> painters_;
};

uint32_t GroundPixel(const RenderRequest& request) {
    return request.background ? OpaquePixel(*request.background) : 0;
}

void WritePicture(Studio& studio, const RenderRequest& request) {
    const uint32_t ground = GroundPixel(request);
    const FrameSize frame = studio.Frame();
    std::vector<uint32_t> pixels(PixelsOf(frame), ground);
    studio.DrawOne(request.time, pixels);
    WritePng(request.output, pixels, frame.width, frame.height);
    InkWatch ink(ground);
    ink.See(pixels);
    ink.Tell();
}

std::unique_ptr<FrameSink> MakeSink(const RenderRequest& request, const VideoSetup& setup) {
    if (IsFramePattern(request.output.string()))
        return std::make_unique<PictureSequence>(request.output.string(), setup.size);
    return std::make_unique<Film>(request.output, FormatOf(request.output, request.format), setup);
}

void WriteSequence(Studio& studio, const RenderRequest& request) {
    const float from = request.from.value_or(0.0F), to = request.to.value_or(studio.End());
    const float rate = request.rate.value_or(kUsualRate);
    const int32_t count = FrameCount(from, to, rate);
    if (count == 0) throw std::runtime_error("the title has no keyframe after --from: give the end by --to SECONDS");
    constexpr int kLargestDivisor = 1001;
    const AVRational exactRate = av_d2q(static_cast<double>(rate), kLargestDivisor);
    const std::unique_ptr<FrameSink> sink = MakeSink(request, {.size = studio.Frame(),
                                                               .isTransparent = !request.background,
                                                               .timeBase = av_inv_q(exactRate),
                                                               .frameRate = exactRate,
                                                               .color = {}});
    const uint32_t ground = GroundPixel(request);
    InkWatch ink(ground);
    Progress progress(ProgressStyleOf(request.isQuiet), count);
    int32_t next = 0;
    const auto fill = [&](Frame& frame) {
        if (next == count) return false;
        frame.seconds = FrameTime(from, rate, next);
        frame.time = next++;
        std::ranges::fill(frame.pixels, ground);
        return true;
    };
    studio.DrawAll(
        fill,
        [&](const Frame& frame) {
            ink.See(frame.pixels);
            sink->Put(frame);
        },
        progress);
    sink->Finish();
    progress.Finish();
    ink.Tell();
}

/// Sound goes from the one to the other while frames are read, where the output has a place for it.
void ConnectSound(VideoReader& video, Film& film) {
    VideoWriter& writer = film.Writer();
    if (!writer.CanHoldSound()) return;
    for (const AVStream* const sound : video.Sounds()) writer.AddCopiedStream(*sound);
    video.OnSound([&writer](int number, AVPacket& packet) { writer.WriteCopied(number, packet); });
}

void WriteOver(Studio& studio, VideoReader& video, const RenderRequest& request) {
    const std::unique_ptr<FrameSink> sink = MakeSink(request, {.size = video.Size(),
                                                               .isTransparent = false,
                                                               .timeBase = video.TimeBase(),
                                                               .frameRate = video.FrameRate(),
                                                               .sampleAspect = video.SampleAspect(),
                                                               .color = video.Color()});
    if (auto* const film = dynamic_cast<Film*>(sink.get()); film != nullptr && !request.dropsSound)
        ConnectSound(video, *film);
    Progress progress(ProgressStyleOf(request.isQuiet), video.ExpectedFrames());
    const auto fill = [&](Frame& frame) {
        const std::optional<int64_t> time = video.Next(frame.pixels);
        if (!time) return false;
        frame.time = *time;
        frame.seconds = video.SecondsOf(*time);
        return true;
    };
    studio.DrawAll(
        fill, [&](const Frame& frame) { sink->Put(frame); }, progress);
    sink->Finish();
    progress.Finish();
}

}  // namespace

bool IsSequence(const RenderRequest& request) {
    return request.from || request.to || request.rate || !request.over.empty() || !request.format.empty() ||
           IsFramePattern(request.output.string()) || request.output.extension() != ".png";
}

void WriteOutput(const RenderRequest& request) {
    if (!request.over.empty() && !request.output.empty()) {
        VideoReader video(request.over);
        Studio studio(request, video.Size(), Ground::kOpaque);
        return WriteOver(studio, video, request);
    }
    Studio studio(request, request.frame, request.background ? Ground::kOpaque : Ground::kTransparent);
    if (request.output.empty()) return;
    if (IsSequence(request)) return WriteSequence(studio, request);
    WritePicture(studio, request);
}

}  // namespace captionfx
