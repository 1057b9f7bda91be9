// A title of which everything is chosen by a row of numbers: the same numbers give the same title on another road.
#pragma once

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "host/title_object.h"
#include "paths/path_catalog.h"
#include "support/plain_platform.h"

namespace captionfx::test {

/// The next number of a row, 0 behind its end.
using Numbers = std::function<uint32_t()>;

/// One to three strings of two styles each, every effect, every setting; small frames.
class ChosenTitle {
public:
    ChosenTitle(Numbers numbers, bool isPlain) : random_(std::move(numbers)), platform_(isPlain) {
        SetOutput();
        const int32_t strings = 1 + Below(3);
        for (int32_t i = 0; i < strings; ++i) AddString();
    }

    /// Several frames, one after the other, so that what is kept between them counts too.
    std::vector<uint32_t> Frames() {
        std::vector<uint32_t> all;
        constexpr int32_t kFrames = 5;
        for (int32_t frame = 0; frame < kFrames; ++frame) {
            const bool isStill = Below(3) == 0;  // what does not move is kept in a form of its own
            for (MetaString& string : title_.Strings()) {
                if (!isStill) string.PathProgress = frame == kFrames - 1 ? 1.0F : Share() * 1.2F;
            }
            if (!isStill && Below(4) == 0) SetOutput();
            std::vector<uint32_t> pixels(static_cast<size_t>(settings_.Width) * static_cast<size_t>(settings_.Height));
            const uint32_t alpha = settings_.DestinationAlpha != 0 && Below(2) == 0 ? 0 : 0xFF000000U;
            uint32_t noise = random_();
            for (uint32_t& pixel : pixels) pixel = (noise = noise * 1664525U + 1013904223U) | alpha;
            all.push_back(static_cast<uint32_t>(title_.RenderFrame(pixels.data(), 0)));
            TitleRect touched{};
            title_.GetFrameDirtyRect(&touched);
            all.insert(all.end(), pixels.begin(), pixels.end());
            for (const int32_t side : {touched.left, touched.top, touched.right, touched.bottom})
                all.push_back(static_cast<uint32_t>(side));
        }
        return all;
    }

    [[nodiscard]] std::string Effects() {
        std::string names;
        for (const MetaString& string : title_.Strings()) names += std::string(TextOf(string.PathID)) + ' ';
        return names;
    }

private:
    int32_t Below(int32_t end) { return static_cast<int32_t>(random_() % static_cast<uint32_t>(end)); }
    float Share() { return static_cast<float>(Below(10001)) / 10000; }
    template <class Value>
    Value OneOf(std::initializer_list<Value> values) {
        return values.begin()[Below(static_cast<int32_t>(values.size()))];
    }

    void SetOutput() {
        title_.GetRenderSettings(&settings_);
        settings_.AntialiasMode = Below(4);
        settings_.PixelFormat = Below(4) == 0 ? 1 : 0;
        settings_.PostFilter = Below(6) == 0 ? 1 : 0;
        settings_.DestinationAlpha = Below(2);
        settings_.Width = 60 + Below(90);
        settings_.Height = 40 + Below(70);
        settings_.ScaleX = 0.5F + Share();
        settings_.ScaleY = Below(2) == 0 ? settings_.ScaleX : 0.5F + Share();
        settings_.ClipRect = {0, 0, settings_.Width, settings_.Height};
        if (Below(3) == 0) settings_.ClipRect = {Below(30), Below(20), 40 + Below(60), 30 + Below(60)};
        settings_.GlyphCacheEnabled = Below(2);
        settings_.MaxThreads = OneOf({1, 1, 3});
        title_.SetRenderSettings(&settings_);
    }

    /// Of all colours, and of those that titles mostly have: their channels are equal or 0.
    uint32_t Color() {
        return OneOf<uint32_t>({random_() & 0xFFFFFFU, 0xFFFFFF, 0, 0x808080, 0x0000FF, 0x00FFFF, 0xC000C0});
    }

    /// Flat more often than not, and then also of the colours that round badly.
    template <class Style>
    void Fill(Style& style) {
        style.Color1 = Color();
        style.Color2 = Below(3) == 0 ? Color() : style.Color1;
        style.GradType = Below(9);
        style.Alpha = OneOf({255, 255, 1, 128, Below(256)});
        style.BlurRadius = OneOf({0, 0, 1, Below(12)});
    }

    void SetStyles() {
        FontSpec font{};
        const std::u16string_view name =
            OneOf<std::u16string_view>({u"DejaVu Sans", u"DejaVu Serif", u"Liberation Sans"});
        name.copy(font.FaceName, name.size());
        font.Size = 6 + 40 * Share();
        font.Bold = Below(2);
        font.Italic = Below(2);
        title_.SetDefaultFont(&font);
        MetaFace face{};
        face.Enable = Below(8) == 0 ? 0 : 1;
        Fill(face);
        title_.SetDefaultFace(&face);
        MetaBorder border{};
        border.Enable = Below(3) == 0 ? 0 : 1;
        border.Size = Below(8) - 1;
        Fill(border);
        title_.SetDefaultBorder(&border);
        MetaShadow shadow{};
        shadow.EnableFace = Below(2);
        shadow.EnableBorder = Below(2);
        Fill(shadow);
        shadow.OffsetX = (Share() - 0.5F) * 16;
        shadow.OffsetY = Below(4) == 0 ? 0 : (Share() - 0.5F) * 16;
        shadow.Height = Below(2);
        title_.SetDefaultShadow(&shadow);
        const CharSpacing spacing{.WidthScale = OneOf({1.0F, 0.7F, 1.6F}), .Spacing = (Share() - 0.6F) * 6};
        title_.SetDefaultCharSpacing(&spacing);
    }

    void AddString() {
        SetStyles();
        StringSpec string{};
        string.Left = (Share() - 0.2F) * 80;
        string.Top = (Share() - 0.2F) * 60;
        string.WidthLimit = Below(2) == 0 ? 1e9F : 40 + 60 * Share();
        string.RotateDegree = Below(3) == 0 ? 360 * Share() : 0;
        string.Vertical = Below(5) == 0 ? 1 : 0;
        SetText(string.PathID,
                PathCatalog()[static_cast<size_t>(Below(static_cast<int32_t>(PathCatalog().size())))].PathName);
        title_.SetDefaultString(&string);
        const int32_t index = title_.AddString();
        static constexpr std::u16string_view kLetters = u"AWgjst.,\u00c4fi \u00e9%";
        for (int32_t run = 0; run < 2; ++run) {
            std::u16string text;
            for (int32_t i = 0; i < 5; ++i)
                text += kLetters[static_cast<size_t>(Below(static_cast<int32_t>(kLetters.size())))];
            title_.InsertText(index, title_.GetCharCount(index), text.c_str());
            SetStyles();
        }
    }

    Numbers random_;
    RoadPlatform platform_;
    CCaptionFx title_{platform_};
    TitleRenderSettings settings_{};
};

}  // namespace captionfx::test
