// `captionfx fonts`: what is installed, and which characters of a text another font stands in for.
#pragma once

#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace captionfx {

struct FontsRequest {
    std::optional<std::u16string> text;  ///< Without one the families are listed.
    std::u16string fontName = u"DejaVu Sans";
};

/// Adds the command to `app`. Parsing fills `request`, which must outlive it.
CLI::App* AddFontsCommand(CLI::App& app, FontsRequest& request);

/// Prints on standard output. Throws std::exception with a one-line reason.
void ListFonts(const FontsRequest& request);

}  // namespace captionfx
