#include "tools/sheet_text.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "tools/colors.h"

namespace captionfx {
namespace {

constexpr Rgb kTextTop{255, 255, 255}, kTextBottom{255, 176, 72};  // upside down is seen at a glance

void SetFace(IKVT_CaptionFx& title, Rgb top, Rgb bottom) {
    constexpr int32_t kTopToBottom = 1;
    const MetaFace face{.Enable = 1,
                        .Color1 = StyleColor(top),
                        .Color2 = StyleColor(bottom),
                        .GradType = kTopToBottom,
                        .Alpha = 255,
                        .BlurRadius = 0};
    title.SetDefaultFace(&face);
}

void SetShadow(IKVT_CaptionFx& title, float offset) {
    MetaShadow shadow{};
    shadow.EnableFace = 1;
    shadow.Alpha = 150;
    shadow.BlurRadius = 2;
    shadow.OffsetX = shadow.OffsetY = offset;
    title.SetDefaultShadow(&shadow);
}

TitleHandle MakeBorderlessTitle() {
    TitleHandle title = MakeTitle();
    const MetaBorder none{};
    title->SetDefaultBorder(&none);
    return title;
}

}  // namespace

LabelWriter::LabelWriter() : title_(MakeBorderlessTitle()) {
    const MetaShadow none{};
    title_->SetDefaultShadow(&none);
}

int32_t LabelWriter::Width(const std::u16string& text, const LabelStyle& style) {
    Set(style);
    return static_cast<int32_t>(std::ceil(MeasureText(*title_, text).width));
}

void LabelWriter::Write(Canvas& canvas, const TitleRect& rect, const std::u16string& text, const LabelStyle& style) {
    Set(style);
    Position corner = CentredCorner(*title_, text, {rect.right - rect.left, rect.bottom - rect.top});
    if (style.align == LabelAlign::kLeft) corner.x = 0;
    AddString(*title_, {.text = text, .effect = {}, .progress = {}}, corner);
    canvas.DrawFrame(*title_, rect);
    title_->RemoveAllStrings();
}

void LabelWriter::Set(const LabelStyle& style) {
    SetFont(*title_, {.name = u"DejaVu Sans", .size = style.size, .bold = style.bold});
    SetFace(*title_, style.color, style.color);
}

SamplePainter::SamplePainter(SheetLook look) : look_(std::move(look)), title_(MakeBorderlessTitle()) {
    SetFace(*title_, kTextTop, kTextBottom);
    AlignInTheMiddle(*title_);
    const float size = FittingSize();
    SetFontSize(size);
    SetShadow(*title_, std::max(1.0F, size / 20));
    corner_ = CentredCorner(*title_, look_.text, look_.cell);
    NoteFontSubstitute(*title_, look_.fontName);
}

bool SamplePainter::HasInk() {
    Canvas trial(look_.cell, {0, 0, 0});
    return Draw(trial, {0, 0, look_.cell.width, look_.cell.height}, {.text = look_.text, .effect = {}, .progress = {}});
}

void SamplePainter::Draw(Canvas& canvas, const TitleRect& rect, const EffectInfo& effect, float progress) {
    Draw(canvas, rect, {.text = look_.text, .effect = std::string(effect.name), .progress = progress});
}

bool SamplePainter::Draw(Canvas& canvas, const TitleRect& rect, const TextString& string) {
    AddString(*title_, string, corner_);
    const bool isSeen = canvas.DrawFrame(*title_, rect);
    title_->RemoveAllStrings();
    return isSeen;
}

void SamplePainter::SetFontSize(float size) {
    SetFont(*title_, {.name = look_.fontName, .size = size, .bold = true});
}

float SamplePainter::FittingSize() {
    constexpr float kTrial = 100, kMostWidth = 0.68F, kMostHeight = 0.5F, kLeast = 4;
    SetFontSize(kTrial);
    const TitleRectF rect = MeasureText(*title_, look_.text);
    const float wide = kMostWidth * static_cast<float>(look_.cell.width) / std::max(rect.width, 1.0F);
    const float high = kMostHeight * static_cast<float>(look_.cell.height) / std::max(rect.height, 1.0F);
    return std::max(kLeast, std::floor(kTrial * std::min(wide, high)));
}

}  // namespace captionfx
