// Frames as they are, one after the other, on standard output.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/film.h"

namespace captionfx {

/// The bytes of the frames and nothing else: blue, green, red, straight alpha.
class BgraStream final : public FrameSink {
public:
    void Put(const Frame& frame) override;
    void Finish() override;
};

/// YUV4MPEG2: a line for the stream, a line for each frame, and its planes. Opaque, colours halved in both directions
/// (4:2:0, beside the left column), high definition's matrix (BT.709) and range (16 to 235).
class Y4mStream final : public FrameSink {
public:
    /// Throws std::runtime_error for a frame that is transparent or has an odd side.
    explicit Y4mStream(const FilmSetup& setup);
    void Put(const Frame& frame) override;
    void Finish() override;

private:
    FrameSize size_;
    std::vector<uint8_t> planes_;
};

}  // namespace captionfx
