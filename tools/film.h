// Sequences of frames as one file or stream, and videos that titles are drawn onto. Operations throw std::runtime_error
// with a one-line reason; a build without video libraries says so.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string_view>

#include "tools/argument_values.h"
#include "tools/frame_sink.h"

namespace captionfx {

/// Throws with what there is where no format has that name. `format` chooses where there are several; it may be empty
/// for a file. "-" is standard output.
void CheckFilmName(const std::filesystem::path& output, std::string_view format);

struct FilmSetup {
    FrameSize size;
    bool isTransparent = false;
    float rate;  ///< Frames a second; the times of the frames are their numbers.
};

[[nodiscard]] std::unique_ptr<FrameSink> MakeFilm(const std::filesystem::path& output, std::string_view format,
                                                  const FilmSetup& setup);

/// A video that titles are drawn onto.
class GroundVideo {
public:
    GroundVideo() = default;
    GroundVideo(const GroundVideo&) = delete;
    GroundVideo& operator=(const GroundVideo&) = delete;
    virtual ~GroundVideo() = default;

    [[nodiscard]] virtual FrameSize Size() const = 0;
    /// How many frames there will be; 0 where the file does not tell.
    [[nodiscard]] virtual int64_t ExpectedFrames() const = 0;
    /// Sets the times and the pixels, which have its size, of its next frame. False at the end.
    [[nodiscard]] virtual bool Fill(Frame& frame) = 0;
    /// A film with its times and colours, and with its sound where that is not dropped and the format has a place for
    /// it. Before the first frame; the film may not outlive it.
    [[nodiscard]] virtual std::unique_ptr<FrameSink> MakeFilm(const std::filesystem::path& output,
                                                              std::string_view format, bool dropsSound) = 0;
};

[[nodiscard]] std::unique_ptr<GroundVideo> OpenVideo(const std::filesystem::path& path);

}  // namespace captionfx
