// A video file as frames in order, and its sound as packets.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "tools/argument_values.h"
#include "tools/video/av_handles.h"
#include "tools/video/pixel_converter.h"

namespace captionfx {

/// All operations throw std::runtime_error with a one-line reason.
class VideoReader {
public:
    explicit VideoReader(const std::filesystem::path& path);

    [[nodiscard]] FrameSize Size() const { return {decoder_->width, decoder_->height}; }
    [[nodiscard]] AVRational TimeBase() const { return stream_->time_base; }
    [[nodiscard]] AVRational FrameRate() const;
    [[nodiscard]] AVRational SampleAspect() const;
    /// As the stream and its first frame have them.
    [[nodiscard]] ColorTags Color() const { return color_; }
    /// How many frames there will be; 0 where the file does not tell.
    [[nodiscard]] int64_t ExpectedFrames() const;
    [[nodiscard]] const std::vector<const AVStream*>& Sounds() const { return sounds_; }

    /// Packets of the sounds, by their place in Sounds(), go to `take` while frames are read; those that lay before the
    /// first frame at once. Without this they are dropped.
    void OnSound(std::function<void(int, AVPacket&)> take);

    /// Converts the next frame to opaque pixels, which must have its size. Its time in the video's time base; nothing
    /// at the end.
    std::optional<int64_t> Next(std::span<uint32_t> pixels);

    /// Seconds from the first frame on.
    [[nodiscard]] float SecondsOf(int64_t time) const;

private:
    /// The next decoded frame in frame_. Whether there was one.
    bool Decode();
    /// Gives the decoder its next packet, or the end.
    void Feed();
    void HandOutSound(int number);
    /// Turns what a decoded frame says of its colours into tags.
    void ReadColor();

    std::filesystem::path path_;
    AvInputHandle file_;
    AVStream* stream_ = nullptr;
    std::vector<const AVStream*> sounds_;
    std::function<void(int, AVPacket&)> takeSound_;
    std::vector<std::pair<int, AvPacketHandle>> earlySound_;  // read on the way to the first frame
    AvCodecHandle decoder_;
    ColorTags color_;
    std::optional<PixelConverter> converter_;
    AvFrameHandle frame_ = MakeAvFrame();
    AvPacketHandle packet_ = MakeAvPacket();
    bool isFirstRead_ = false, isFirstPending_ = false;
    int64_t firstTime_ = 0, lastTime_ = 0;
};

}  // namespace captionfx
