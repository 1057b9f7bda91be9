#include "tools/show_command.h"

#include <cmath>
#include <functional>
#include <iostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/format.h"
#include "tools/option_value.h"
#include "tools/text_encoding.h"
#include "tools/title_file.h"
#include "tools/title_handle.h"
#include "tools/title_source.h"

namespace captionfx {
namespace {

double Wide(float value) {
    return static_cast<double>(value);
}

std::string ColorName(uint32_t color) {
    return Format("#%02X%02X%02X", color & 0xFFU, color >> 8U & 0xFFU, color >> 16U & 0xFFU);
}

/// "#FFCC00", or both ends of a gradient with its kind.
std::string FillOf(uint32_t color1, uint32_t color2, int32_t gradient, int32_t alpha, int32_t blur) {
    std::string fill = ColorName(color1);
    if (color2 != color1) fill += " to " + ColorName(color2) + Format(", gradient %d", gradient);
    constexpr int32_t kOpaque = 255;
    if (alpha != kOpaque) fill += Format(", alpha %d", alpha);
    if (blur != 0) fill += Format(", blur %d", blur);
    return fill;
}

std::string RectOf(const TitleRectF& rect) {
    return Format("%g x %g at (%g, %g)", Wide(rect.width), Wide(rect.height), Wide(rect.x), Wide(rect.y));
}

/// One string of a title, with what its file alone knows.
class StringReport {
public:
    StringReport(IKVT_CaptionFx& title, int32_t index, const FileString& file)
        : title_(title), index_(index), file_(file), count_(title.GetCharCount(index)) {
        text_.resize(static_cast<size_t>(count_) + 1);
        title.GetStringText(index, text_.data());
        text_.pop_back();
    }

    void Print() const {
        PrintHead();
        PrintLines();
        PrintRuns("font", [&](int32_t i) { return FontOf(i); });
        PrintRuns("face", [&](int32_t i) { return FaceOf(i); });
        PrintRuns("border", [&](int32_t i) { return BorderOf(i); });
        PrintRuns("shadow", [&](int32_t i) { return ShadowOf(i); });
        for (const Keyframe& key : file_.keys) {
            std::cout << Format("  key       %g s: ", Wide(key.time)) << key.effect
                      << Format(" at %g\n", Wide(key.progress));
        }
    }

private:
    void PrintHead() const {
        TitleRectF rect{};
        StringSpec settings{};
        title_.GetStringRect(index_, &rect);
        title_.GetStringSettings(index_, &settings);
        std::cout << Format("string %d: ", index_) << RectOf(rect)
                  << Format(", %d characters, %d lines, %d paragraphs\n", count_, title_.GetLineCount(index_),
                            title_.GetParagraphCount(index_));
        std::cout << "  text      " << QuotedLine(text_) << '\n';
        std::cout << Format("  settings  rotation %g, %s", Wide(settings.RotateDegree),
                            settings.Vertical != 0 ? "vertical" : "horizontal");
        constexpr float kNoLimit = 1e9F;
        if (settings.WidthLimit < kNoLimit) std::cout << Format(", wrapped at %g", Wide(settings.WidthLimit));
        std::cout << ", effect " << (settings.PathID[0] == '\0' ? "none" : settings.PathID)
                  << Format(" at %g\n", Wide(settings.PathProgress));
    }

    /// A line's characters are those whose place lies in it: the interface tells no more, and this is what a viewer
    /// sees.
    void PrintLines() const {
        for (int32_t line = 0; line < title_.GetLineCount(index_); ++line) {
            TitleRectF rect{};
            title_.GetLineRect(index_, line, &rect);
            std::cout << Format("  line %-4d ", line) << RectOf(rect) << '\n';
        }
    }

    [[nodiscard]] std::string FontOf(int32_t i) const {
        FontSpec font{};
        title_.GetCharFont(index_, i, &font);
        const std::string name = Utf8FromField(font.FaceName);
        const std::string& saved = file_.faceNames[static_cast<size_t>(i)];
        constexpr float kHundredths = 100.0F;  // files keep sizes to about a thousandth
        return name + Format(" %g", Wide(std::round(font.Size * kHundredths) / kHundredths)) +
               (font.Bold != 0 ? " bold" : "") + (font.Italic != 0 ? " italic" : "") +
               (saved == name ? "" : " (stands in for '" + saved + "')");
    }
    [[nodiscard]] std::string FaceOf(int32_t i) const {
        MetaFace face{};
        title_.GetCharFace(index_, i, &face);
        return face.Enable == 0 ? "" : FillOf(face.Color1, face.Color2, face.GradType, face.Alpha, face.BlurRadius);
    }
    [[nodiscard]] std::string BorderOf(int32_t i) const {
        MetaBorder border{};
        title_.GetCharBorder(index_, i, &border);
        if (border.Enable == 0) return "";
        return Format("size %d, ", border.Size) +
               FillOf(border.Color1, border.Color2, border.GradType, border.Alpha, border.BlurRadius);
    }
    [[nodiscard]] std::string ShadowOf(int32_t i) const {
        MetaShadow shadow{};
        title_.GetCharShadow(index_, i, &shadow);
        if (shadow.EnableFace == 0 && shadow.EnableBorder == 0) return "";
        return Format("%s by (%g, %g), ", shadow.Height != 0 ? "extruded" : "cast", Wide(shadow.OffsetX),
                      Wide(shadow.OffsetY)) +
               FillOf(shadow.Color1, shadow.Color2, shadow.GradType, shadow.Alpha, shadow.BlurRadius);
    }

    /// One line for each run of characters of the same style; a style that is off, which is empty, has none.
    void PrintRuns(const char* kind, const std::function<std::string(int32_t)>& styleOf) const {
        for (int32_t first = 0; first < count_;) {
            const std::string style = styleOf(first);
            int32_t end = first + 1;
            while (end < count_ && styleOf(end) == style) ++end;
            if (!style.empty())
                std::cout << Format("  %-9s ", kind) << style << Format(", characters %d to %d\n", first, end - 1);
            first = end;
        }
    }

    IKVT_CaptionFx& title_;
    int32_t index_;
    const FileString& file_;
    int32_t count_;
    std::u16string text_;
};

}  // namespace

CLI::App* AddShowCommand(CLI::App& app, ShowRequest& request) {
    CLI::App* const show = app.add_subcommand("show", "Show what a title file holds");
    show->footer("Example:\n  captionfx show title.xml");
    AddPath(*show, "title", request.titleFile, "A title script, a title as XML, or subtitles")->required();
    return show;
}

void Show(const ShowRequest& request) {
    const TitleHandle title = MakeTitle();
    SetSourceFrame(*title, {}, {}, Ground::kTransparent);
    const TitleSource source = LoadTitle(*title, request.titleFile);
    NoteFontSubstitutes(*title, source);
    const std::vector<FileString>& strings = source.strings;
    std::cout << request.titleFile.string() << ": " << strings.size() << (strings.size() == 1 ? " string" : " strings");
    if (source.frame) std::cout << Format(", frame %dx%d", source.frame->width, source.frame->height);
    if (source.scale != 1.0F) std::cout << Format(", scale %g", Wide(source.scale));
    if (source.duration > 0.0F) std::cout << Format(", %g s", Wide(source.duration));
    std::cout << '\n';
    for (size_t i = 0; i < strings.size(); ++i) StringReport(*title, static_cast<int32_t>(i), strings[i]).Print();
}

}  // namespace captionfx
