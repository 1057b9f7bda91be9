#include "tools/render_command.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/colors.h"
#include "tools/console.h"
#include "tools/option_value.h"
#include "tools/png_file.h"
#include "tools/title_handle.h"
#include "tools/title_setup.h"

namespace captionfx {
namespace {

void SetFaceColor(IKVT_CaptionFx& title, Rgb color) {
    MetaFace face{};
    title.GetCharFace(kDefaults, kDefaults, &face);
    face.Color1 = face.Color2 = StyleColor(color);
    title.SetDefaultFace(&face);
}

void AddText(IKVT_CaptionFx& title, const RenderRequest& request) {
    SetFont(title,
            {.name = request.fontName, .size = request.fontSize, .bold = request.bold, .italic = request.italic});
    NoteFontSubstitute(title, request.fontName);
    if (request.faceColor) SetFaceColor(title, *request.faceColor);
    const TextString string{.text = request.text, .effect = request.effect, .progress = request.progress};
    if (request.position) {
        AddString(title, string, *request.position);
        return;
    }
    AlignInTheMiddle(title);
    AddString(title, string, CentredCorner(title, request.text, request.frame));
}

}  // namespace

CLI::App* AddRenderCommand(CLI::App& app, RenderRequest& request) {
    CLI::App* const render = app.add_subcommand("render", "Render one frame of a text to a PNG file");
    render->footer(
        "Lengths and positions are pixels. What is not asked for has the library's built-in look: a white face, a "
        "thin\n"
        "red border, a soft shadow.");
    AddValue(*render, "--text", request.text, &ParseText, "valid UTF-8", "The text, UTF-8; \\n begins a paragraph")
        ->required();
    AddValue(*render, "--font", request.fontName, &ParseFontName, "a font name of 1 to 31 characters",
             "Font family [DejaVu Sans]");
    AddValue(*render, "--size", request.fontSize, &ParseFontSize, "a number above 0, up to 1638", "Font size [96]");
    render->add_flag("--bold", request.bold, "Bold");
    render->add_flag("--italic", request.italic, "Italic");
    AddValue(*render, "--color", request.faceColor, &ParseColor, "a colour RRGGBB, such as FFCC00",
             "Colour of the face");
    AddValue(*render, "--position", request.position, &ParsePosition, "a position X,Y, such as 100,50",
             "Upper left corner of the text [in the middle of the frame]");
    AddValue(*render, "--effect", request.effect, &ParseEffectName, "an effect name of 1 to 259 characters",
             "Effect, such as PATH_FADE");
    AddValue(*render, "--progress", request.progress, &ParseNumber, "a finite number",
             "Progress of the effect: 0 not there yet, 1 at rest [1]");
    AddValue(*render, "--at", request.time, &ParseNumber, "a finite number", "Time of the frame [0]");
    AddValue(*render, "--frame", request.frame, &ParseFrameSize, "a size such as 1280x720, sides 1 to 16384",
             "Size of the frame [1280x720]");
    AddValue(*render, "--background", request.background, &ParseColor, "a colour RRGGBB, such as 102030",
             "Colour of an opaque ground [transparent]");
    render->add_option("-o,--output", request.output, "The PNG file to write")->required();
    return render;
}

void Render(const RenderRequest& request) {
    const TitleHandle title = MakeTitle();
    SetFrame(*title, request.frame, request.background ? Ground::kOpaque : Ground::kTransparent);
    AddText(*title, request);

    const uint32_t ground = request.background ? OpaquePixel(*request.background) : 0;
    const size_t pixelCount = static_cast<size_t>(request.frame.width) * static_cast<size_t>(request.frame.height);
    std::vector<uint32_t> pixels(pixelCount, ground);
    if (title->RenderFrame(pixels.data(), request.time) != kTitleOk) throw std::bad_alloc();

    // Not the dirty rectangle: it keeps a rim around text that left no ink.
    if (std::all_of(pixels.begin(), pixels.end(), [ground](uint32_t pixel) { return pixel == ground; }))
        PrintLine("note: nothing was drawn");
    WritePng(request.output, pixels, request.frame.width, request.frame.height);
}

}  // namespace captionfx
