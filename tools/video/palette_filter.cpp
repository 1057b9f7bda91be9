#include "tools/video/palette_filter.h"

#include <cstdint>
#include <span>
#include <string>

extern "C" {
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
}

namespace captionfx {
namespace {

constexpr const char* kFailure = "cannot choose the colours of a frame";

/// What is less than half there goes, the rest becomes solid.
void HardenAlpha(AVFrame& frame) {
    constexpr uint32_t kOpaque = 0xFF000000, kHalf = 0x80000000;
    for (int y = 0; y < frame.height; ++y) {
        auto* const row = reinterpret_cast<uint32_t*>(frame.data[0] + std::ptrdiff_t{y} * frame.linesize[0]);
        for (uint32_t& pixel : std::span(row, static_cast<size_t>(frame.width)))
            pixel = pixel >= kHalf ? pixel | kOpaque : 0;
    }
}

}  // namespace

PaletteFilter::PaletteFilter(FrameSize size, AVRational timeBase)
    : graph_(AvOwn<AvGraphHandle>(avfilter_graph_alloc())) {
    // Diffused errors leave colours of the palette as they are; a pattern would speckle flat faces.
    const std::string description =
        "buffer=width=" + std::to_string(size.width) + ":height=" + std::to_string(size.height) +
        ":pix_fmt=bgra:time_base=" + std::to_string(timeBase.num) + "/" + std::to_string(timeBase.den) +
        ",split[a][b];[a]palettegen=stats_mode=single[p];"
        "[b][p]paletteuse=new=1:dither=sierra2_4a,buffersink";
    AVFilterInOut* inputs = nullptr;
    AVFilterInOut* outputs = nullptr;
    const int parsed = avfilter_graph_parse2(graph_.get(), description.c_str(), &inputs, &outputs);
    avfilter_inout_free(&inputs);
    avfilter_inout_free(&outputs);
    AvCheck(parsed, kFailure);
    AvCheck(avfilter_graph_config(graph_.get(), nullptr), kFailure);
    for (unsigned i = 0; i < graph_->nb_filters; ++i) {
        const std::string name = graph_->filters[i]->filter->name;
        if (name == "buffer") source_ = graph_->filters[i];
        if (name == "buffersink") sink_ = graph_->filters[i];
    }
}

void PaletteFilter::Put(const AVFrame& frame) {
    const auto own = AvOwn<AvFrameHandle>(av_frame_clone(&frame));
    AvCheck(av_frame_make_writable(own.get()), kFailure);
    HardenAlpha(*own);
    AvCheck(av_buffersrc_add_frame(source_, own.get()), kFailure);
}

void PaletteFilter::End() {
    AvCheck(av_buffersrc_add_frame(source_, nullptr), kFailure);
}

AvFrameHandle PaletteFilter::Take() {
    AvFrameHandle frame = MakeAvFrame();
    const int status = av_buffersink_get_frame(sink_, frame.get());
    if (status == AVERROR(EAGAIN) || status == AVERROR_EOF) return nullptr;
    AvCheck(status, kFailure);
    return frame;
}

}  // namespace captionfx
