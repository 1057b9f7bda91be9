#include "tools/video/pixel_converter.h"

#include <stdexcept>

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace captionfx {
namespace {

bool IsRgb(AVPixelFormat format) {
    return (av_pix_fmt_desc_get(format)->flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

/// Standard definition has another matrix than high definition.
const int* Coefficients(AVColorSpace matrix, int32_t height) {
    constexpr int32_t kHighestStandard = 576;
    if (matrix == AVCOL_SPC_UNSPECIFIED || matrix == AVCOL_SPC_RGB)
        return sws_getCoefficients(height <= kHighestStandard ? SWS_CS_ITU601 : SWS_CS_ITU709);
    return sws_getCoefficients(matrix);
}

int IsFullRange(AVPixelFormat format, const ColorTags& color) {
    return IsRgb(format) || color.range == AVCOL_RANGE_JPEG ? 1 : 0;
}

}  // namespace

PixelConverter::PixelConverter(FrameSize size, AVPixelFormat from, AVPixelFormat to, const ColorTags& color) {
    constexpr int kFlags = SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP | SWS_BITEXACT;
    scaler_.reset(
        sws_getContext(size.width, size.height, from, size.width, size.height, to, kFlags, nullptr, nullptr, nullptr));
    if (!scaler_)
        throw std::runtime_error(std::string("pixels of the format ") + av_get_pix_fmt_name(from) +
                                 " cannot be converted to " + av_get_pix_fmt_name(to));
    constexpr int kNoChange = 1 << 16;
    const int* const coefficients = Coefficients(color.matrix, size.height);
    sws_setColorspaceDetails(scaler_.get(), coefficients, IsFullRange(from, color), coefficients,
                             IsFullRange(to, color), 0, kNoChange, kNoChange);
}

void PixelConverter::Convert(const AVFrame& from, AVFrame& to) {
    AvCheck(sws_scale(scaler_.get(), from.data, from.linesize, 0, from.height, to.data, to.linesize),
            "cannot convert a picture");
}

AvFrameHandle ViewPixels(std::span<const uint32_t> pixels, FrameSize size) {
    AvFrameHandle frame = MakeAvFrame();
    frame->format = AV_PIX_FMT_BGRA;
    frame->width = size.width;
    frame->height = size.height;
    // Nothing writes through it: libav's frames know no constant pixels.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
    frame->data[0] = const_cast<uint8_t*>(reinterpret_cast<const uint8_t*>(pixels.data()));
    frame->linesize[0] = size.width * static_cast<int>(sizeof(uint32_t));
    return frame;
}

AvFrameHandle MakePicture(FrameSize size, AVPixelFormat format) {
    AvFrameHandle frame = MakeAvFrame();
    frame->format = format;
    frame->width = size.width;
    frame->height = size.height;
    AvCheck(av_frame_get_buffer(frame.get(), 0), "cannot make a picture");
    return frame;
}

}  // namespace captionfx
