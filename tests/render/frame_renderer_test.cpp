// Frames: what is drawn where, what is kept, what is refused. The box of "Box" at size 64 covers (0, 24) to (24, 56) of
// a string at (0, 0) drawn without a leading: its character stands at y = 8, and its box 16 below.
#include "render/frame_renderer.h"

#include <utility>

#include <gtest/gtest.h>

#include "render/border.h"
#include "render/pixel.h"
#include "render/rect.h"
#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

constexpr int32_t kWidth = 96, kHeight = 72;
using Pixels = std::vector<uint32_t>;

struct FrameRendererTest : testing::Test {
    FrameRendererTest() {
        owner.ChangeSettings([](TitleRenderSettings& s) {
            s.Width = kWidth;
            s.Height = kHeight;
            s.ClipRect = {0, 0, kWidth, kHeight};
            s.DestinationAlpha = 1;
        });
    }
    Pixels Frame(float time = 0, uint32_t ground = 0) {
        Pixels pixels(kWidth * kHeight, ground);
        EXPECT_EQ(owner.Title.RenderFrame(pixels.data(), time), kTitleOk);
        return pixels;
    }
    static uint32_t At(const Pixels& pixels, int32_t x, int32_t y) {
        return pixels[static_cast<size_t>(y * kWidth + x)];
    }
    /// The rectangle of the pixels with alpha, as left,top-right,bottom, right and bottom outside.
    static std::string Ink(const Pixels& pixels) {
        TitleRect ink{};
        for (int32_t y = 0; y < kHeight; ++y) {
            for (int32_t x = 0; x < kWidth; ++x) {
                if (AlphaOf(At(pixels, x, y)) != 0) ink = Union(ink, {x, y, x + 1, y + 1});
            }
        }
        return Text(ink);
    }
    std::string Dirty() {
        TitleRect rect{};
        EXPECT_EQ(owner.Title.GetFrameDirtyRect(&rect), kTitleOk);
        return Text(rect);
    }
    static std::string Text(const TitleRect& r) {
        return std::to_string(r.left) + ',' + std::to_string(r.top) + '-' + std::to_string(r.right) + ',' +
               std::to_string(r.bottom);
    }
    void SetEffect(const char* name, float progress) {
        owner.ChangeDefaultString([&](StringSpec& string) {
            SetText(string.PathID, name);
            string.PathProgress = progress;
        });
    }
    TestTitle owner;
};

TEST_F(FrameRendererTest, RefusesNothingToDrawOnAndDrawsNothingOnNoFrame) {
    EXPECT_EQ(owner.Title.RenderFrame(nullptr, 0), kTitleInvalidArgument);
    owner.Add(u"a", 10, 2);
    for (const auto& size : {std::pair{0, 72}, {96, -1}, {-2147483647, -2147483647}}) {
        owner.ChangeSettings([&](TitleRenderSettings& s) { std::tie(s.Width, s.Height) = size; });
        EXPECT_EQ(Frame(0, 5), Pixels(kWidth * kHeight, 5));
    }
    owner.ChangeSettings([](TitleRenderSettings& s) {
        s.Width = kWidth;
        s.Height = kHeight;
        s.ClipRect = {96, 0, 200, 72};
    });
    EXPECT_EQ(Frame(0, 5), Pixels(kWidth * kHeight, 5)) << "the clip rectangle misses the frame";
    EXPECT_EQ(Dirty(), "0,0-0,0");
    EXPECT_EQ(owner.String().GlyphLayersList[0].DirtyMask, 0) << "cached layers are built all the same";
    EXPECT_EQ(owner.Title.RenderFrame(nullptr, 0), kTitleInvalidArgument);
}

TEST_F(FrameRendererTest, MemoryThatCannotBeHad) {
    owner.Add(u"a", 10, 2);
    owner.Add(u"b", 50, 2);
    owner.Platform.Memory.BlocksLeft = 1;
    Pixels pixels(kWidth * kHeight);
    EXPECT_EQ(owner.Title.RenderFrame(pixels.data(), 0), kTitleOutOfMemory);
    EXPECT_TRUE(owner.String(0).StringPlanes.Block) << "the first string keeps its planes";
    owner.Platform.Memory.BlocksLeft = 9;
    EXPECT_EQ(Ink(Frame()), "10,26-74,58") << "the title is still usable";
    owner.ChangeSettings([](TitleRenderSettings& s) { s.Width = s.Height = 2147483647; });
    EXPECT_EQ(owner.Title.RenderFrame(pixels.data(), 0), kTitleOutOfMemory);
}

TEST_F(FrameRendererTest, EffectsDecideWhatIsSeen) {
    SetEffect("PATH_FADE", 0.5F);
    owner.Add(u"a", 10, 2);
    EXPECT_EQ(AlphaOf(At(Frame(), 20, 40)), 127U);  // 254 * 128 >> 8
    for (const auto& [name, progress] :
         {std::pair{"PATH_NOEFFECT", 0.5F}, {"PATH_FADE", 0.0F}, {"PATH_NONE", 1.0F}, {"", 1.0F}}) {
        owner.Title.RemoveAllStrings();
        SetEffect(name, progress);
        owner.Add(u"a", 10, 2);
        EXPECT_EQ(Ink(Frame()), "0,0-0,0") << name;
        EXPECT_EQ(Dirty(), "0,0-2,2") << "nothing, grown by two and clipped";
    }
}

TEST_F(FrameRendererTest, AFrameAtRestIsKept) {
    owner.Add(u"a", 10, 2);
    const Pixels first = Frame();
    owner.String().GlyphLayersList[0].FreePixels();  // whoever draws again draws nothing
    EXPECT_EQ(Frame(3), first);
    EXPECT_EQ(Dirty(), "8,24-36,60");
    owner.Title.InsertText(0, 1, u"b");
    EXPECT_EQ(Ink(Frame()), "42,26-66,58") << "an edit ends it";
    owner.Title.FlushRenderCaches();
    EXPECT_EQ(Ink(Frame()), "10,26-66,58");
    owner.ChangeSettings([](TitleRenderSettings& s) { s.ClipRect.right = 50; });
    EXPECT_EQ(Ink(Frame()), "10,26-50,58");
    owner.Title.ClearString(0);
    EXPECT_EQ(Ink(Frame()), "0,0-0,0");
    owner.Title.InsertText(0, 0, u"c");
    EXPECT_EQ(Ink(Frame()), "10,26-34,58");
    owner.String().GlyphLayersList[0].FreePixels();
    owner.Title.AddString();
    EXPECT_EQ(Ink(Frame()), "0,0-0,0") << "a new string ends it";
}

TEST_F(FrameRendererTest, TheKeptFrameOfSeveralStringsHoldsTheLast) {
    owner.Add(u"a", 10, 2);
    owner.Add(u"b", 50, 2);
    EXPECT_EQ(Ink(Frame()), "10,26-74,58");
    EXPECT_EQ(Ink(Frame()), "50,26-74,58");
    EXPECT_EQ(Dirty(), "8,24-76,60");
    owner.Title.FlushRenderCaches();
    EXPECT_EQ(Ink(Frame()), "10,26-74,58");
    // It outlives frames in motion: what they drew is not kept.
    owner.String(0).PathProgress = 0.999F;
    EXPECT_EQ(Ink(Frame()), "10,26-74,58");
    owner.String(0).PathProgress = 1;
    EXPECT_EQ(Ink(Frame()), "50,26-74,58");
}

TEST_F(FrameRendererTest, CharactersThatAreNeverSeenDoNotKeepAFrameFromBeingKept) {
    for (const float stretch : {0.0F, -1.0F}) {
        owner.Title.RemoveAllStrings();
        const CharSpacing flat{.WidthScale = stretch, .Spacing = 0}, usual{.WidthScale = 1, .Spacing = 0};
        owner.Title.SetDefaultCharSpacing(&usual);
        owner.Add(u"a", 10, 2);
        owner.Title.SetDefaultCharSpacing(&flat);
        owner.Title.InsertText(0, 1, u"x");
        owner.Title.SetDefaultCharSpacing(&usual);
        owner.Add(u"b", 50, 2);
        EXPECT_EQ(Ink(Frame()), "10,26-74,58") << stretch;
        EXPECT_EQ(Ink(Frame()), "50,26-74,58") << stretch;
    }
}

TEST_F(FrameRendererTest, PlanesAreCleanForEveryFrame) {
    owner.Add(u"a", 10, 2);
    SetText(owner.String().PathID, "PATH_FADE");
    for (const float progress : {0.9F, 0.4F, 0.0F, 0.6F}) {
        owner.String().PathProgress = progress;
        const Pixels frame = Frame();
        EXPECT_EQ(AlphaOf(At(frame, 20, 40)), 254U * (static_cast<uint32_t>(progress * 255) + 1) >> 8U) << progress;
    }
    // What a string showed before it moved is gone.
    owner.String().Left = 40;
    owner.String().PathChanged = 1;
    EXPECT_EQ(Ink(Frame()), "40,26-64,58");
    owner.ChangeSettings([](TitleRenderSettings& s) { s.ClipRect = {0, 0, 50, 72}; });
    EXPECT_EQ(Ink(Frame()), "40,26-50,58");
    owner.String().Left = 12;
    owner.String().PathChanged = 1;
    EXPECT_EQ(Ink(Frame()), "12,26-36,58");
    owner.ChangeSettings([](TitleRenderSettings& s) {
        s.Width = s.Height = 16;
        s.ClipRect = {16, 16, 32, 32};
    });
    Frame();
    EXPECT_TRUE(IsEmpty(owner.String().DrawnRect)) << "the new, smaller planes hold nothing of the old rectangle";
}

TEST_F(FrameRendererTest, AFrameThatBrokeOffLeavesNothing) {
    const FontSpec tall = Font(u"Tall"), narrow = Font(u"Narrow");
    SetEffect("PATH_FADE", 0.5F);
    owner.Title.SetDefaultFont(&tall);
    owner.Add(u"a", 10, 2);
    owner.Title.SetDefaultFont(&narrow);
    owner.Title.InsertText(0, 1, u"b");
    owner.ChangeSettings([](TitleRenderSettings& s) { s.GlyphCacheEnabled = 0; });
    const Pixels whole = Frame();
    auto& families = owner.Platform.FontsOfBoxes.Families;
    auto kept = std::exchange(families, {{u"Tall", families.at(u"Tall")}});  // 'b' throws, when 'a' is drawn
    Pixels broken(kWidth * kHeight);
    EXPECT_EQ(owner.Title.RenderFrame(broken.data(), 0), kTitleFailure);
    families = std::move(kept);
    EXPECT_EQ(Frame(), whole);
}

TEST_F(FrameRendererTest, FreshLayersAreTheCachedOnes) {
    const MetaBorder border{1, 3, 255, 99, 5, 200, 2};
    owner.Title.SetDefaultBorder(&border);
    owner.ChangeDefaultString([](StringSpec& string) { string.RotateDegree = 20; });
    owner.Add(u"a\u4e00", 30.5F, 2.25F);
    const Pixels cached = Frame();
    owner.ChangeSettings([](TitleRenderSettings& s) {
        s.GlyphCacheEnabled = 0;
        s.PostFilter = 1;  // drops the kept frame
    });
    Frame();
    owner.ChangeSettings([](TitleRenderSettings& s) { s.PostFilter = 0; });
    EXPECT_EQ(Frame(), cached);
}

TEST_F(FrameRendererTest, DestinationsWithAndWithoutAlpha) {
    MetaFace half = FaceOf(255, 127);
    owner.Title.SetDefaultFace(&half);
    owner.Add(u"a", 10, 2);
    // alpha: 128 * 255 / 256 = 127; placed 127 * 65356 >> 16 = 126; red premultiplied 255 * 127 >> 8 = 126.
    const Pixels over = Frame(0, 0x80008000);
    // Premultiplied ground: 0x80 of 0, 64, 0. Alpha 126 + div255(128 * 129) = 126 + 65 = 191; green div255(64 * 129) =
    // 32; back: red 255 * 126 / 191 = 168.2, green 255 * 32 / 191 = 42.7.
    EXPECT_EQ(At(over, 20, 40), 0xBFA82B00U);
    EXPECT_EQ(Frame(0, 0x80008000), over) << "from the kept frame";
    owner.ChangeSettings([](TitleRenderSettings& s) { s.DestinationAlpha = 0; });
    // Onto an opaque ground: red 126, green 128 * 129 / 255 = 64.75.
    const Pixels opaque = Frame(0, 0xFF008000);
    EXPECT_EQ(At(opaque, 20, 40), 0xFF7E4100U);
    EXPECT_EQ(Frame(0, 0xFF008000), opaque);
    EXPECT_EQ(At(opaque, 5, 5), 0xFF008000U);
}

TEST_F(FrameRendererTest, SettingsReleaseWhatTheyInvalidate) {
    owner.Add(u"a", 10, 2);
    Frame();
    owner.ChangeSettings([](TitleRenderSettings& s) { s.MaxThreads = 4; });
    EXPECT_EQ(owner.Platform.Memory.Alive, 1);
    using S = TitleRenderSettings;
    for (const auto change :
         {+[](S& s) { --s.AntialiasMode; }, +[](S& s) { --s.PixelFormat; }, +[](S& s) { --s.Width; },
          +[](S& s) { --s.Height; }, +[](S& s) { s.ScaleX /= 2; }, +[](S& s) { s.ScaleY /= 2; }}) {
        Frame();
        owner.ChangeSettings(change);
        EXPECT_EQ(owner.Platform.Memory.Alive, 0);
    }
    EXPECT_EQ(owner.String().GlyphLayersList[0].DirtyMask, 0) << "glyph layers are the host's to flush";
    Frame();
    std::shared_ptr<const BorderKernel> before, after;
    SharedBorder().GetKernel(&before, 2, 2);
    owner.Title.FlushRenderCaches();
    SharedBorder().GetKernel(&after, 2, 2);
    EXPECT_NE(before, after);
    EXPECT_EQ(owner.Platform.Memory.Alive, 0);
    EXPECT_EQ(owner.String().GlyphLayersList[0].DirtyMask, kAllLayersDirty);
    EXPECT_EQ(owner.String().PathObject, nullptr);
    for (const auto change : {+[](S& s) { --s.PostFilter; }, +[](S& s) { --s.DestinationAlpha; }}) {
        owner.Title.FlushRenderCaches();
        Frame();
        owner.String().GlyphLayersList[0].FreePixels();  // whoever draws again draws nothing
        owner.ChangeSettings(change);
        EXPECT_EQ(Frame(0, 0xFF000000), Pixels(kWidth * kHeight, 0xFF000000)) << "the kept frame is gone";
    }
}

TEST_F(FrameRendererTest, LineEndsAreNotDrawn) {
    owner.Platform.FontsOfBoxes.Families[u"Box"].HasControlShapes = true;
    owner.Add(u"\r\n", 10, 2);
    EXPECT_EQ(Ink(Frame()), "0,0-0,0");
    owner.Title.DeleteText(0, 0, 1);
    EXPECT_EQ(Ink(Frame()), "10,26-34,58") << "a lone one is";
}

}  // namespace
}  // namespace captionfx::test
