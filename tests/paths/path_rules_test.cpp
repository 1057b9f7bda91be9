// Rules that hold for all effects of characters, with the exceptions and why.
#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

#include "paths/placement_rows.h"
#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity(), kNoNumber = std::numeric_limits<float>::quiet_NaN();
constexpr float kAnything[] = {kNoNumber, kInfinity, -kInfinity, 1e30F, -1e30F, 1e5F, -1e5F, -0.1F, 0, 0.4F, 1, 2.5F};

const PathScene kOneCharacter{400, 300, {100, 60, 80, 40}, {{100, 60, 80, 40, 100, 90}}};

// Exceptions, by how names begin, and why.
constexpr std::string_view kNeverAtRest[] = {"PATH_SCROLL"};  // at 1 it has left the canvas
constexpr std::string_view kSeenBelowZero[] = {
    // Alpha in proportion to the progress or its square: nothing clamps it.
    "PATH_FADE",       "PATH_HIDE",      "PATH_UNITE",      "PATH_FLIP",        "PATH_ROTATE",
    "PATH_SWIRL",      "PATH_SPIRAL",    "PATH_TRANCELEFT", "PATH_TRANCERIGHT", "PATH_TRANCEUP",
    "PATH_TRANCEDOWN", "PATH_TRANCECCW", "PATH_TRANCECW"};
constexpr std::string_view kAlphaJumps[] = {
    "PATH_NOEFFECT",                                      // there or not
    "PATH_SOLO",     "PATH_ROLLERCOASTER", "PATH_SWARM",  // characters start outside the canvas and do not fade
    "PATH_TRANCE",   "PATH_DOUBLEVISION"};                // one of two images gives way to the other

bool IsAmong(std::span<const std::string_view> beginnings, std::string_view name) {
    return std::ranges::any_of(beginnings, [&](std::string_view start) { return name.starts_with(start); });
}

/// Calls `check` with each row of an effect of characters and the effect, bound.
template <class Check>
void ForEach(const PathScene& scene, Check check) {
    for (const PathCatalogEntry& row : PathCatalog()) {
        if (row.Make == nullptr || row.ImageBased != 0) continue;
        SCOPED_TRACE(row.PathName);
        check(row, *Bound(row.Make, scene));
    }
}

/// The greatest difference between two frames: pixels, degrees, or what a scale moves in 50 pixels. A character that is
/// hidden in one of them has an alpha alone.
float Distance(const std::vector<CharPlacement>& a, const std::vector<CharPlacement>& b, bool withAlpha) {
    float distance = 0;
    for (size_t i = 0; i < a.size(); ++i) {
        if (withAlpha) distance = std::max(distance, std::abs(static_cast<float>(a[i].Alpha - b[i].Alpha)) / 2);
        if (a[i].Alpha == 0 || b[i].Alpha == 0) continue;
        distance = std::max({distance, std::abs(a[i].X - b[i].X), std::abs(a[i].Y - b[i].Y),
                             std::abs(a[i].ScaleX - b[i].ScaleX) * 50, std::abs(a[i].ScaleY - b[i].ScaleY) * 50,
                             std::abs(std::remainder(a[i].Rotation - b[i].Rotation, 360.0F))});
    }
    return distance;
}

// Each image of a character is hidden or at rest, and one is there. A wipe that just reaches the end may leave 254.
TEST(PathRulesTest, AtRestAtOne) {
    for (const PathScene& scene : {kTwoLines, kOneCharacter}) {
        const size_t count = scene.boxes.size();
        const auto rest = PlacePass(*Bound(std::make_unique<CPathBase>, scene), 0, 1, count);
        ForEach(scene, [&](const PathCatalogEntry& row, CPathBase& path) {
            if (IsAmong(kNeverAtRest, row.PathName)) return;
            std::vector<uint8_t> alphas(count);
            for (int32_t pass = 0; pass < row.PassCount; ++pass) {
                const std::vector<CharPlacement> all = PlacePass(path, pass, 1, count);
                EXPECT_LT(Distance(all, rest, false), 1e-3);
                for (size_t i = 0; i < count; ++i) alphas[i] = std::max(alphas[i], all[i].Alpha);
            }
            EXPECT_GE(std::ranges::min(alphas), 254);
        });
    }
}

TEST(PathRulesTest, HiddenUpToZero) {
    ForEach(kTwoLines, [](const PathCatalogEntry& row, CPathBase& path) {
        const auto isSeenAt = [&](float progress) {
            int alphas = 0;
            for (int32_t pass = 0; pass < row.PassCount; ++pass) {
                for (const CharPlacement& at : PlacePass(path, pass, progress, 5)) alphas += at.Alpha;
            }
            return alphas > 0;
        };
        EXPECT_FALSE(isSeenAt(0));
        EXPECT_EQ(isSeenAt(-0.01F) || isSeenAt(-0.7F), IsAmong(kSeenBelowZero, row.PathName));
    });
}

// An effect keeps nothing, and draws as many random numbers in every frame and pass.
TEST(PathRulesTest, FramesCanBeDrawnAgain) {
    ForEach(kTwoLines, [](const PathCatalogEntry& row, CPathBase& path) {
        for (int32_t pass = 0; pass < row.PassCount; ++pass) {
            const std::vector<CharPlacement> first = PlacePass(path, pass, 0.37F, 5);
            const int32_t next = NextPathRandom();
            for (const float progress : {0.01F, 0.6F, 1.0F}) {
                PlacePass(path, pass, progress, 5);
                EXPECT_EQ(NextPathRandom(), next) << progress;
            }
            EXPECT_EQ(Distance(PlacePass(path, pass, 0.37F, 5), first, true), 0);
        }
    });
}

// Of the four characters with an extent: one without may appear at once.
TEST(PathRulesTest, NothingJumps) {
    constexpr int kSteps = 400;
    ForEach(kTwoLines, [&](const PathCatalogEntry& row, CPathBase& path) {
        const bool withAlpha = !IsAmong(kAlphaJumps, row.PathName);
        for (int32_t pass = 0; pass < row.PassCount; ++pass) {
            for (int step = 1; step < kSteps; ++step) {
                // An interval that is wide for its length is halved, and that half kept which more of it lies in.
                float low = static_cast<float>(step) / kSteps, high = static_cast<float>(step + 1) / kSteps;
                auto atLow = PlacePass(path, pass, low, 4), atHigh = PlacePass(path, pass, high, 4);
                while (Distance(atLow, atHigh, withAlpha) > 1 && high - low > 1e-6F) {
                    const float middle = (low + high) / 2;
                    auto at = PlacePass(path, pass, middle, 4);
                    const bool goesLow = Distance(atLow, at, withAlpha) > Distance(at, atHigh, withAlpha);
                    (goesLow ? high : low) = middle;
                    (goesLow ? atHigh : atLow) = std::move(at);
                }
                ASSERT_LE(Distance(atLow, atHigh, withAlpha), 1) << "pass " << pass << " at " << low;
            }
        }
    });
}

// Nothing that a host sets is undefined behaviour, which the sanitizers watch for, and no frame fails.
TEST(PathRulesTest, AnyGeometryAndProgress) {
    const CharBox empty{100, 60, 0, 0, 100, 60}, huge{-1e38F, 1e38F, 3e38F, -3e38F, 1e38F, 1e38F};
    const PathScene scenes[] = {
        kTwoLines,
        kOneCharacter,
        {400, 300, {100, 60, 0, 0}, {empty, empty, empty}},
        {400, 300, {0, -50, 100, 50}, {{0, -50, 100, 50, 0, 0}}},
        {0, 0, {0, 0, 0, 0}, {{}, {}}, 30},
        {-5, std::numeric_limits<int32_t>::max(), {-1e38F, 1e38F, 3e38F, kNoNumber}, {huge, huge, empty}, kInfinity},
    };
    TestTitle owner;
    owner.ChangeSettings(
        [](TitleRenderSettings& s) { s.Width = s.Height = s.ClipRect.right = s.ClipRect.bottom = 64; });
    for (const std::u16string_view text : {u"", u"\r\n", u"ab\r\nc"}) owner.Add(text);
    std::vector<uint32_t> frame(64UL * 64);
    for (const PathScene& scene : scenes) {
        ForEach(scene, [&](const PathCatalogEntry& row, CPathBase& path) {
            for (const float progress : kAnything) {
                for (const int32_t count : {static_cast<int32_t>(scene.boxes.size()), 0}) {
                    path.SetCharCount(count);
                    for (int32_t pass = 0; pass < row.PassCount; ++pass)
                        PlacePass(path, pass, progress, scene.boxes.size());
                }
                if (&scene != scenes) continue;
                for (MetaString& string : owner.Title.Strings()) {
                    SetText(string.PathID, row.PathName);
                    string.PathChanged = 1;
                    string.PathProgress = progress;
                }
                EXPECT_EQ(owner.Title.RenderFrame(frame.data(), 0), kTitleOk) << progress;
            }
        });
    }
}

}  // namespace
}  // namespace captionfx::test
