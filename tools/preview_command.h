// `captionfx preview`: moments of a title beside each other in one picture.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/argument_values.h"

namespace captionfx {

/// What the command line asks for.
struct PreviewRequest {
    std::filesystem::path titleFile, style, output;
    std::vector<Moment> moments{{0.0F, true}, {25.0F, true}, {50.0F, true}, {75.0F, true}, {100.0F, true}};
    std::optional<FrameSize> frame;  ///< Without one the title's own, or 1280x720.
    FrameSize cell{320, 180};        ///< The most that one picture takes; it keeps the shape of the frame.
    std::optional<Rgb> background;
};

/// Adds the command to `app`. Parsing fills `request`, which must outlive it.
CLI::App* AddPreviewCommand(CLI::App& app, PreviewRequest& request);

/// Draws the sheet. Throws std::exception with a one-line reason.
void Preview(const PreviewRequest& request);

}  // namespace captionfx
