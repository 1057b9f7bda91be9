#include "tools/fonts_command.h"

#include <iostream>
#include <stdexcept>

#include "tools/argument_values.h"
#include "tools/installed_fonts.h"
#include "tools/option_value.h"
#include "tools/text_encoding.h"

namespace captionfx {

CLI::App* AddFontsCommand(CLI::App& app, FontsRequest& request) {
    CLI::App* const fonts = app.add_subcommand("fonts", "List the fonts, or show which fonts a text is drawn with");
    fonts->footer(
        "A character that the font lacks is drawn with one that has it.\n"
        "\nExamples:\n"
        "  captionfx fonts\n"
        "  captionfx fonts --text \"Hello \xE4\xB8\x96\xE7\x95\x8C\" --font \"DejaVu Serif\"");
    CLI::Option* const text = AddValue(*fonts, "--text", request.text, &ParseText, "valid UTF-8",
                                       "Show the fonts of this text, UTF-8; \\n begins a paragraph");
    AddValue(*fonts, "--font", request.fontName, &ParseFontName, "a font name of 1 to 31 characters",
             "The font that is asked for [DejaVu Sans]")
        ->needs(text);
    return fonts;
}

void ListFonts(const FontsRequest& request) {
    if (request.text) {
        const std::string asked = Utf8FromUtf16(request.fontName);
        for (const FontRun& run : FontRunsOf(*request.text, request.fontName)) {
            std::cout << run.fontName << ": " << QuotedLine(run.text)
                      << (run.fontName == asked ? "" : " (stands in for " + asked + ")") << '\n';
        }
    } else {
        for (const std::string& name : DrawableFontFamilies()) std::cout << name << '\n';
    }
    if (!std::cout.flush()) throw std::runtime_error("cannot write the list to standard output");
}

}  // namespace captionfx
