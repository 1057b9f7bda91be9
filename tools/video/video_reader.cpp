#include "tools/video/video_reader.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>

extern "C" {
#include <libavutil/display.h>
}

namespace captionfx {
namespace {

/// A telephone held upright stores its pictures lying down and says so beside them.
void RefuseTurnedVideo(const std::filesystem::path& path, const AVStream& stream) {
    const uint8_t* const matrix = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
    if (matrix == nullptr) return;
    const double degrees = av_display_rotation_get(reinterpret_cast<const int32_t*>(matrix));
    if (std::isnan(degrees) || std::abs(degrees) < 0.5) return;
    throw std::runtime_error("'" + path.string() + "' is stored turned by " +
                             std::to_string(std::lround(std::abs(degrees))) +
                             " degrees: save it upright first, with any video editor");
}

}  // namespace

VideoReader::VideoReader(const std::filesystem::path& path) : path_(path) {
    const std::string failure = "cannot read the video '" + path.string() + "'";
    AVFormatContext* file = nullptr;
    AvCheck(avformat_open_input(&file, ("file:" + path.string()).c_str(), nullptr, nullptr), failure);
    file_.reset(file);
    AvCheck(avformat_find_stream_info(file, nullptr), failure);
    const AVCodec* codec = nullptr;
    const int best = av_find_best_stream(file, AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
    if (best == AVERROR_STREAM_NOT_FOUND) throw std::runtime_error(failure + ": it holds no pictures");
    AvCheck(best, failure);
    stream_ = file->streams[best];
    RefuseTurnedVideo(path, *stream_);
    for (const AVStream* const stream : std::span(file->streams, file->nb_streams)) {
        if (stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO) sounds_.push_back(stream);
    }
    decoder_ = AvOwn<AvCodecHandle>(avcodec_alloc_context3(codec));
    AvCheck(avcodec_parameters_to_context(decoder_.get(), stream_->codecpar), failure);
    decoder_->pkt_timebase = stream_->time_base;
    decoder_->thread_count = 0;
    AvCheck(avcodec_open2(decoder_.get(), codec, nullptr), failure);
    if (!Decode()) throw std::runtime_error(failure + ": it has no frame that can be decoded");
    isFirstRead_ = isFirstPending_ = true;
    lastTime_ = firstTime_ = frame_->best_effort_timestamp == AV_NOPTS_VALUE ? 0 : frame_->best_effort_timestamp;
    ReadColor();
}

void VideoReader::ReadColor() {
    color_ = {.range = frame_->color_range,
              .primaries = frame_->color_primaries,
              .transfer = frame_->color_trc,
              .matrix = frame_->colorspace,
              .chroma = frame_->chroma_location};
    const auto format = static_cast<AVPixelFormat>(frame_->format);
    if (color_.matrix == AVCOL_SPC_RGB) color_ = {};
    converter_.emplace(Size(), format, AV_PIX_FMT_BGRA, color_);
}

AVRational VideoReader::FrameRate() const {
    const AVRational rate = av_guess_frame_rate(file_.get(), stream_, nullptr);
    return rate.num > 0 && rate.den > 0 ? rate : AVRational{25, 1};
}

AVRational VideoReader::SampleAspect() const {
    const AVRational aspect = av_guess_sample_aspect_ratio(file_.get(), stream_, frame_.get());
    return aspect.num > 0 && aspect.den > 0 ? aspect : AVRational{0, 1};
}

int64_t VideoReader::ExpectedFrames() const {
    if (stream_->nb_frames > 0) return stream_->nb_frames;
    const bool isKnown = stream_->duration != AV_NOPTS_VALUE || file_->duration != AV_NOPTS_VALUE;
    if (!isKnown) return 0;
    const double seconds = stream_->duration != AV_NOPTS_VALUE
                               ? static_cast<double>(stream_->duration) * av_q2d(stream_->time_base)
                               : static_cast<double>(file_->duration) / AV_TIME_BASE;
    return std::llround(seconds * av_q2d(FrameRate()));
}

float VideoReader::SecondsOf(int64_t time) const {
    return static_cast<float>(static_cast<double>(time - firstTime_) * av_q2d(stream_->time_base));
}

void VideoReader::OnSound(std::function<void(int, AVPacket&)> take) {
    takeSound_ = std::move(take);
    for (const auto& [number, packet] : std::exchange(earlySound_, {})) takeSound_(number, *packet);
}

void VideoReader::HandOutSound(int number) {
    if (takeSound_) return takeSound_(number, *packet_);
    if (isFirstRead_) return;
    earlySound_.emplace_back(number, AvOwn<AvPacketHandle>(av_packet_clone(packet_.get())));
}

void VideoReader::Feed() {
    for (;;) {
        const int status = av_read_frame(file_.get(), packet_.get());
        if (status == AVERROR_EOF) break;
        AvCheck(status, "cannot read on in the video '" + path_.string() + "'");
        const auto sound = std::ranges::find(sounds_, packet_->stream_index, &AVStream::index);
        if (packet_->stream_index == stream_->index) {
            const int fed = avcodec_send_packet(decoder_.get(), packet_.get());
            av_packet_unref(packet_.get());
            if (fed == AVERROR_INVALIDDATA) continue;  // one damaged packet costs its frame
            AvCheck(fed, "cannot decode the video '" + path_.string() + "'");
            return;
        }
        if (sound != sounds_.end()) HandOutSound(static_cast<int>(sound - sounds_.begin()));
        av_packet_unref(packet_.get());
    }
    AvCheck(avcodec_send_packet(decoder_.get(), nullptr), "cannot decode the video '" + path_.string() + "'");
}

bool VideoReader::Decode() {
    for (;;) {
        const int status = avcodec_receive_frame(decoder_.get(), frame_.get());
        if (status == AVERROR_EOF) return false;
        if (status == 0) return true;
        if (status == AVERROR(EAGAIN)) {
            Feed();
        } else if (status != AVERROR_INVALIDDATA) {
            AvCheck(status, "cannot decode the video '" + path_.string() + "'");
        }
    }
}

std::optional<int64_t> VideoReader::Next(std::span<uint32_t> pixels) {
    if (!isFirstPending_ && !Decode()) return std::nullopt;
    if (frame_->width != decoder_->width || frame_->height != decoder_->height)
        throw std::runtime_error("the video '" + path_.string() + "' changes its size on the way");
    const bool isFirst = std::exchange(isFirstPending_, false);
    const AvFrameHandle view = ViewPixels(pixels, Size());
    converter_->Convert(*frame_, *view);
    // Encoders want rising times; a file that has none, or the same twice, gets the next one.
    const int64_t told = frame_->best_effort_timestamp;
    const int64_t step = std::max<int64_t>(1, frame_->pkt_duration);
    if (!isFirst) lastTime_ = told == AV_NOPTS_VALUE || told <= lastTime_ ? lastTime_ + step : told;
    return lastTime_;
}

}  // namespace captionfx
