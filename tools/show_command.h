// `captionfx show`: what a title file holds, for people.
#pragma once

#include <filesystem>

#include <CLI/CLI.hpp>

namespace captionfx {

struct ShowRequest {
    std::filesystem::path titleFile;
};

/// Adds the command to `app`. Parsing fills `request`, which must outlive it.
CLI::App* AddShowCommand(CLI::App& app, ShowRequest& request);

/// Prints strings, texts, lines, styles, fonts and keyframes on standard output. Throws std::exception with a one-line
/// reason.
void Show(const ShowRequest& request);

}  // namespace captionfx
