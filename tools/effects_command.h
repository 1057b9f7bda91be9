// `captionfx effects`: the effects as a list, as a contact sheet, or as a page with moving pictures.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/argument_values.h"

namespace captionfx {

/// What the command line asks for.
struct EffectsRequest {
    std::optional<std::string> effectClass;        ///< Without one all.
    std::optional<std::filesystem::path> sheet;    ///< The picture to write; without one a list on standard output.
    std::optional<std::filesystem::path> gallery;  ///< The folder of a page for a browser, instead.
    bool isQuiet = false;
    std::u16string text = u"CaptionFx";
    std::u16string fontName = u"DejaVu Sans";
    std::optional<FrameSize> cell;  ///< Without one small pictures for all classes, larger ones for a single class.
};

/// Adds the command to `app`. Parsing fills `request`, which must outlive it.
CLI::App* AddEffectsCommand(CLI::App& app, EffectsRequest& request);

/// Lists, or draws. Throws std::exception with a one-line reason.
void ListOrDrawEffects(const EffectsRequest& request);

}  // namespace captionfx
