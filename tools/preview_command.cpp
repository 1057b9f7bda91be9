#include "tools/preview_command.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "tools/canvas.h"
#include "tools/colors.h"
#include "tools/format.h"
#include "tools/frame_painter.h"
#include "tools/option_value.h"
#include "tools/scaled_picture.h"
#include "tools/sheet_text.h"
#include "tools/title_setup.h"
#include "tools/title_source.h"

namespace captionfx {
namespace {

constexpr Rgb kPaper{30, 33, 38}, kCellGround{74, 80, 89}, kInk{232, 230, 225};
constexpr int32_t kGap = 12, kLabelHeight = 26;
constexpr float kLabelSize = 15.0F;

/// As large as fits into the cell, in the shape of the frame.
FrameSize FitInto(FrameSize cell, FrameSize frame) {
    const double scale =
        std::min(static_cast<double>(cell.width) / frame.width, static_cast<double>(cell.height) / frame.height);
    const auto side = [&](int32_t length) { return std::max(1, static_cast<int32_t>(std::lround(length * scale))); };
    return {side(frame.width), side(frame.height)};
}

float SecondsOf(const Moment& moment, float end) {
    if (!moment.isPercent) return moment.value;
    if (end <= 0.0F && moment.value != 0.0F)
        throw std::runtime_error(
            "the title has no keyframes, so a percentage is no time: give seconds, such as --at 0,1.5s");
    constexpr float kWhole = 100.0F;
    return end * moment.value / kWhole;
}

std::u16string LabelOf(float seconds, float end) {
    const auto wide = [](float value) { return static_cast<double>(value); };
    std::string label = Format("%.2f s", wide(seconds));
    if (end > 0.0F) label += Format("  (%.0f %%)", wide(seconds / end * 100.0F));
    return {label.begin(), label.end()};
}

/// A whole frame, made small.
std::vector<uint32_t> DrawSmall(FramePainter& painter, float seconds, const PreviewRequest& request, FrameSize frame,
                                FrameSize small) {
    const auto [width, height] = frame;
    std::vector<uint32_t> pixels(static_cast<size_t>(width) * static_cast<size_t>(height),
                                 OpaquePixel(request.background.value_or(kCellGround)));
    painter.Draw(seconds, pixels);
    return ScaledPicture(pixels, frame, small);
}

}  // namespace

CLI::App* AddPreviewCommand(CLI::App& app, PreviewRequest& request) {
    CLI::App* const preview = app.add_subcommand("preview", "Draw moments of a title into one picture");
    preview->footer(
        "Percentages are of the title's duration.\n"
        "\nExamples:\n"
        "  captionfx preview title.xml -o sheet.png\n"
        "  captionfx preview title.xml --at 0,25%,50%,1s --background 203050 -o sheet.png");
    AddPath(*preview, "title", request.titleFile, "A title script, a title as XML, or subtitles")->required();
    AddValue(*preview, "--at", request.moments, &ParseMoments, "a list of times such as 0,25%,50%,1s",
             "The moments: seconds or percentages [0%,25%,50%,75%,100%]");
    AddValue(*preview, "--frame", request.frame, &ParseFrameSize, "a size such as 1280x720, sides 1 to 16384",
             "Size of the frame [that of the title, or 1280x720]");
    AddValue(*preview, "--cell", request.cell, &ParseSizeBetween<96, 2048>, "a size such as 320x180, sides 96 to 2048",
             "The most that one picture takes [320x180]");
    AddValue(*preview, "--background", request.background, &ParseColor, "a colour RRGGBB, such as 102030",
             "Colour under the title [a gray]");
    AddPath(*preview, "--style", request.style, "How subtitles look and where they stand: a script with a cue");
    AddPath(*preview, "-o,--output", request.output, "The PNG file to write")->required();
    return preview;
}

void Preview(const PreviewRequest& request) {
    TitleHandle title = MakeTitle();
    SetSourceFrame(*title, {}, request.frame, Ground::kOpaque);
    const TitleSource source = LoadTitle(*title, request.titleFile, request.style);
    const FrameSize frame = SetSourceFrame(*title, source, request.frame, Ground::kOpaque);
    const float end = source.duration;
    NoteFontSubstitutes(*title, source);
    FramePainter painter(std::move(title));

    const FrameSize small = FitInto(request.cell, frame);
    const auto count = static_cast<int32_t>(request.moments.size());
    const auto columns = static_cast<int32_t>(std::ceil(std::sqrt(static_cast<double>(count))));
    const int32_t rows = (count + columns - 1) / columns;
    const int32_t stepX = small.width + kGap, stepY = small.height + kLabelHeight + kGap;
    Canvas canvas({columns * stepX + kGap, rows * stepY + kGap}, kPaper);
    LabelWriter labels;
    for (int32_t i = 0; i < count; ++i) {
        const float seconds = SecondsOf(request.moments[static_cast<size_t>(i)], end);
        const int32_t left = kGap + i % columns * stepX, top = kGap + i / columns * stepY;
        const TitleRect cell{left, top, left + small.width, top + small.height};
        canvas.Put(cell, DrawSmall(painter, seconds, request, frame, small));
        labels.Write(canvas, {left, cell.bottom, cell.right, cell.bottom + kLabelHeight}, LabelOf(seconds, end),
                     {.color = kInk, .size = kLabelSize, .align = LabelAlign::kMiddle});
    }
    const PngImage sheet = canvas.TakeImage();
    WritePng(request.output, sheet.pixels, sheet.width, sheet.height);
}

}  // namespace captionfx
