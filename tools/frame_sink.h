// Where the frames of a sequence go.
#pragma once

#include <cstdint>
#include <string>

#include "tools/argument_values.h"
#include "tools/frame_pipeline.h"

namespace captionfx {

/// Operations throw std::runtime_error with a one-line reason.
class FrameSink {
public:
    FrameSink() = default;
    FrameSink(const FrameSink&) = delete;
    FrameSink& operator=(const FrameSink&) = delete;
    virtual ~FrameSink() = default;

    /// In order, with rising times.
    virtual void Put(const Frame& frame) = 0;
    virtual void Finish() = 0;
};

/// Frames as PNG files, numbered from 0, in a folder that is made where it is missing.
class PictureSequence final : public FrameSink {
public:
    PictureSequence(std::string pattern, FrameSize size);
    void Put(const Frame& frame) override;
    void Finish() override {}

private:
    std::string pattern_;
    FrameSize size_;
    int32_t count_ = 0;
};

}  // namespace captionfx
