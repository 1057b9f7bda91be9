// Frames on several threads are those of one, to the byte.
#include <thread>

#include <gtest/gtest.h>

#include "paths/path_catalog.h"
#include "paths/path_random.h"
#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

constexpr int32_t kWidth = 120, kHeight = 90;

/// An effect that draws random numbers and transforms each character in its own way.
struct Restless final : CPathBase {
    int32_t CalcCharacter(int32_t pass, int32_t index, float progress, CharPlacement* placement) override {
        CPathBase::CalcCharacter(pass, index, progress, placement);
        placement->X += static_cast<float>(NextPathRandom() % 7) * 0.37F;
        if (index % 3 != 0) placement->Rotation = static_cast<float>(index * 17) * progress;
        placement->ScaleX = 0.5F + static_cast<float>(index % 4) * 0.25F;
        placement->Alpha = static_cast<uint8_t>(90 + index * 31);
        return 1;
    }
};

struct Setting {
    int32_t AntialiasMode, GlyphCacheEnabled, PostFilter, DestinationAlpha;
    bool IsTransformed;
};

/// A title of three strings, turned, over each other and partly outside.
class Crowd {
public:
    Crowd(const Setting& setting, int32_t maxThreads) : setting_(setting) {
        owner_.ChangeSettings([&](TitleRenderSettings& s) {
            s.Width = s.ClipRect.right = kWidth;
            s.Height = s.ClipRect.bottom = kHeight;
            s.MaxThreads = maxThreads;
            s.AntialiasMode = setting.AntialiasMode;
            s.GlyphCacheEnabled = setting.GlyphCacheEnabled;
            s.PostFilter = setting.PostFilter;
            s.DestinationAlpha = setting.DestinationAlpha;
        });
        const FontSpec font = Font(u"Box", 20);
        owner_.Title.SetDefaultFont(&font);
        const MetaBorder border{1, 4, 255, 0xFF00, 4, 200, 3};
        owner_.Title.SetDefaultBorder(&border);
        for (int32_t i = 0; i < 3; ++i) {
            owner_.ChangeDefaultString([&](StringSpec& string) {
                string.WidthLimit = 100;
                string.RotateDegree = static_cast<float>(i * 8);
            });
            owner_.Add(u"abcdefgh ijk\r\nl\u4e00m", static_cast<float>(i * 9), static_cast<float>(i * 13) - 6.5F);
        }
    }

    void SetEffect(const char* name) {
        for (int32_t i = 0; i < 3; ++i) {
            SetText(owner_.String(i).PathID, name);
            owner_.String(i).PathChanged = 1;
        }
    }

    std::vector<uint32_t> Frames() {
        std::vector<uint32_t> frames;
        for (const float progress : {0.3F, 0.8F, 1.0F, 1.0F}) {
            for (int32_t i = 0; i < 3; ++i) {
                owner_.String(i).PathProgress = progress;
                if (setting_.IsTransformed) owner_.Bind(i, std::make_unique<Restless>());
            }
            std::vector<uint32_t> frame(static_cast<size_t>(kWidth) * kHeight, 0xFF204060);
            EXPECT_EQ(owner_.Title.RenderFrame(frame.data(), 0), kTitleOk);
            frames.insert(frames.end(), frame.begin(), frame.end());
        }
        return frames;
    }

private:
    const Setting& setting_;
    TestTitle owner_{FakePlatformOptions{.Processors = 2}};
};

TEST(ThreadedFrameTest, EveryThreadCountGivesTheSameBytes) {
    for (int32_t mode = 0; mode < 4; ++mode) {
        for (uint32_t bits = 0; bits < 16; ++bits) {
            const auto bit = [&](uint32_t n) { return static_cast<int32_t>(bits >> n & 1U); };
            const Setting setting{mode, bit(0), bit(1), bit(2), bit(3) != 0};
            const std::vector<uint32_t> expected = Crowd(setting, 1).Frames();
            for (const int32_t threads : {0, 2, 3, 8}) {
                ASSERT_EQ(Crowd(setting, threads).Frames(), expected)
                    << threads << " threads, mode " << mode << ", bits " << bits;
            }
        }
    }
}

TEST(ThreadedFrameTest, EveryEffectIsTheSameOnFourThreads) {
    const auto framesOf = [](const char* name, int32_t maxThreads) {
        Crowd crowd({.AntialiasMode = 1,
                     .GlyphCacheEnabled = 1,
                     .PostFilter = 0,
                     .DestinationAlpha = 1,
                     .IsTransformed = false},
                    maxThreads);
        crowd.SetEffect(name);
        return crowd.Frames();
    };
    for (const PathCatalogEntry& row : PathCatalog()) {
        EXPECT_EQ(framesOf(row.PathName, 1), framesOf(row.PathName, 4)) << row.PathName;
    }
}

TEST(ThreadedFrameTest, TwoTitlesOnTwoThreads) {
    const Setting setting{1, 0, 0, 1, true};
    const std::vector<uint32_t> expected = Crowd(setting, 1).Frames();
    const auto draw = [&] {
        for (int i = 0; i < 3; ++i) EXPECT_EQ(Crowd(setting, 8).Frames(), expected);
    };
    std::thread other(draw);
    draw();
    other.join();
}

TEST(ThreadedFrameTest, ManyThreadsAreNotMadeForFewTasks) {
    const Setting setting{1, 1, 0, 1, false};
    const std::vector<uint32_t> expected = Crowd(setting, 1).Frames();
    EXPECT_EQ(Crowd(setting, 2147483647).Frames(), expected);
    EXPECT_EQ(Crowd(setting, -5).Frames(), expected);
}

}  // namespace
}  // namespace captionfx::test
