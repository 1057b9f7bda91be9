#include "tools/video/video_writer.h"

#include <stdexcept>
#include <string>

#include "tools/interrupt.h"

namespace captionfx {
namespace {

constexpr const char* kStandardOutput = "-";

/// libav asks it while it waits for a reader.
int StopOnInterrupt(void* /*unused*/) {
    return IsInterrupted() ? 1 : 0;
}

AVPixelFormat PixelsOf(const OutputFormat& format, bool isTransparent) {
    return isTransparent ? format.transparent : format.opaque;
}

std::string Quoted(const std::filesystem::path& path) {
    return std::string("'").append(path.string()).append("'");
}

void CheckFit(const std::filesystem::path& output, const OutputFormat& format, const VideoSetup& setup) {
    const std::string name = output == kStandardOutput ? std::string(format.name) : Quoted(output);
    if (setup.isTransparent && format.transparent == AV_PIX_FMT_NONE)
        throw std::runtime_error(name + " cannot be transparent: give --background RRGGBB, or write a .webm or .mov");
    if (format.needsEvenSides && (setup.size.width % 2 != 0 || setup.size.height % 2 != 0))
        throw std::runtime_error(name + " needs even sides, and the frame is " + std::to_string(setup.size.width) +
                                 "x" + std::to_string(setup.size.height) +
                                 ": change --frame, or write a .webm or .mov");
}

}  // namespace

VideoWriter::VideoWriter(const std::filesystem::path& output, const OutputFormat& format, const VideoSetup& setup)
    : path_(output), format_(format), setup_(setup) {
    CheckFit(output, format, setup);
    if (output != kStandardOutput) file_ = std::make_unique<OutputFile>(output);
    AVFormatContext* muxer = nullptr;
    const std::string url = file_ ? "file:" + file_->Path().string() : "pipe:1";
    AvCheck(avformat_alloc_output_context2(&muxer, nullptr, format.muxer, url.c_str()),
            std::string("this libavformat writes no ") + format.muxer);
    muxer_.reset(muxer);
    // No versions, dates and random numbers: the same title is the same file.
    muxer_->flags |= AVFMT_FLAG_BITEXACT;
    muxer_->interrupt_callback = {&StopOnInterrupt, nullptr};
    OpenEncoder(setup);
}

VideoWriter::~VideoWriter() = default;

void VideoWriter::OpenEncoder(const VideoSetup& setup) {
    const AVCodec* const codec = avcodec_find_encoder_by_name(format_.encoder);
    if (codec == nullptr)
        throw std::runtime_error("this libavcodec has no encoder '" + std::string(format_.encoder) +
                                 "': write another format than " + std::string(format_.name));
    encoder_ = AvOwn<AvCodecHandle>(avcodec_alloc_context3(codec));
    AVCodecContext& encoder = *encoder_;
    encoder.width = setup.size.width;
    encoder.height = setup.size.height;
    encoder.pix_fmt = PixelsOf(format_, setup.isTransparent);
    encoder.time_base = setup.timeBase;
    encoder.framerate = setup.frameRate;
    encoder.sample_aspect_ratio = setup.sampleAspect;
    encoder.color_range = setup.color.range;
    encoder.color_primaries = setup.color.primaries;
    encoder.color_trc = setup.color.transfer;
    encoder.colorspace = setup.color.matrix;
    encoder.chroma_sample_location = setup.color.chroma;
    encoder.thread_count = 0;
    encoder.flags |= AV_CODEC_FLAG_BITEXACT;
    if ((muxer_->oformat->flags & AVFMT_GLOBALHEADER) != 0) encoder.flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    AvOptions options(format_.encoderOptions);
    AvCheck(avcodec_open2(&encoder, codec, options.Get()),
            "the encoder '" + std::string(format_.encoder) + "' refuses this video");

    stream_ = avformat_new_stream(muxer_.get(), nullptr);
    if (stream_ == nullptr) throw std::bad_alloc();
    AvCheck(avcodec_parameters_from_context(stream_->codecpar, &encoder), "cannot describe the video");
    stream_->time_base = setup.timeBase;
    stream_->avg_frame_rate = stream_->r_frame_rate = setup.frameRate;
    stream_->sample_aspect_ratio = setup.sampleAspect;
    if (encoder.pix_fmt == AV_PIX_FMT_YUVA420P) av_dict_set(&stream_->metadata, "alpha_mode", "1", 0);

    if (encoder.pix_fmt == AV_PIX_FMT_PAL8) {
        palette_ = std::make_unique<PaletteFilter>(setup.size, setup.timeBase);
    } else if (encoder.pix_fmt != AV_PIX_FMT_BGRA) {
        converter_.emplace(setup.size, AV_PIX_FMT_BGRA, encoder.pix_fmt, setup.color);
        picture_ = MakePicture(setup.size, encoder.pix_fmt);
        // Some encoders look here and not at their own settings.
        picture_->color_range = setup.color.range;
        picture_->color_primaries = setup.color.primaries;
        picture_->color_trc = setup.color.transfer;
        picture_->colorspace = setup.color.matrix;
    }
}

int VideoWriter::AddCopiedStream(const AVStream& source) {
    const char* const codec = avcodec_get_name(source.codecpar->codec_id);
    if (avformat_query_codec(muxer_->oformat, source.codecpar->codec_id, FF_COMPLIANCE_NORMAL) == 0)
        throw std::runtime_error("the sound is " + std::string(codec) + ", which " + Quoted(path_) +
                                 " cannot hold: write a .mp4 or .mov, or give --no-audio");
    AVStream* const stream = avformat_new_stream(muxer_.get(), nullptr);
    if (stream == nullptr) throw std::bad_alloc();
    AvCheck(avcodec_parameters_copy(stream->codecpar, source.codecpar), "cannot copy the sound");
    stream->codecpar->codec_tag = 0;  // each container has its own
    stream->time_base = source.time_base;
    stream->disposition = source.disposition;
    av_dict_copy(&stream->metadata, source.metadata, 0);
    copied_.push_back({source.time_base, stream->index});
    return static_cast<int>(copied_.size()) - 1;
}

void VideoWriter::WriteHeaderOnce() {
    if (hasHeader_) return;
    AvCheck(avio_open2(&muxer_->pb, muxer_->url, AVIO_FLAG_WRITE, &muxer_->interrupt_callback, nullptr),
            "cannot write " + Quoted(path_));
    AvOptions options(format_.muxerOptions);
    AvCheck(avformat_write_header(muxer_.get(), options.Get()), "cannot begin " + Quoted(path_));
    hasHeader_ = true;
}

void VideoWriter::Write(std::span<const uint32_t> pixels, int64_t time) {
    WriteHeaderOnce();
    const AvFrameHandle view = ViewPixels(pixels, setup_.size);
    view->pts = time;
    if (palette_) {
        palette_->Put(*view);
        return EncodeFiltered();
    }
    if (!converter_) return Encode(view.get());
    AvCheck(av_frame_make_writable(picture_.get()), "cannot make a picture");
    converter_->Convert(*view, *picture_);
    picture_->pts = time;
    Encode(picture_.get());
}

void VideoWriter::EncodeFiltered() {
    while (const AvFrameHandle frame = palette_->Take()) Encode(frame.get());
}

void VideoWriter::Encode(const AVFrame* frame) {
    AvCheck(avcodec_send_frame(encoder_.get(), frame), "cannot encode a frame");
    for (;;) {
        ThrowIfInterrupted();
        const int status = avcodec_receive_packet(encoder_.get(), packet_.get());
        if (status == AVERROR(EAGAIN) || status == AVERROR_EOF) return;
        AvCheck(status, "cannot encode a frame");
        // The last frame of a file lasts as long as this says.
        if (packet_->duration == 0) packet_->duration = av_rescale_q(1, av_inv_q(setup_.frameRate), setup_.timeBase);
        packet_->stream_index = stream_->index;
        av_packet_rescale_ts(packet_.get(), setup_.timeBase, stream_->time_base);
        WritePacket(*packet_);
    }
}

void VideoWriter::WriteCopied(int number, AVPacket& packet) {
    WriteHeaderOnce();
    const CopiedStream& copied = copied_.at(static_cast<size_t>(number));
    packet.stream_index = copied.index;
    packet.pos = -1;
    av_packet_rescale_ts(&packet, copied.sourceTimeBase, muxer_->streams[static_cast<size_t>(copied.index)]->time_base);
    WritePacket(packet);
}

void VideoWriter::WritePacket(AVPacket& packet) {
    AvCheck(av_interleaved_write_frame(muxer_.get(), &packet), "cannot write " + Quoted(path_));
}

void VideoWriter::Finish() {
    WriteHeaderOnce();
    if (palette_) {
        palette_->End();
        EncodeFiltered();
    }
    Encode(nullptr);
    const std::string failure = "cannot write " + Quoted(path_);
    AvCheck(av_write_trailer(muxer_.get()), failure);
    // A full disk often shows only when the last block leaves the buffer.
    avio_flush(muxer_->pb);
    AvCheck(muxer_->pb->error, failure);
    AvCheck(avio_closep(&muxer_->pb), failure);
    if (file_) file_->Finish();
}

}  // namespace captionfx
