// Between the pixels of frames and those of videos.
#pragma once

#include <cstdint>
#include <span>

#include "tools/argument_values.h"
#include "tools/video/av_handles.h"

namespace captionfx {

/// What a video says of its colours. A tag that is not there is AVCOL_..._UNSPECIFIED.
struct ColorTags {
    AVColorRange range = AVCOL_RANGE_MPEG;
    AVColorPrimaries primaries = AVCOL_PRI_BT709;
    AVColorTransferCharacteristic transfer = AVCOL_TRC_BT709;
    AVColorSpace matrix = AVCOL_SPC_BT709;
    AVChromaLocation chroma = AVCHROMA_LOC_LEFT;
};

/// Converts pictures from one format to another. YUV on either side follows the tags; a video that does not name its
/// matrix has the customary one of its height.
class PixelConverter {
public:
    /// Throws std::runtime_error where the formats cannot be converted.
    PixelConverter(FrameSize size, AVPixelFormat from, AVPixelFormat to, const ColorTags& color);

    /// `to` has room for the picture. Its properties, such as its time, are left alone.
    void Convert(const AVFrame& from, AVFrame& to);

private:
    AvScalerHandle scaler_;
};

/// A frame of blue, green, red and alpha that borrows its pixels.
[[nodiscard]] AvFrameHandle ViewPixels(std::span<const uint32_t> pixels, FrameSize size);

/// A frame with room for a picture.
[[nodiscard]] AvFrameHandle MakePicture(FrameSize size, AVPixelFormat format);

}  // namespace captionfx
