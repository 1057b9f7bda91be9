#include "tests/tools/decoded_film.h"

#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

#include <webp/demux.h>

extern "C" {
#include <libavutil/pixdesc.h>
}

#include "tools/video/av_handles.h"

namespace captionfx {
namespace {

/// libav's own decoder of VP9 leaves the alpha out.
const AVCodec* DecoderOf(const AVStream& stream) {
    const AVCodecID id = stream.codecpar->codec_id;
    return id == AV_CODEC_ID_VP9 ? avcodec_find_decoder_by_name("libvpx-vp9") : avcodec_find_decoder(id);
}

std::vector<uint32_t> Pixels(const AVFrame& frame) {
    std::vector<uint32_t> pixels(static_cast<size_t>(frame.width) * static_cast<size_t>(frame.height));
    const AvScalerHandle scaler(
        sws_getContext(frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), frame.width, frame.height,
                       AV_PIX_FMT_BGRA, SWS_POINT | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, nullptr, nullptr, nullptr));
    const int* const matrix = sws_getCoefficients(frame.colorspace == AVCOL_SPC_BT709 ? SWS_CS_ITU709 : SWS_CS_ITU601);
    sws_setColorspaceDetails(scaler.get(), matrix, frame.color_range == AVCOL_RANGE_JPEG ? 1 : 0, matrix, 1, 0, 1 << 16,
                             1 << 16);
    uint8_t* const planes[] = {reinterpret_cast<uint8_t*>(pixels.data())};
    const int strides[] = {frame.width * 4};
    sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, planes, strides);
    return pixels;
}

void TakeFrames(AVCodecContext& decoder, const AVPacket* packet, AVRational timeBase, DecodedFilm& film) {
    AvCheck(avcodec_send_packet(&decoder, packet), "decode");
    const AvFrameHandle frame = MakeAvFrame();
    while (avcodec_receive_frame(&decoder, frame.get()) == 0) {
        film.frames.push_back(Pixels(*frame));
        film.seconds.push_back(static_cast<double>(frame->best_effort_timestamp) * av_q2d(timeBase));
        film.width = frame->width;
        film.height = frame->height;
        film.colors = std::string(av_color_range_name(frame->color_range)) + " " +
                      av_color_primaries_name(frame->color_primaries) + " " + av_color_transfer_name(frame->color_trc) +
                      " " + av_color_space_name(frame->colorspace);
    }
}

}  // namespace

DecodedFilm DecodeFilm(const std::filesystem::path& file) {
    AVFormatContext* opened = nullptr;
    AvCheck(avformat_open_input(&opened, file.c_str(), nullptr, nullptr), file.string());
    const AvInputHandle input(opened);
    AvCheck(avformat_find_stream_info(opened, nullptr), file.string());
    const int video = AvCheck(av_find_best_stream(opened, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0), file.string());
    const AVStream& stream = *opened->streams[video];
    const auto decoder = AvOwn<AvCodecHandle>(avcodec_alloc_context3(DecoderOf(stream)));
    AvCheck(avcodec_parameters_to_context(decoder.get(), stream.codecpar), file.string());
    AvCheck(avcodec_open2(decoder.get(), DecoderOf(stream), nullptr), file.string());
    DecodedFilm film;
    const AvPacketHandle packet = MakeAvPacket();
    while (av_read_frame(opened, packet.get()) == 0) {
        if (packet->stream_index == video) {
            TakeFrames(*decoder, packet.get(), stream.time_base, film);
        } else {
            film.soundBytes.append(reinterpret_cast<const char*>(packet->data), static_cast<size_t>(packet->size));
        }
        av_packet_unref(packet.get());
    }
    TakeFrames(*decoder, nullptr, stream.time_base, film);
    return film;
}

DecodedFilm DecodeWebp(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    const WebPData data{reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()};
    WebPAnimDecoderOptions options;
    WebPAnimDecoderOptionsInit(&options);
    options.color_mode = MODE_BGRA;
    const std::unique_ptr<WebPAnimDecoder, decltype(&WebPAnimDecoderDelete)> decoder(
        WebPAnimDecoderNew(&data, &options), &WebPAnimDecoderDelete);
    if (!decoder) throw std::runtime_error(file.string() + " is no animated WebP");
    WebPAnimInfo info;
    WebPAnimDecoderGetInfo(decoder.get(), &info);
    DecodedFilm film;
    film.width = static_cast<int32_t>(info.canvas_width);
    film.height = static_cast<int32_t>(info.canvas_height);
    uint8_t* canvas = nullptr;
    for (int begin = 0, end = 0; WebPAnimDecoderGetNext(decoder.get(), &canvas, &end) != 0; begin = end) {
        const auto* const pixels = reinterpret_cast<const uint32_t*>(canvas);
        film.frames.emplace_back(pixels, pixels + size_t{info.canvas_width} * info.canvas_height);
        film.seconds.push_back(begin / 1000.0);
    }
    return film;
}

}  // namespace captionfx
