// A whole host in one file: it makes a title of five strings, draws one frame over a ground of its own and writes it as
// a picture.
//
//     captionfx_still demo.png
//
// Reading order: main, then the strings, one function each.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <iterator>
#include <new>
#include <string_view>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/png_file.h"
#include "tools/title_handle.h"

namespace {

constexpr int32_t kWidth = 1280, kHeight = 720;
constexpr float kMargin = 88.0F;  // from the frame's edge to the text
constexpr float kNoWrap = 1e9F;

// Colours of styles hold red in the lowest byte.
constexpr uint32_t Color(uint32_t red, uint32_t green, uint32_t blue) {
    return blue << 16 | green << 8 | red;
}

constexpr uint32_t kWhite = Color(255, 255, 255), kCream = Color(255, 244, 214), kGold = Color(255, 186, 73);
constexpr uint32_t kTeal = Color(64, 205, 196), kCoral = Color(255, 122, 104), kPlum = Color(122, 46, 92);
constexpr uint32_t kNight = Color(12, 18, 40), kBlack = Color(0, 0, 0);

/// What a piece of text looks like. A style that is left out is switched off.
struct Look {
    FontSpec font{};
    MetaFace face{};
    MetaBorder border{};
    MetaShadow shadow{};
};

struct Place {
    float left, top;  // upper left corner; the scale of this frame is 1, so document units are pixels
    float rotateDeg = 0.0F;
};

FontSpec Font(std::u16string_view name, float size) {
    FontSpec font{};
    name.copy(font.FaceName, std::size(font.FaceName) - 1);
    font.CharSet = 1;  // any
    font.Size = size;
    return font;
}

MetaFace PlainFace(uint32_t color) {
    return {.Enable = 1, .Color1 = color, .Color2 = color, .GradType = 0, .Alpha = 255, .BlurRadius = 0};
}

/// The shadow of the whole glyph, face and border, blurred a little.
MetaShadow SoftShadow(float offset) {
    return {.EnableFace = 1,
            .EnableBorder = 1,
            .Color1 = kBlack,
            .Color2 = kBlack,
            .GradType = 0,
            .Alpha = 150,
            .BlurRadius = 4,
            .OffsetX = offset,
            .OffsetY = offset,
            .Height = 0};
}

/// Text gets the defaults of the moment at which it is inserted, so they are set first.
void AddText(IKVT_CaptionFx& title, const char16_t* text, const Look& look, const Place& place) {
    title.SetDefaultFont(&look.font);
    title.SetDefaultFace(&look.face);
    title.SetDefaultBorder(&look.border);
    title.SetDefaultShadow(&look.shadow);

    StringSpec settings{};
    settings.Left = place.left;
    settings.Top = place.top;
    settings.RotateDegree = place.rotateDeg;
    settings.WidthLimit = kNoWrap;
    settings.PathProgress = 1.0F;  // at rest
    constexpr std::string_view kNoEffect = "PATH_NOEFFECT";
    kNoEffect.copy(settings.PathID, std::size(settings.PathID) - 1);
    title.SetDefaultString(&settings);

    const int32_t string = title.AddString();
    title.InsertText(string, 0, text);
}

/// A gradient from cream to gold, a dark border and a soft shadow.
void AddHeadline(IKVT_CaptionFx& title) {
    Look look;
    look.font = Font(u"DejaVu Sans", 192.0F);
    look.font.Bold = 1;
    look.face = PlainFace(kCream);
    look.face.Color2 = kGold;
    look.face.GradType = 1;  // top to bottom
    // A border of size 10 is as thick as one eighth of the font's size: this one is 9.6 pixels.
    look.border = {
        .Enable = 1, .Size = 4, .Color1 = kNight, .Color2 = kNight, .GradType = 0, .Alpha = 255, .BlurRadius = 0};
    look.shadow = SoftShadow(8.0F);
    AddText(title, u"CaptionFx", look, {kMargin, 58.0F});
}

/// Another font, another style.
void AddSubtitle(IKVT_CaptionFx& title) {
    Look look;
    look.font = Font(u"Liberation Serif", 58.0F);
    look.font.Italic = 1;
    look.face = PlainFace(kWhite);
    look.shadow = SoftShadow(3.0F);
    AddText(title, u"Animated titles for video", look, {kMargin, 314.0F});
}

/// The face that is asked for has none of these characters: the library finds one that has them.
void AddEastAsianLine(IKVT_CaptionFx& title) {
    Look look;
    look.font = Font(u"DejaVu Sans", 54.0F);
    look.face = PlainFace(kTeal);
    look.shadow = SoftShadow(3.0F);
    AddText(title, u"视频字幕 · アニメーション", look, {kMargin, 388.0F});
}

/// A shadow with a height is drawn all the way along its offset, so that the letters stand out as blocks.
void AddExtrudedWord(IKVT_CaptionFx& title) {
    Look look;
    look.font = Font(u"DejaVu Sans", 120.0F);
    look.font.Bold = 1;
    look.face = PlainFace(kCoral);
    look.shadow = {.EnableFace = 1,
                   .EnableBorder = 0,
                   .Color1 = kPlum,
                   .Color2 = kPlum,
                   .GradType = 0,
                   .Alpha = 255,
                   .BlurRadius = 0,
                   .OffsetX = 14.0F,
                   .OffsetY = 14.0F,
                   .Height = 1};
    AddText(title, u"DEPTH", look, {kMargin, 514.0F});
}

/// A string turns about its upper left corner, clockwise; negative degrees lift its end.
void AddTurnedString(IKVT_CaptionFx& title) {
    Look look;
    look.font = Font(u"Liberation Serif", 76.0F);
    look.font.Bold = 1;
    look.face = PlainFace(kGold);
    look.shadow = SoftShadow(4.0F);
    AddText(title, u"at any angle", look, {796.0F, 580.0F, -14.0F});
}

void SetFrame(IKVT_CaptionFx& title) {
    TitleRenderSettings settings{};
    title.GetRenderSettings(&settings);
    settings.Width = settings.ClipRect.right = kWidth;
    settings.Height = settings.ClipRect.bottom = kHeight;
    settings.AntialiasMode = 0;     // the finest
    settings.DestinationAlpha = 0;  // the ground is opaque
    title.SetRenderSettings(&settings);
}

/// A vertical gradient. Pixels of frames, other than colours of styles, hold blue in the lowest byte.
std::vector<uint32_t> PaintGround() {
    struct Rgb {
        int32_t red, green, blue;
    };
    constexpr Rgb kTop{18, 28, 62}, kBottom{62, 36, 86};
    std::vector<uint32_t> pixels;
    pixels.reserve(static_cast<size_t>(kWidth) * kHeight);
    for (int32_t y = 0; y < kHeight; ++y) {
        const auto between = [y](int32_t top, int32_t bottom) {
            return static_cast<uint32_t>(top + (bottom - top) * y / (kHeight - 1));
        };
        const uint32_t pixel = 0xFF000000 | between(kTop.red, kBottom.red) << 16 |
                               between(kTop.green, kBottom.green) << 8 | between(kTop.blue, kBottom.blue);
        pixels.insert(pixels.end(), kWidth, pixel);
    }
    return pixels;
}

void RenderStill(const char* path) {
    const captionfx::TitleHandle title = captionfx::MakeTitle();
    SetFrame(*title);
    AddHeadline(*title);
    AddSubtitle(*title);
    AddEastAsianLine(*title);
    AddExtrudedWord(*title);
    AddTurnedString(*title);

    std::vector<uint32_t> pixels = PaintGround();
    if (title->RenderFrame(pixels.data(), 0.0F) != kTitleOk) throw std::bad_alloc();
    captionfx::WritePng(path, pixels, kWidth, kHeight);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: captionfx_still PICTURE.png\n";
        return 2;
    }
    try {
        RenderStill(argv[1]);
    } catch (const std::exception& error) {
        std::cerr << "captionfx_still: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
