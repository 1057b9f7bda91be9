#include "tools/convert_command.h"

#include "tools/option_value.h"
#include "tools/script/title_to_script.h"
#include "tools/title_file.h"
#include "tools/title_handle.h"
#include "tools/title_setup.h"
#include "tools/title_source.h"

namespace captionfx {

CLI::App* AddConvertCommand(CLI::App& app, ConvertRequest& request) {
    CLI::App* const convert = app.add_subcommand("convert", "Convert titles between scripts, XML and subtitles");
    convert->footer(
        "The names tell what the files are: .json a title script, .xml a title as XML, .srt and .vtt subtitles.\n"
        "\nExamples:\n"
        "  captionfx convert opening.json opening.xml\n"
        "  captionfx convert opening.xml opening.json\n"
        "  captionfx convert talk.srt talk.xml --style style.json");
    AddPath(*convert, "input", request.input, "A title script, a title as XML, or subtitles")->required();
    AddPath(*convert, "output", request.output, "The title to write: .xml, or .json for a script")->required();
    AddPath(*convert, "--style", request.style, "How subtitles look and where they stand: a script with a cue");
    convert->callback([&request] {
        const std::filesystem::path extension = request.output.extension();
        if (extension != ".xml" && extension != ".json")
            throw CLI::ValidationError("output", "'" + request.output.string() + "' must end in .xml or .json");
    });
    return convert;
}

void Convert(const ConvertRequest& request) {
    const TitleHandle title = MakeTitle();
    SetSourceFrame(*title, {}, {}, Ground::kTransparent);
    const TitleSource source = LoadTitle(*title, request.input, request.style);
    NoteFontSubstitutes(*title, source);
    if (request.output.extension() == ".json") {
        WriteScript(*title, source, request.output);
    } else {
        SaveTitle(*title, request.output);
    }
}

}  // namespace captionfx
