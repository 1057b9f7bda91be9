#include "tools/render_command.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utf8.h>
#include <utility>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/console.h"
#include "tools/png_file.h"
#include "tools/title_handle.h"

namespace captionfx {
namespace {

// The getters of styles fill in the title's default for an index that names nothing.
constexpr int32_t kDefaults = -1;
constexpr uint32_t kAlignCentre = 6;

/// Adds an option whose value `parse` reads. `expected` completes the error line "--size: 'big' is not ...".
template <class Target, class Value>
CLI::Option* AddValue(CLI::App& app, const std::string& name, Target& target,
                      std::optional<Value> (*parse)(std::string_view), const char* expected, const char* help) {
    const auto read = [&target, parse, name, expected](const std::string& text) {
        auto value = parse(text);
        if (!value) throw CLI::ValidationError(name, "'" + text + "' is not " + expected);
        target = *std::move(value);
    };
    return app.add_option_function<std::string>(name, read, help);
}

std::string Utf8FromName(const char16_t (&name)[std::size(FontSpec{}.FaceName)]) {
    const std::u16string_view whole(name, std::size(name));
    const std::u16string_view text = whole.substr(0, whole.find(u'\0'));
    std::string result;
    utf8::utf16to8(text.begin(), text.end(), std::back_inserter(result));
    return result;
}

/// Sets the font, and says so where another one stands in for it.
void SetFont(IKVT_CaptionFx& title, const RenderRequest& request) {
    FontSpec font{};
    title.GetCharFont(kDefaults, kDefaults, &font);
    std::fill(std::begin(font.FaceName), std::end(font.FaceName), u'\0');
    request.fontName.copy(font.FaceName, std::size(font.FaceName) - 1);
    font.Size = request.fontSize;
    font.Bold = request.bold ? 1 : 0;
    font.Italic = request.italic ? 1 : 0;
    title.SetDefaultFont(&font);

    FontSpec used{};
    title.GetCharFont(kDefaults, kDefaults, &used);
    if (!std::equal(std::begin(font.FaceName), std::end(font.FaceName), std::begin(used.FaceName)))
        PrintLine("note: font '" + Utf8FromName(font.FaceName) + "' is not installed; '" + Utf8FromName(used.FaceName) +
                  "' stands in for it");
}

void SetFaceColor(IKVT_CaptionFx& title, Rgb color) {
    MetaFace face{};
    title.GetCharFace(kDefaults, kDefaults, &face);
    face.Color1 = face.Color2 =
        static_cast<uint32_t>(color.blue) << 16 | static_cast<uint32_t>(color.green) << 8 | color.red;
    title.SetDefaultFace(&face);
}

void SetFrame(IKVT_CaptionFx& title, const RenderRequest& request) {
    TitleRenderSettings settings{};
    title.GetRenderSettings(&settings);
    settings.AntialiasMode = 0;
    settings.DestinationAlpha = request.background ? 0 : 1;
    settings.Width = request.frame.width;
    settings.Height = request.frame.height;
    settings.ClipRect = {0, 0, request.frame.width, request.frame.height};
    title.SetRenderSettings(&settings);
}

int32_t AddString(IKVT_CaptionFx& title, const RenderRequest& request, Position corner) {
    StringSpec settings{};
    title.GetStringSettings(kDefaults, &settings);
    settings.Left = corner.x;
    settings.Top = corner.y;
    if (request.effect) {
        std::fill(std::begin(settings.PathID), std::end(settings.PathID), '\0');
        request.effect->copy(settings.PathID, std::size(settings.PathID) - 1);
    }
    if (request.progress) settings.PathProgress = *request.progress;
    title.SetDefaultString(&settings);

    const int32_t string = title.AddString();
    const int32_t count = string < 0 ? string : title.InsertText(string, 0, request.text.c_str());
    if (count < 0) throw std::bad_alloc();
    return string;
}

/// Upper left corner that puts the text into the middle of the frame. Only the library knows how large the text is, so
/// it is laid out once to be measured. Whole pixels, since a glyph between two pixels is a little softer.
Position CentredCorner(IKVT_CaptionFx& title, const RenderRequest& request) {
    const int32_t string = AddString(title, request, {0.0F, 0.0F});
    TitleRectF rect{};
    title.GetStringRect(string, &rect);
    title.RemoveAllStrings();
    return {std::floor((static_cast<float>(request.frame.width) - rect.width) / 2.0F),
            std::floor((static_cast<float>(request.frame.height) - rect.height) / 2.0F)};
}

void AddText(IKVT_CaptionFx& title, const RenderRequest& request) {
    SetFont(title, request);
    if (request.faceColor) SetFaceColor(title, *request.faceColor);
    if (request.position) {
        AddString(title, request, *request.position);
        return;
    }
    ParagraphSpec paragraph{};
    title.GetCharParagraph(kDefaults, kDefaults, &paragraph);
    paragraph.Align = kAlignCentre;
    title.SetDefaultParagraph(&paragraph);
    AddString(title, request, CentredCorner(title, request));
}

uint32_t GroundPixel(const std::optional<Rgb>& background) {
    constexpr uint32_t kOpaque = 0xFF000000;
    if (!background) return 0;
    return kOpaque | static_cast<uint32_t>(background->red) << 16 | static_cast<uint32_t>(background->green) << 8 |
           background->blue;
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
    SetFrame(*title, request);
    AddText(*title, request);

    const uint32_t ground = GroundPixel(request.background);
    const size_t pixelCount = static_cast<size_t>(request.frame.width) * static_cast<size_t>(request.frame.height);
    std::vector<uint32_t> pixels(pixelCount, ground);
    if (title->RenderFrame(pixels.data(), request.time) != kTitleOk) throw std::bad_alloc();

    // Not the dirty rectangle: it keeps a rim around text that left no ink.
    if (std::all_of(pixels.begin(), pixels.end(), [ground](uint32_t pixel) { return pixel == ground; }))
        PrintLine("note: nothing was drawn");
    WritePng(request.output, pixels, request.frame.width, request.frame.height);
}

}  // namespace captionfx
