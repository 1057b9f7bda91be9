// `captionfx convert`: titles between scripts, XML and subtitles.
#pragma once

#include <filesystem>

#include <CLI/CLI.hpp>

namespace captionfx {

struct ConvertRequest {
    std::filesystem::path input, output;
    std::filesystem::path style;  ///< How subtitles look; empty: a usual look.
};

/// Adds the command to `app`. Parsing fills `request`, which must outlive it.
CLI::App* AddConvertCommand(CLI::App& app, ConvertRequest& request);

/// Writes the output, and notes on standard error what it cannot say. Throws std::exception with a one-line reason.
void Convert(const ConvertRequest& request);

}  // namespace captionfx
