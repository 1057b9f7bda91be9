// Rules that hold for all effects of characters, with the exceptions listed and why.
#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

#include <gtest/gtest.h>

#include "paths/path_stage.h"
#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity(),
                kNotANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float kAnything[] = {kNotANumber, kInfinity, -kInfinity, 1e30F, -1e30F, 1e5F, -1e5F, -0.1F, 0, 0.4F, 1, 2.5F};

const PathStage kOneCharacter{400, 300, {100, 60, 80, 40}, 0, {{100, 60, 80, 40, 100, 90}}};

struct Exception {
    std::string_view Start;  ///< of the names
    const char* Why;
};

constexpr Exception kNeverAtRest[] = {{"PATH_SCROLL", "has left the canvas at 1"}};

constexpr const char* kFades = "alpha in proportion to the progress: below 0 it wraps";
constexpr Exception kSeenBelowZero[] = {
    {"PATH_FADE", kFades},     {"PATH_HIDE", kFades},
    {"PATH_UNITE", kFades},    {"PATH_FLIP", kFades},
    {"PATH_ROTATEC", kFades},  {"PATH_SWIRL", kFades},
    {"PATH_SPIRAL", kFades},   {"PATH_TRANCEL", kFades},
    {"PATH_TRANCER", kFades},  {"PATH_TRANCEU", kFades},
    {"PATH_TRANCED", kFades},  {"PATH_TRANCECC", kFades},
    {"PATH_TRANCECW", kFades}, {"PATH_ROTATE", "alpha in proportion to the square of the progress"},
};

constexpr Exception kAlphaJumps[] = {
    {"PATH_NOEFFECT", "there or not"},
    {"PATH_SOLO", "characters do not fade: each starts outside the canvas"},
    {"PATH_ROLLERCOASTER", "likewise"},
    {"PATH_SWARM", "likewise"},
    {"PATH_TRANCE", "the ghost and the character change places"},
    {"PATH_DOUBLEVISION", "at its end the second image vanishes under the first"},
};

bool IsAmong(std::span<const Exception> list, std::string_view name) {
    return std::ranges::any_of(list, [&](const Exception& e) { return name.starts_with(e.Start); });
}

/// Calls `check` for each row of an effect of characters, with the effect bound.
template <class Check>
void ForEach(const PathStage& stage, Check check) {
    for (const PathCatalogEntry& row : PathCatalog()) {
        if (row.Make == nullptr || row.ImageBased != 0) continue;
        SCOPED_TRACE(row.PathName);
        check(row, *Bind(row.Make, stage));
    }
}

// Each image of a character is hidden or at rest, and one of them is there. A wipe that just reaches the end may leave
// 254.
TEST(PathRulesTest, AtRestAtOne) {
    for (const PathStage& stage : {kTwoLines, kOneCharacter}) {
        ForEach(stage, [&](const PathCatalogEntry& row, CPathBase& path) {
            if (IsAmong(kNeverAtRest, row.PathName)) return;
            std::vector<float> alphas(stage.Boxes.size());
            for (int32_t pass = 0; pass < row.PassCount; ++pass) {
                const std::vector<Placed> all = Pass(path, stage, pass, 1);
                for (size_t i = 0; i < all.size(); ++i) {
                    const auto [x, y, scaleX, scaleY, rotation, alpha] = all[i];
                    alphas[i] = std::max(alphas[i], alpha);
                    if (alpha == 0) continue;
                    EXPECT_NEAR(x, stage.Boxes[i].Left, 1e-3) << i;
                    EXPECT_NEAR(y, stage.Boxes[i].Top, 1e-3) << i;
                    EXPECT_NEAR(scaleX, 1, 1e-5) << i;
                    EXPECT_NEAR(scaleY, 1, 1e-5) << i;
                    EXPECT_NEAR(std::remainder(rotation, 360.0F), 0, 1e-3) << i;
                }
            }
            EXPECT_GE(std::ranges::min(alphas), 254);
        });
    }
}

TEST(PathRulesTest, HiddenUpToZero) {
    ForEach(kTwoLines, [](const PathCatalogEntry& row, CPathBase& path) {
        const auto isSeenAt = [&](float progress) {
            for (int32_t pass = 0; pass < row.PassCount; ++pass) {
                const std::vector<Placed> all = Pass(path, kTwoLines, pass, progress);
                if (std::ranges::any_of(all, [](const Placed& at) { return at[5] > 0; })) return true;
            }
            return false;
        };
        EXPECT_FALSE(isSeenAt(0));
        EXPECT_EQ(isSeenAt(-0.01F) || isSeenAt(-0.7F), IsAmong(kSeenBelowZero, row.PathName));
    });
}

// An effect keeps nothing, and draws as many random numbers in every pass and frame.
TEST(PathRulesTest, FramesCanBeDrawnAgain) {
    ForEach(kTwoLines, [](const PathCatalogEntry& row, CPathBase& path) {
        for (int32_t pass = 0; pass < row.PassCount; ++pass) {
            const std::vector<Placed> first = Pass(path, kTwoLines, pass, 0.37F);
            const int32_t next = NextPathRandom();
            for (const float progress : {0.01F, 0.6F, 1.0F}) {
                Pass(path, kTwoLines, pass, progress);
                EXPECT_EQ(NextPathRandom(), next) << progress;
            }
            EXPECT_EQ(Pass(path, kTwoLines, pass, 0.37F), first);
        }
    });
}

/// The greatest difference between two frames: pixels, degrees, or what a scale moves in 50 pixels. A character that is
/// hidden in one of them has an alpha alone.
float Distance(const std::vector<Placed>& a, const std::vector<Placed>& b, bool withAlpha) {
    float distance = 0;
    for (size_t i = 0; i < a.size(); ++i) {
        const auto differ = [&](size_t field) { return std::abs(a[i][field] - b[i][field]); };
        if (withAlpha) distance = std::max(distance, differ(5) / 2);
        if (a[i][5] == 0 || b[i][5] == 0) continue;
        const float turned = std::abs(std::remainder(a[i][4] - b[i][4], 360.0F));
        distance = std::max({distance, differ(0), differ(1), differ(2) * 50, differ(3) * 50, turned});
    }
    return distance;
}

// A character without a width may appear at once: the stage has none.
TEST(PathRulesTest, NothingJumps) {
    constexpr int kSteps = 400;
    PathStage stage = kTwoLines;
    stage.Boxes.pop_back();
    ForEach(stage, [&](const PathCatalogEntry& row, CPathBase& path) {
        const bool withAlpha = !IsAmong(kAlphaJumps, row.PathName);
        for (int32_t pass = 0; pass < row.PassCount; ++pass) {
            for (int step = 1; step < kSteps; ++step) {
                // What is far apart is halved, on the side where more of it remains.
                float low = static_cast<float>(step) / kSteps, high = static_cast<float>(step + 1) / kSteps;
                auto atLow = Pass(path, stage, pass, low), atHigh = Pass(path, stage, pass, high);
                while (Distance(atLow, atHigh, withAlpha) > 1 && high - low > 1e-6F) {
                    const float middle = (low + high) / 2;
                    auto atMiddle = Pass(path, stage, pass, middle);
                    const bool goesLow = Distance(atLow, atMiddle, withAlpha) > Distance(atMiddle, atHigh, withAlpha);
                    (goesLow ? high : low) = middle;
                    (goesLow ? atHigh : atLow) = std::move(atMiddle);
                }
                ASSERT_LE(Distance(atLow, atHigh, withAlpha), 1) << "pass " << pass << " at " << low;
            }
        }
    });
}

// Nothing that a host sets is undefined behaviour, which the sanitizers watch for.
TEST(PathRulesTest, AnyGeometryAndProgress) {
    const CharBox empty{100, 60, 0, 0, 100, 60}, huge{-1e38F, 1e38F, 3e38F, -3e38F, 1e38F, 1e38F};
    const PathStage stages[] = {
        kTwoLines,
        kOneCharacter,
        {400, 300, {100, 60, 0, 0}, 0, {empty, empty, empty}},
        {400, 300, {0, -50, 100, 50}, 0, {{0, -50, 100, 50, 0, 0}}},
        {0, 0, {0, 0, 0, 0}, 30, {{}, {}}},
        {-5, std::numeric_limits<int32_t>::max(), {-1e38F, 1e38F, 3e38F, kNotANumber}, kInfinity, {huge, huge, empty}},
    };
    for (const PathStage& stage : stages) {
        ForEach(stage, [&](const PathCatalogEntry& row, CPathBase& path) {
            for (const float progress : kAnything) {
                for (int32_t pass = 0; pass < row.PassCount; ++pass) {
                    EXPECT_EQ(Pass(path, stage, pass, progress).size(), stage.Boxes.size());
                }
            }
        });
    }
}

TEST(PathRulesTest, AnyProgressCanBeDrawn) {
    for (const std::u16string_view text : {u"", u"\r\n", u"ab\r\nc"}) {
        TestTitle owner;
        owner.ChangeSettings(
            [](TitleRenderSettings& s) { s.Width = s.ClipRect.right = s.Height = s.ClipRect.bottom = 64; });
        owner.Add(text);
        std::vector<uint32_t> frame(64 * 64);
        ForEach(kOneCharacter, [&](const PathCatalogEntry& row, CPathBase&) {
            SetText(owner.String().PathID, row.PathName);
            owner.String().PathChanged = 1;
            for (const float progress : kAnything) {
                owner.String().PathProgress = progress;
                EXPECT_EQ(owner.Title.RenderFrame(frame.data(), 0), kTitleOk) << progress;
            }
        });
    }
}

}  // namespace
}  // namespace captionfx::test
