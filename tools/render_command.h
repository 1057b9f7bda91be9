// `captionfx render`: frames of a typed title or of a title file, as pictures or as a video.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/argument_values.h"
#include "tools/typed_title.h"

namespace captionfx {

/// What the command line asks for. Times are seconds.
struct RenderRequest {
    std::filesystem::path titleFile;  ///< Empty: the typed title.
    std::filesystem::path style;      ///< Of subtitles; empty: the usual one.
    TypedTitle typed;
    float time = 0.0F;
    std::optional<float> from, to, rate;  ///< Of a sequence: its end is not drawn.
    std::filesystem::path over;           ///< A video to draw onto; empty: a plain ground.
    bool dropsSound = false;              ///< Of that video.
    std::string format;                   ///< Where the name of the output leaves a choice.
    std::optional<int32_t> jobs;          ///< Frames drawn at once; without one as many as there are processors.
    bool isQuiet = false;
    std::optional<FrameSize> frame;  ///< Without one the title's own, or 1280x720.
    std::optional<Rgb> background;   ///< Without one the frame is transparent.
    std::filesystem::path output;    ///< Of PNG files, a pattern such as frames/%04d.png. Empty: no picture.
    std::filesystem::path saveAs;    ///< Where the title goes as XML; empty: nowhere.
};

/// Adds the command to `app`. Parsing fills `request`, which must outlive it.
CLI::App* AddRenderCommand(CLI::App& app, RenderRequest& request);

/// Renders and writes the frames, and notes on standard error what a user may not expect. Throws std::exception with a
/// one-line reason.
void Render(const RenderRequest& request);

}  // namespace captionfx
