// The command line of CaptionFx. Exit codes: 0 done, 1 could not be done, 2 wrong arguments. An error is one line on
// standard error.
#include <algorithm>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/console.h"
#include "tools/convert_command.h"
#include "tools/effects_command.h"
#include "tools/fonts_command.h"
#include "tools/interrupt.h"
#include "tools/preview_command.h"
#include "tools/render_command.h"
#include "tools/show_command.h"
#include "tools/start_up.h"

namespace captionfx {
namespace {

constexpr int kWrongArguments = 2;

int RunCommandLine(std::vector<std::string> arguments) {
    CLI::App app("Animated text titles for video", "captionfx");
    app.allow_windows_style_options(false);  // on every system "/x" is a path
    app.footer(
        "Examples:\n"
        "  captionfx render --text \"Hello\" -o hello.png\n"
        "  captionfx render title.xml --over holiday.mp4 -o titled.mp4\n"
        "  captionfx effects --gallery effects\n"
        "'captionfx render --help' and the like tell more; so does the manual, 'man captionfx'.");
    app.set_version_flag("--version", "captionfx " CAPTIONFX_VERSION);
    RenderRequest renderRequest;
    ShowRequest showRequest;
    EffectsRequest effectsRequest;
    PreviewRequest previewRequest;
    FontsRequest fontsRequest;
    ConvertRequest convertRequest;
    const CLI::App* const render = AddRenderCommand(app, renderRequest);
    const CLI::App* const preview = AddPreviewCommand(app, previewRequest);
    const CLI::App* const show = AddShowCommand(app, showRequest);
    const CLI::App* const effects = AddEffectsCommand(app, effectsRequest);
    const CLI::App* const fonts = AddFontsCommand(app, fontsRequest);
    const CLI::App* const convert = AddConvertCommand(app, convertRequest);

    try {
        std::ranges::reverse(arguments);  // it takes them from the end
        app.parse(std::move(arguments));
    } catch (const CLI::Success& helpOrVersion) {
        return app.exit(helpOrVersion);
    } catch (const CLI::ParseError& error) {
        std::string command = "captionfx";
        for (const CLI::App* const parsed : app.get_subcommands()) command += " " + parsed->get_name();
        PrintLine(std::string(error.what()) + " (see '" + command + " --help')");
        return kWrongArguments;
    }
    if (app.get_subcommands().empty()) {
        PrintLine("a command is needed, such as 'captionfx render' (see 'captionfx --help')");
        return kWrongArguments;
    }
    CatchInterrupts();
    if (render->parsed()) Render(renderRequest);
    if (preview->parsed()) Preview(previewRequest);
    if (fonts->parsed()) ListFonts(fontsRequest);
    if (show->parsed()) Show(showRequest);
    if (effects->parsed()) ListOrDrawEffects(effectsRequest);
    if (convert->parsed()) Convert(convertRequest);
    return EXIT_SUCCESS;
}

}  // namespace
}  // namespace captionfx

int main(int argc, char** argv) {
    try {
        return captionfx::RunCommandLine(captionfx::StartUp(argc, argv));
    } catch (const captionfx::Interrupted&) {
        captionfx::DieOfInterrupt();
    } catch (const std::bad_alloc&) {
        captionfx::PrintLine("not enough memory; a smaller frame or less text needs less");
    } catch (const std::exception& error) {
        // An interruption that met an encoder in the middle of a file comes back as its failure to write on.
        if (captionfx::IsInterrupted()) captionfx::DieOfInterrupt();
        captionfx::PrintLine(error.what());
    }
    return EXIT_FAILURE;
}
