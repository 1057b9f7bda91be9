// `captionfx render`: one frame of a title of one string, as a PNG file.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/argument_values.h"

namespace captionfx {

/// What the command line asks for. Lengths are document units, which are pixels here.
struct RenderRequest {
    std::u16string text;
    std::u16string fontName = u"DejaVu Sans";
    float fontSize = 96.0F;
    bool bold = false, italic = false;
    std::optional<Rgb> faceColor;      ///< Without one the library's own.
    std::optional<Position> position;  ///< Upper left corner; without one the text stands in the middle of the frame.
    std::optional<std::string> effect;
    std::optional<float> progress;
    float time = 0.0F;
    FrameSize frame{1280, 720};
    std::optional<Rgb> background;  ///< Without one the frame is transparent.
    std::filesystem::path output;
};

/// Adds the command to `app`. Parsing fills `request`, which must outlive it.
CLI::App* AddRenderCommand(CLI::App& app, RenderRequest& request);

/// Renders and writes the frame, and notes on standard error what a user may not expect. Throws std::exception with a
/// one-line reason.
void Render(const RenderRequest& request);

}  // namespace captionfx
