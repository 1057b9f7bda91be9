#include "tools/render_command.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <span>
#include <tuple>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/colors.h"
#include "tools/console.h"
#include "tools/frame_times.h"
#include "tools/option_value.h"
#include "tools/png_file.h"
#include "tools/title_file.h"
#include "tools/title_handle.h"
#include "tools/title_player.h"
#include "tools/title_setup.h"
#include "tools/title_source.h"

namespace captionfx {
namespace {

/// Draws one frame over the ground. Returns whether any pixel differs from it.
bool DrawFrame(TitlePlayer& player, float time, uint32_t ground, std::span<uint32_t> pixels) {
    std::ranges::fill(pixels, ground);
    player.Draw(pixels.data(), time);
    // Not the dirty rectangle: it keeps a rim around text that left no ink.
    return std::ranges::any_of(pixels, [ground](uint32_t pixel) { return pixel != ground; });
}

void WriteFrames(IKVT_CaptionFx& title, const RenderRequest& request, FrameSize frame) {
    const uint32_t ground = request.background ? OpaquePixel(*request.background) : 0;
    const auto [width, height] = frame;
    std::vector<uint32_t> pixels(static_cast<size_t>(width) * static_cast<size_t>(height));
    TitlePlayer player(title);
    bool isDrawn = false;
    if (request.from) {
        const std::string pattern = request.output.string();
        if (request.output.has_parent_path()) std::filesystem::create_directories(request.output.parent_path());
        const int32_t count = FrameCount(*request.from, *request.to, *request.rate);
        for (int32_t i = 0; i < count; ++i) {
            isDrawn = DrawFrame(player, FrameTime(*request.from, *request.rate, i), ground, pixels) || isDrawn;
            WritePng(FrameFile(pattern, i), pixels, width, height);
        }
    } else {
        isDrawn = DrawFrame(player, request.time, ground, pixels);
        WritePng(request.output, pixels, width, height);
    }
    if (!isDrawn) PrintLine("note: nothing was drawn");
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
    addMore("--effect", typed.effect, &ParseEffectName, "an effect name of 1 to 259 characters",
            "Effect, such as PATH_FADE");
    addMore("--progress", typed.progress, &ParseNumber, "a finite number",
            "Progress of the effect: 0 not there yet, 1 at rest [1]");
    AddValues(render, "--key", typed.keys, &ParseKeyframe, "a keyframe TIME:EFFECT:PROGRESS, such as 0.5:PATH_FADE:1",
              "Keyframe; between two of the same effect its progress runs. May be given often")
        ->needs(text)
        ->group("A typed title");
}

/// What no single option can see.
void CheckTogether(const RenderRequest& request, bool hasText) {
    if (request.titleFile.empty() && !hasText)
        throw CLI::ValidationError("what to draw is missing: a title file, or --text");
    if (!request.titleFile.empty() && hasText)
        throw CLI::ValidationError("title",
                                   "'" + request.titleFile.string() + "' and --text are two titles: one is drawn");
    if (request.output.empty() && request.saveAs.empty())
        throw CLI::ValidationError("--output or --save is needed: where does the result go?");
    if (!request.from) return;
    if (!IsFramePattern(request.output.string()))
        throw CLI::ValidationError("--output", "'" + request.output.string() +
                                                   "' needs a place for the frame number, such as frames/%04d.png");
    if (FrameCount(*request.from, *request.to, *request.rate) == 0)
        throw CLI::ValidationError("--to", "the sequence ends before it begins, or has more than ten million frames");
}

}  // namespace

CLI::App* AddRenderCommand(CLI::App& app, RenderRequest& request) {
    CLI::App* const render = app.add_subcommand("render", "Render frames of a title to PNG files");
    render->footer(
        "Lengths and positions are pixels, times are seconds. What is not asked for has the library's built-in look:\n"
        "a white face, a thin red border, a soft shadow.");
    render->add_option("title", request.titleFile, "A title script, a title as XML, or subtitles; or a typed title:");
    AddTypedOptions(*render, request.typed);

    CLI::Option* const at =
        AddValue(*render, "--at", request.time, &ParseNumber, "a finite number", "Time of the frame [0]");
    CLI::Option* const from =
        AddValue(*render, "--from", request.from, &ParseNumber, "a finite number", "First time of a sequence");
    CLI::Option* const to =
        AddValue(*render, "--to", request.to, &ParseNumber, "a finite number", "Its end, which is not drawn");
    CLI::Option* const rate = AddValue(*render, "--fps", request.rate, &ParseFrameRate, "a number above 0, up to 1000",
                                       "Its frames a second");
    from->needs(to)->needs(rate)->excludes(at);
    to->needs(from);
    rate->needs(from);
    AddValue(*render, "--frame", request.frame, &ParseFrameSize, "a size such as 1280x720, sides 1 to 16384",
             "Size of the frame [that of the title, or 1280x720]");
    AddValue(*render, "--background", request.background, &ParseColor, "a colour RRGGBB, such as 102030",
             "Colour of an opaque ground [transparent]");
    render->add_option("-o,--output", request.output,
                       "The PNG file to write; of a sequence, a pattern such as frames/%04d.png");
    render->add_option("--save", request.saveAs, "Also write the title as XML");
    render->callback([render, &request] { CheckTogether(request, render->count("--text") > 0); });
    return render;
}

void Render(const RenderRequest& request) {
    const TitleHandle title = MakeTitle();
    const Ground ground = request.background ? Ground::kOpaque : Ground::kTransparent;
    FrameSize frame = SetSourceFrame(*title, {}, request.frame, ground);
    if (request.titleFile.empty()) {
        AddTypedTitle(*title, request.typed, frame);
    } else {
        frame = SetSourceFrame(*title, LoadTitle(*title, request.titleFile), request.frame, ground);
    }
    if (!request.saveAs.empty()) SaveTitle(*title, request.saveAs);
    if (!request.output.empty()) WriteFrames(*title, request, frame);
}

}  // namespace captionfx
