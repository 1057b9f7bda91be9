// A title that loops for an hour of film holds no more memory than after its first minutes.
#include <cmath>
#include <malloc.h>

#include <gtest/gtest.h>

#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

constexpr int32_t kFrames = 100000, kWarm = 20000;
constexpr int32_t kWidth = 48, kHeight = 32;

/// Bytes that are allocated at the moment.
size_t InUse() {
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// The growth of memory in use between frame kWarm and the last, when `timeOf` says the progress of each.
template <class TimeOf>
int64_t GrowthOf(TimeOf timeOf) {
    TestTitle owner;
    owner.ChangeSettings([](TitleRenderSettings& s) {
        s.Width = s.ClipRect.right = kWidth;
        s.Height = s.ClipRect.bottom = kHeight;
        s.ScaleX = s.ScaleY = 0.25F;
    });
    const MetaBorder border = BorderOf(2, 0xFF);
    owner.Title.SetDefaultBorder(&border);
    const char* const effects[] = {"PATH_TWINKLE", "PATH_ROLLINGRIGHT", "PATH_GLOW"};
    for (const char* effect : effects) {
        owner.ChangeDefaultString([&](StringSpec& string) { SetText(string.PathID, effect); });
        owner.Add(u"loop");
    }
    std::vector<uint32_t> frame(static_cast<size_t>(kWidth) * kHeight);
    size_t warm = 0;
    for (int32_t i = 0; i < kFrames; ++i) {
        for (MetaString& string : owner.Title.Strings()) string.PathProgress = timeOf(i);
        EXPECT_EQ(owner.Title.RenderFrame(frame.data(), 0), kTitleOk);
        if (i == kWarm) warm = InUse();
    }
    return static_cast<int64_t>(InUse()) - static_cast<int64_t>(warm);
}

TEST(SoakTest, ALoopTakesNoMore) {
    constexpr int32_t kLoop = 125;
    EXPECT_LE(GrowthOf([](int32_t i) { return static_cast<float>(i % kLoop) / kLoop; }), 64 << 10);
}

TEST(SoakTest, CachesOfMovementsThatNeverComeBackAreBounded) {
    const auto drifting = [](int32_t i) {
        const double turns = i * 0.6180339887498949;
        return static_cast<float>(turns - std::floor(turns));
    };
    EXPECT_LE(GrowthOf(drifting), 8 << 20);
}

}  // namespace
}  // namespace captionfx::test
