#include "tools/render_command.h"

#include <cmath>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>

#include "tools/frame_times.h"
#include "tools/option_value.h"
#include "tools/render_output.h"
#include "tools/video/output_format.h"

namespace captionfx {
namespace {

std::optional<int32_t> ParseJobs(std::string_view text) {
    constexpr float kMost = 64.0F;
    const std::optional<float> jobs = ParseNumber(text);
    if (!jobs || *jobs < 1.0F || *jobs > kMost || *jobs != std::floor(*jobs)) return std::nullopt;
    return static_cast<int32_t>(*jobs);
}

void AddTypedOptions(CLI::App& render, TypedTitle& typed) {
    const auto add = [&](const char* name, auto& target, auto parse, const char* expected, const char* help) {
        return AddValue(render, name, target, parse, expected, help)->group("A typed title");
    };
    CLI::Option* const text =
        add("--text", typed.text, &ParseText, "valid UTF-8", "The text, UTF-8; \\n begins a paragraph");
    const auto addMore = [&](const char* name, auto& target, auto parse, const char* expected, const char* help) {
        return add(name, target, parse, expected, help)->needs(text);
    };
    addMore("--font", typed.fontName, &ParseFontName, "a font name of 1 to 31 characters", "Font family [DejaVu Sans]");
    addMore("--size", typed.fontSize, &ParseFontSize, "a number above 0, up to 1638", "Font size [96]");
    for (const auto& [name, flag, help] :
         {std::tuple("--bold", &typed.bold, "Bold"), {"--italic", &typed.italic, "Italic"}})
        render.add_flag(name, *flag, help)->needs(text)->group("A typed title");
    addMore("--color", typed.faceColor, &ParseColor, "a colour RRGGBB, such as FFCC00", "Colour of the face");
    addMore("--position", typed.position, &ParsePosition, "a position X,Y, such as 100,50",
            "Upper left corner of the text [in the middle of the frame]");
    addMore("--effect", typed.effect, &ParseEffectName, "an effect, such as fade; 'captionfx effects' lists them",
            "Effect, such as fade or PATH_FADE");
    addMore("--progress", typed.progress, &ParseNumber, "a finite number",
            "Progress of the effect: 0 not there yet, 1 at rest [1]");
    AddValues(render, "--key", typed.keys, &ParseKeyframe,
              "a keyframe TIME:EFFECT:PROGRESS of a listed effect, such as 0.5:fade:1",
              "Keyframe; between two of the same effect its progress runs. May be given often")
        ->needs(text)
        ->group("A typed title");
}

void CheckSequence(const RenderRequest& request) {
    const std::string output = request.output.string();
    if (request.output.extension() == ".png" && !IsFramePattern(output))
        throw CLI::ValidationError("--output", "'" + output +
                                                   "' is one picture, and this is a sequence: give it a place for the "
                                                   "frame number, such as frames/%04d.png, or write an .apng");
    if (!IsFramePattern(output)) {
        try {
            static_cast<void>(FormatOf(request.output, request.format));
        } catch (const std::runtime_error& error) {
            throw CLI::ValidationError("--output", error.what());
        }
    }
    if (request.to && FrameCount(request.from.value_or(0.0F), *request.to, request.rate.value_or(kUsualRate)) == 0)
        throw CLI::ValidationError("--to", "the sequence ends before it begins, or has more than ten million frames");
}

/// What no single option can see.
void CheckTogether(const RenderRequest& request, bool hasText) {
    if (request.titleFile.empty() && !hasText)
        throw CLI::ValidationError("what to draw is missing: a title file, or --text");
    if (!request.titleFile.empty() && hasText)
        throw CLI::ValidationError("title",
                                   "'" + request.titleFile.string() + "' and --text are two titles: one is drawn");
    if (request.titleFile.empty() && !request.style.empty())
        throw CLI::ValidationError("--style", "is for subtitles: a title file .srt or .vtt");
    if (request.output.empty() && request.saveAs.empty())
        throw CLI::ValidationError("--output or --save is needed: where does the result go?");
    if (!request.over.empty() && request.output.empty()) throw CLI::ValidationError("--over", "needs --output");
    if (request.output.empty() || !IsSequence(request)) return;
    CheckSequence(request);
}

void AddSequenceOptions(CLI::App& render, RenderRequest& request, CLI::Option* at) {
    constexpr const char* kGroup = "A sequence";
    const auto add = [&](const char* name, auto& target, auto parse, const char* expected, const char* help) {
        return AddValue(render, name, target, parse, expected, help)->group(kGroup);
    };
    CLI::Option* const from = add("--from", request.from, &ParseNumber, "a finite number", "First time [0]");
    CLI::Option* const to = add("--to", request.to, &ParseNumber, "a finite number",
                                "End, which is not drawn [the last keyframe of the title]");
    CLI::Option* const rate = add("--fps", request.rate, &ParseFrameRate, "a number above 0, up to 1000",
                                  "Frames a second, such as 25 or 30000/1001 [25]");
    CLI::Option* const over =
        render.add_option("--over", request.over, "Draw onto this video: its size, times, colours and sound are kept")
            ->group(kGroup);
    render.add_flag("--no-audio", request.dropsSound, "Leave the sound of that video out")->needs(over)->group(kGroup);
    for (CLI::Option* const option : {from, to, rate}) option->excludes(at)->excludes(over);
    over->excludes(at);
    render.add_option("--format", request.format, "Of a .mov: prores or animation [prores]; of -o -: bgra or y4m")
        ->group(kGroup);
    add("--jobs", request.jobs, &ParseJobs, "a whole number, 1 to 64",
        "How many frames are drawn at once [as many as there are processors]");
    render.add_flag("--quiet", request.isQuiet, "Say nothing of the progress")->group(kGroup);
}

}  // namespace

CLI::App* AddRenderCommand(CLI::App& app, RenderRequest& request) {
    CLI::App* const render = app.add_subcommand("render", "Render a title to pictures or to a video");
    render->footer(
        "The ending of the file says what is written: .png (one picture, or with a place for the frame number a\n"
        "sequence), .apng, .webp, .gif, .mp4 (H.264, opaque), .webm (VP9), .mov (ProRes 4444 or QuickTime Animation).\n"
        "Lengths and positions are pixels, times are seconds. What is not asked for has the library's built-in look:\n"
        "a white face, a thin red border, a soft shadow.\n"
        "\nExamples:\n"
        "  captionfx render --text \"Hello\" -o hello.png\n"
        "  captionfx render title.xml --background 203050 -o title.mp4\n"
        "  captionfx render title.xml --over holiday.mp4 -o holiday-titled.mp4\n"
        "  captionfx render talk.srt --style style.json --over talk.mp4 -o talk-subtitled.mp4\n"
        "  captionfx render title.xml --to 3 --fps 30 -o frames/%04d.png\n"
        "  captionfx render title.xml --background 000000 --format y4m -o - | player -");
    render->add_option("title", request.titleFile, "A title script, a title as XML, or subtitles; or a typed title:");
    AddTypedOptions(*render, request.typed);

    CLI::Option* const at =
        AddValue(*render, "--at", request.time, &ParseNumber, "a finite number", "Time of a single picture [0]");
    AddSequenceOptions(*render, request, at);
    CLI::Option* const frame =
        AddValue(*render, "--frame", request.frame, &ParseFrameSize, "a size such as 1280x720, sides 1 to 16384",
                 "Size of the frame [that of the title, or 1280x720]");
    CLI::Option* const background =
        AddValue(*render, "--background", request.background, &ParseColor, "a colour RRGGBB, such as 102030",
                 "Colour of an opaque ground [transparent]");
    for (CLI::Option* const option : {frame, background}) option->excludes(render->get_option("--over"));
    render->add_option("-o,--output", request.output,
                       "The file to write; of a sequence of pictures, a pattern such as frames/%04d.png; - for a pipe");
    render->add_option("--save", request.saveAs, "Also write the title as XML");
    render->add_option("--style", request.style, "How subtitles look and where they stand: a script with a cue");
    render->callback([render, &request] { CheckTogether(request, render->count("--text") > 0); });
    return render;
}

void Render(const RenderRequest& request) {
    WriteOutput(request);
}

}  // namespace captionfx
