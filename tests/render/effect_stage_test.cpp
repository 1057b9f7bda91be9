// What a frame asks of effects, with doubles in their place: passes, random numbers, transformed characters, images.
#include <algorithm>
#include <functional>
#include <new>

#include <gtest/gtest.h>

#include "paths/path_random.h"
#include "render/path_binding.h"
#include "render/pixel.h"
#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

constexpr int32_t kWidth = 96, kHeight = 72;
using Pixels = std::vector<uint32_t>;

/// An effect that does what the test says, and notes what it was asked.
struct Double final : CPathBase {
    int32_t CalcCharacter(int32_t pass, int32_t index, float progress, CharPlacement* placement) override {
        CPathBase::CalcCharacter(pass, index, progress, placement);
        if (Place) Place(pass, index, *placement);
        return 1;
    }
    int32_t ProcessImage(float progress) override {
        return Process ? Process(*this) : CPathBase::ProcessImage(progress);
    }
    int32_t GetImageBounds(TitleRect* out, const TitleRect* in) override {
        *out = Bounds(*in);
        return kTitleOk;
    }
    static constexpr auto kBoxes = &Double::boxes_;  // of any effect
    [[nodiscard]] uint32_t* Source() const { return reinterpret_cast<uint32_t*>(source_.Pixels()); }
    [[nodiscard]] uint32_t* Target() const { return reinterpret_cast<uint32_t*>(target_.Pixels()); }

    std::function<void(int32_t, int32_t, CharPlacement&)> Place;
    std::function<int32_t(Double&)> Process;
    std::function<TitleRect(const TitleRect&)> Bounds = [](const TitleRect& in) { return in; };
};

struct EffectStageTest : testing::Test {
    EffectStageTest() {
        owner.ChangeSettings([](TitleRenderSettings& s) {
            s.Width = s.ClipRect.right = kWidth;
            s.Height = s.ClipRect.bottom = kHeight;
            s.DestinationAlpha = 1;
        });
    }
    /// Binds a double to the first string in the place of the effect named: PATH_FLIP has one pass, PATH_TRANCEUP two,
    /// PATH_GLOW works on the image.
    Double& Bind(const char* name) {
        SetText(owner.String().PathID, name);
        auto made = std::make_unique<Double>();
        Double& effect = *made;
        owner.Bind(0, std::move(made));
        return effect;
    }
    Pixels Frame() {
        Pixels pixels(static_cast<size_t>(kWidth) * kHeight);
        EXPECT_EQ(owner.Title.RenderFrame(pixels.data(), 0), kTitleOk);
        return pixels;
    }
    static uint32_t At(const Pixels& pixels, int32_t x, int32_t y) {
        return pixels[static_cast<size_t>(y) * kWidth + static_cast<size_t>(x)];
    }

    TestTitle owner;
};

TEST_F(EffectStageTest, EachPassWalksTheCharactersWithTheSameRandomNumbers) {
    owner.Add(u"a\r\nb");
    for (const auto& [name, passes] : {std::pair{"PATH_FLIP", 1}, {"PATH_TRANCEUP", 2}}) {
        std::vector<int32_t> asked;
        Bind(name).Place = [&](int32_t pass, int32_t index, CharPlacement&) {
            asked.insert(asked.end(), {pass, index, NextPathRandom()});
        };
        owner.String().PathProgress = 0.5F;
        Frame();
        // Line ends are not asked for and draw no number.
        std::vector<int32_t> expected;
        for (int32_t pass = 0; pass < passes; ++pass) {
            expected.insert(expected.end(), {pass, 0, 41, pass, 3, 18467});
        }
        EXPECT_EQ(asked, expected) << name;
    }
}

// A character is transformed by its scales and its rotation, each of which makes layers for this frame.
TEST_F(EffectStageTest, TransformedCharactersAreBuiltForTheFrame) {
    const CharSpacing wide{.WidthScale = 1.5F, .Spacing = 0};
    owner.Title.SetDefaultCharSpacing(&wide);
    owner.ChangeSettings([](TitleRenderSettings& s) { s.ScaleY = 0.5F; });
    owner.Add(u"a", 10, 4);
    owner.String().PathProgress = 0.5F;
    // At rest the box is 24 * 1.5 by 32 / 2 pixels, its top at (4 + 24) / 2 = 14.
    const struct {
        float scaleX, scaleY, rotation;
        int32_t left, top, right, bottom;
    } cases[] = {
        {1, 1, 0, 10, 14, 46, 30},
        {2, 1, 0, 10, 14, 82, 30},
        {1, 2, 0, 10, -2, 46, 30},   // upward from the base line
        {1, 1, 90, 10, 30, 26, 66},  // about the base point at (10, 30)
    };
    for (const auto& c : cases) {
        Bind("PATH_FLIP").Place = [&](int32_t, int32_t, CharPlacement& at) {
            at.ScaleX = c.scaleX;
            at.ScaleY = c.scaleY;
            at.Rotation = c.rotation;
        };
        const Pixels frame = Frame();
        for (int32_t y = 0; y < kHeight; ++y) {
            for (int32_t x = 0; x < kWidth; ++x) {
                const bool inside = x >= c.left && x < c.right && y >= c.top && y < c.bottom;
                // A pixel of grace on the rim: rotated sizes are whole but for rounding.
                const bool onRim = x >= c.left - 1 && x <= c.right && y >= c.top - 1 && y <= c.bottom &&
                                   !(x > c.left && x < c.right - 1 && y > c.top && y < c.bottom - 1);
                if (c.rotation != 0 && onRim) continue;
                ASSERT_EQ(AlphaOf(At(frame, x, y)) != 0, inside)
                    << c.scaleX << ' ' << c.scaleY << ' ' << c.rotation << " at " << x << ", " << y;
            }
        }
    }
}

TEST_F(EffectStageTest, ImageEffectsTakeTheFinishedImage) {
    const MetaFace red = FaceOf(255, 127);
    owner.Title.SetDefaultFace(&red);
    owner.Add(u"a", 10, 2);
    for (const int32_t destinationAlpha : {1, 0}) {
        for (const int32_t filter : {0, 1}) {
            owner.ChangeSettings([&](TitleRenderSettings& s) {
                s.DestinationAlpha = destinationAlpha;
                s.PostFilter = filter;
            });
            Double& effect = Bind("PATH_GLOW");
            uint32_t seen = 0;
            effect.Bounds = [](const TitleRect& in) { return TitleRect{0, in.top, in.right, in.bottom}; };
            effect.Process = [&](Double& self) {
                seen = self.Source()[40 * kWidth + 20];
                std::fill_n(self.Target(), kWidth * kHeight, 0U);
                self.Target()[40 * kWidth + 3] = 0x80FFFFFF;  // straight, inside the bounds, left of the text
                return kTitleOk;
            };
            for (int kept = 0; kept < 2; ++kept) {
                Pixels frame(static_cast<size_t>(kWidth) * kHeight, destinationAlpha != 0 ? 0 : 0xFF000000);
                owner.Title.RenderFrame(frame.data(), 0);
                const uint32_t level = destinationAlpha != 0 ? AlphaOf(At(frame, 3, 40)) : At(frame, 3, 40) & 255U;
                EXPECT_EQ(level, filter != 0 ? 64U : 128U) << "kept " << kept;
                EXPECT_EQ(AlphaOf(At(frame, 20, 40)), destinationAlpha != 0 ? 0U : 255U) << "the text gave way";
                TitleRect dirty{};
                owner.Title.GetFrameDirtyRect(&dirty);
                EXPECT_EQ(dirty.left, 0);
                EXPECT_EQ(dirty.right, 36);
            }
            EXPECT_EQ(seen, 0x7EFF0000U) << "unpremultiplied: alpha 127 * 254 / 255, full red";
        }
    }
}

TEST_F(EffectStageTest, WhatAnImageEffectWroteIsGoneInTheNextFrame) {
    owner.Add(u"a", 10, 2);
    for (const bool isOutOfMemory : {false, true}) {
        Bind("PATH_GLOW").Process = [&](Double& self) -> int32_t {
            std::fill_n(self.Target(), kWidth * kHeight, 0xFFFFFFFFU);
            if (isOutOfMemory) throw std::bad_alloc();
            return kTitleOk;
        };
        owner.String().PathProgress = 0.5F;
        Pixels pixels(static_cast<size_t>(kWidth) * kHeight);
        EXPECT_EQ(owner.Title.RenderFrame(pixels.data(), 0), isOutOfMemory ? kTitleOutOfMemory : kTitleOk);
        Bind("PATH_GLOW").Process = [](Double&) { return kTitleOk; };  // shows what the face plane holds
        owner.String().PathProgress = 0.4F;
        EXPECT_EQ(AlphaOf(At(Frame(), 10, 25)), 0U);
        EXPECT_EQ(AlphaOf(At(Frame(), 20, 40)), 254U);
    }
}

TEST_F(EffectStageTest, BindingSnapshotsTheLayoutInPixels) {
    owner.ChangeSettings([](TitleRenderSettings& s) {
        s.ScaleX = 2;
        s.ScaleY = 3;
    });
    owner.ChangeDefaultString([](StringSpec& string) { string.RotateDegree = 90; });
    owner.Add(u"a\r\nb", 10, 4);
    MetaString& string = owner.String();
    SetText(string.PathID, "PATH_FADE");
    TitleRenderSettings settings{};
    owner.Title.GetRenderSettings(&settings);
    EnsureStringPath(owner.Effects, settings, string);
    const CPathBase* const bound = string.PathObject.get();
    ASSERT_NE(bound, nullptr);
    // Turned by 90 degrees about (20, 12) the canvas of 96 by 72 spans x from 20 - 12 to 20 + 60 and y from 12 - 76
    // to 32.
    EXPECT_NEAR(bound->CanvasBounds().Left, 8, 1e-3);
    EXPECT_NEAR(bound->CanvasBounds().Right, 80, 1e-3);
    EXPECT_NEAR(bound->CanvasBounds().Top, -64, 1e-3);
    EXPECT_NEAR(bound->CanvasBounds().Bottom, 32, 1e-3);
    const std::vector<CharBox>& boxes = bound->*Double::kBoxes;
    ASSERT_EQ(boxes.size(), 4U);
    const auto equal = [](const CharBox& box, const CharBox& expected) {
        return std::memcmp(&box, &expected, sizeof box) == 0;
    };
    // b stands at y = 4 + 84 + 8 and its baseline 48 lower.
    EXPECT_TRUE(equal(boxes[3], {20, 96 * 3, 32 * 2, 72 * 3, 20, (96 + 48) * 3}));
    EXPECT_TRUE(equal(boxes[1], {0, 0, 0, 0, 0, 48 * 3})) << "a line end is nowhere";

    EnsureStringPath(owner.Effects, settings, string);
    EXPECT_EQ(string.PathObject.get(), bound) << "nothing changed";
    owner.ChangeSettings([](TitleRenderSettings& s) { s.Width = 50; });
    owner.Title.GetRenderSettings(&settings);
    EnsureStringPath(owner.Effects, settings, string);
    EXPECT_NEAR(string.PathObject->CanvasBounds().Bottom, 32, 1e-3);
    EXPECT_NEAR(string.PathObject->CanvasBounds().Top, 12 - 30, 1e-3) << "another canvas, another binding";
}

}  // namespace
}  // namespace captionfx::test
