// Objects of libav that free themselves, and its status codes as exceptions. What starts with Av or a lower-case av is
// libav's; all handles may be empty.
#pragma once

#include <array>
#include <cerrno>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavfilter/avfilter.h>
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
#include <libswscale/swscale.h>
}

namespace captionfx {

/// For the functions that take the address of the pointer and clear it.
template <auto Free>
struct AvFree {
    template <class Object>
    void operator()(Object* object) const noexcept {
        Free(&object);
    }
};

struct AvOutputClose {
    void operator()(AVFormatContext* output) const noexcept {
        if (output->pb != nullptr) avio_closep(&output->pb);
        avformat_free_context(output);
    }
};

struct AvScalerFree {
    void operator()(SwsContext* scaler) const noexcept { sws_freeContext(scaler); }
};

using AvFrameHandle = std::unique_ptr<AVFrame, AvFree<&av_frame_free>>;
using AvPacketHandle = std::unique_ptr<AVPacket, AvFree<&av_packet_free>>;
using AvCodecHandle = std::unique_ptr<AVCodecContext, AvFree<&avcodec_free_context>>;
using AvInputHandle = std::unique_ptr<AVFormatContext, AvFree<&avformat_close_input>>;
using AvOutputHandle = std::unique_ptr<AVFormatContext, AvOutputClose>;
using AvGraphHandle = std::unique_ptr<AVFilterGraph, AvFree<&avfilter_graph_free>>;
using AvScalerHandle = std::unique_ptr<SwsContext, AvScalerFree>;

/// Options by name, "crf=18:preset=slow". What took some of them leaves the others.
class AvOptions {
public:
    AvOptions() = default;
    explicit AvOptions(const std::string& text) { av_dict_parse_string(&options_, text.c_str(), "=", ":", 0); }
    ~AvOptions() { av_dict_free(&options_); }
    AvOptions(const AvOptions&) = delete;
    AvOptions& operator=(const AvOptions&) = delete;

    [[nodiscard]] AVDictionary** Get() { return &options_; }

private:
    AVDictionary* options_ = nullptr;
};

/// `status` where it is no failure. Throws std::runtime_error "what: reason", or std::bad_alloc.
inline int AvCheck(int status, const std::string& what) {
    if (status >= 0) return status;
    if (status == AVERROR(ENOMEM)) throw std::bad_alloc();
    std::array<char, AV_ERROR_MAX_STRING_SIZE> reason{};
    av_strerror(status, reason.data(), reason.size());
    throw std::runtime_error(what + ": " + reason.data());
}

/// A new object as its handle. Throws std::bad_alloc.
template <class Handle>
[[nodiscard]] Handle AvOwn(typename Handle::pointer object) {
    if (object == nullptr) throw std::bad_alloc();
    return Handle(object);
}

[[nodiscard]] inline AvFrameHandle MakeAvFrame() {
    return AvOwn<AvFrameHandle>(av_frame_alloc());
}

[[nodiscard]] inline AvPacketHandle MakeAvPacket() {
    return AvOwn<AvPacketHandle>(av_packet_alloc());
}

}  // namespace captionfx
