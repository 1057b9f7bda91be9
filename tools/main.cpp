// The command line of CaptionFx. Exit codes: 0 done, 1 could not be done, 2 wrong arguments. An error is one line on
// standard error.
#include <cstdlib>
#include <exception>
#include <new>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/console.h"
#include "tools/convert_command.h"
#include "tools/effects_command.h"
#include "tools/render_command.h"
#include "tools/show_command.h"

namespace captionfx {
namespace {

constexpr int kWrongArguments = 2;

int RunCommandLine(int argc, const char* const* argv) {
    CLI::App app("Animated text titles for video", "captionfx");
    app.set_version_flag("--version", "captionfx " CAPTIONFX_VERSION);
    RenderRequest renderRequest;
    ShowRequest showRequest;
    EffectsRequest effectsRequest;
    ConvertRequest convertRequest;
    const CLI::App* const render = AddRenderCommand(app, renderRequest);
    const CLI::App* const show = AddShowCommand(app, showRequest);
    const CLI::App* const effects = AddEffectsCommand(app, effectsRequest);
    const CLI::App* const convert = AddConvertCommand(app, convertRequest);

    try {
        app.parse(argc, argv);
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
    if (render->parsed()) Render(renderRequest);
    if (show->parsed()) Show(showRequest);
    if (effects->parsed()) ListOrDrawEffects(effectsRequest);
    if (convert->parsed()) Convert(convertRequest);
    return EXIT_SUCCESS;
}

}  // namespace
}  // namespace captionfx

int main(int argc, char** argv) {
    try {
        return captionfx::RunCommandLine(argc, argv);
    } catch (const std::bad_alloc&) {
        captionfx::PrintLine("not enough memory; a smaller frame or less text needs less");
    } catch (const std::exception& error) {
        captionfx::PrintLine(error.what());
    }
    return EXIT_FAILURE;
}
