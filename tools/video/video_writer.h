// A sequence of frames as one file or stream, in any format of output_format.h.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "tools/argument_values.h"
#include "tools/output_file.h"
#include "tools/video/av_handles.h"
#include "tools/video/output_format.h"
#include "tools/video/palette_filter.h"
#include "tools/video/pixel_converter.h"

namespace captionfx {

struct VideoSetup {
    FrameSize size;
    bool isTransparent = false;
    AVRational timeBase{};   ///< Of the times of frames.
    AVRational frameRate{};  ///< Nominal: the times count.
    AVRational sampleAspect{1, 1};
    ColorTags color;
};

/// All operations throw std::runtime_error with a one-line reason. A file appears when it is finished, or not at all.
class VideoWriter {
public:
    VideoWriter(const std::filesystem::path& output, const OutputFormat& format, const VideoSetup& setup);
    ~VideoWriter();
    VideoWriter(const VideoWriter&) = delete;
    VideoWriter& operator=(const VideoWriter&) = delete;

    [[nodiscard]] bool CanHoldSound() const { return muxer_->oformat->audio_codec != AV_CODEC_ID_NONE; }
    /// Adds a stream whose packets are written as they come, such as audio. Before the first frame. Its number.
    int AddCopiedStream(const AVStream& source);

    /// `time` in the set-up's time base, rising. Pixels as of a frame, straight alpha.
    void Write(std::span<const uint32_t> pixels, int64_t time);

    /// A packet of a copied stream in the time base of its source. Takes the packet's contents.
    void WriteCopied(int number, AVPacket& packet);

    void Finish();

private:
    struct CopiedStream {
        AVRational sourceTimeBase;
        int index;
    };

    void OpenEncoder(const VideoSetup& setup);
    void WriteHeaderOnce();
    void Encode(const AVFrame* frame);
    void WritePacket(AVPacket& packet);
    /// Frames that the palette filter has ready.
    void EncodeFiltered();

    std::filesystem::path path_;
    const OutputFormat& format_;
    VideoSetup setup_;
    std::unique_ptr<OutputFile> file_;  // none for standard output
    AvOutputHandle muxer_;              // closes before the file takes its name
    AvCodecHandle encoder_;
    AVStream* stream_ = nullptr;
    std::vector<CopiedStream> copied_;
    std::optional<PixelConverter> converter_;
    std::unique_ptr<PaletteFilter> palette_;
    AvFrameHandle picture_;  // what the converter writes; none where frames go as they are
    AvPacketHandle packet_ = MakeAvPacket();
    bool hasHeader_ = false;
};

}  // namespace captionfx
