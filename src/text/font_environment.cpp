#include "text/font_environment.h"

#include "platform/conversions.h"

namespace captionfx {
namespace {

constexpr float kSizeLimit = 1638.0F;             // 1638 / 2048 is just below 0.8
constexpr int32_t kSubstituteAscent = 1491;       // for fonts that report neither ascent nor descent
constexpr int32_t kSubstituteDescent = -431;      // as above
constexpr int32_t kBrokenHeight = 8001;           // a cell of this height or more is a broken report
constexpr int32_t kSubstituteInternalLead = 353;  // in the place of a broken one

/// Size over em, always a magnitude; a size of 0 gives a negative zero.
float SizeRatioOf(float size, float em, int32_t& status) {
    if (size >= -kSizeLimit && size <= kSizeLimit) return size > 0 ? size / em : -(size / em);
    status = kTitleFailure;
    return kSizeLimit / em;
}

}  // namespace

InstalledFonts ListInstalledFonts(FontSystem& fonts) {
    InstalledFonts installed;
    fonts.EnumerateFamilies([&](std::u16string_view family) { installed.emplace(family); });
    return installed;
}

FontSpec VetFont(FontSystem& fonts, const InstalledFonts& installed, const FontSpec& request) {
    if (installed.contains(TextOf(request.FaceName)) &&
        fonts.Realise(LogFontOf(request, ToInt32(static_cast<double>(request.Size))))->Metrics()) {
        return request;
    }
    const LogFont replacement = fonts.DefaultGuiFont();
    FontSpec vetted = request;
    SetText(vetted.FaceName, TextOf(replacement.lfFaceName));
    vetted.CharSet = replacement.lfCharSet;
    return vetted;
}

LogFont LogFontOf(const FontSpec& request, int32_t height) {
    LogFont font{};
    font.lfHeight = height;
    font.lfWeight = request.Bold != 0 ? kBoldWeight : kRegularWeight;
    font.lfItalic = static_cast<uint8_t>(request.Italic);
    font.lfCharSet = static_cast<uint8_t>(request.CharSet);
    SetText(font.lfFaceName, TextOf(request.FaceName));
    return font;
}

FontSpec FontSpecOf(const MetaFont& font) {
    FontSpec request{};
    SetText(request.FaceName, TextOf(font.LogFont.lfFaceName));
    request.CharSet = font.LogFont.lfCharSet;
    request.Size = -static_cast<float>(font.LogFont.lfHeight) * font.SizeRatio;
    request.Bold = font.LogFont.lfWeight > kRegularWeight ? 1 : 0;
    request.Italic = font.LogFont.lfItalic;
    request.Underline = font.LogFont.lfUnderline;
    request.Strikeout = font.LogFont.lfStrikeOut;
    return request;
}

int32_t MeasureFont(FontSystem& fonts, uint32_t em, float size, const LogFont& font, MetaFont& measured) {
    const std::optional<OutlineMetrics> answer = fonts.Realise(font)->Metrics();
    int32_t status = answer ? kTitleOk : kTitleFailure;
    OutlineMetrics metrics = answer.value_or(OutlineMetrics{});
    if (metrics.Ascent == 0 && metrics.Descent == 0) {
        metrics.Ascent = kSubstituteAscent;
        metrics.Descent = kSubstituteDescent;
    }
    if (metrics.Height >= kBrokenHeight) metrics.InternalLeading = kSubstituteInternalLead;

    const float ratio = SizeRatioOf(size, static_cast<float>(em), status);
    const auto scaled = [ratio](int32_t value) { return static_cast<float>(value) * ratio; };
    measured = {};
    measured.LogFont = font;
    measured.SizeRatio = ratio;
    measured.Ascent = scaled(metrics.Ascent);
    measured.Descent = scaled(metrics.Descent);
    measured.IntLead = scaled(metrics.InternalLeading);
    measured.ExtLead = scaled(metrics.ExternalLeading);
    measured.StrikeoutPos = scaled(metrics.StrikeoutPosition);
    measured.StrikeoutSize = scaled(metrics.StrikeoutSize);
    measured.UnderlinePos = scaled(metrics.UnderscorePosition);
    measured.UnderlineSize = scaled(metrics.UnderscoreSize);
    return status;
}

MetaFont MeasureFontSpec(FontSystem& fonts, uint32_t em, const FontSpec& request) {
    MetaFont measured{};
    MeasureFont(fonts, em, request.Size, LogFontOf(request, -static_cast<int32_t>(em)), measured);
    return measured;
}

}  // namespace captionfx
