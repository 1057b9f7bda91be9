// Effects bound to round numbers, the frames that they give, and rows of name, pass, index, progress and placement.
#pragma once

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "paths/path_catalog.h"
#include "paths/path_random.h"

namespace captionfx::test {

/// What an effect is bound to. As it stands: four characters of 20 by 40 with the base line 30 down, the last one 20
/// lower; the string's centre is (140, 80).
struct PathScene {
    int32_t width = 400, height = 200;
    TitleRectF string{100, 50, 80, 60};
    std::vector<CharBox> boxes{{100, 50, 20, 40, 100, 80},
                               {120, 50, 20, 40, 120, 80},
                               {140, 50, 20, 40, 140, 80},
                               {160, 70, 20, 40, 160, 100}};
    float angleDeg = 0;
};

struct PlacementRow {
    const char* name;
    int32_t pass, index;
    float progress;
    CharPlacement expected;
};

inline std::unique_ptr<CPathBase> Bound(PathMaker* make, const PathScene& scene) {
    std::unique_ptr<CPathBase> path = make();
    path->SetCanvasSize(scene.width, scene.height);
    path->SetStringRect(scene.string, scene.angleDeg);
    const auto count = static_cast<int32_t>(scene.boxes.size());
    path->SetCharCount(count);
    for (int32_t i = 0; i < count; ++i) path->SetCharBox(i, scene.boxes[static_cast<size_t>(i)]);
    return path;
}

/// The first `count` characters of a pass, placed as a frame does it.
inline std::vector<CharPlacement> PlacePass(CPathBase& path, int32_t pass, float progress, size_t count) {
    std::vector<CharPlacement> all(count);
    SeedPathRandom(1);
    for (size_t i = 0; i < count; ++i) {
        EXPECT_EQ(path.CalcCharacter(pass, static_cast<int32_t>(i), progress, &all[i]), 1);
    }
    return all;
}

inline CharPlacement PlacementIn(const PathScene& scene, const char* name, int32_t pass, int32_t index,
                                 float progress) {
    return PlacePass(*Bound(FindPathMaker(name), scene), pass, progress, static_cast<size_t>(index) + 1).back();
}

/// Floats within a thousandth, which is what the rows are worked out to; alphas exactly.
inline void ExpectPlacements(const PathScene& scene, const std::vector<PlacementRow>& rows) {
    constexpr float kRowError = 1e-3F;
    for (const PlacementRow& row : rows) {
        SCOPED_TRACE(testing::Message() << row.name << " pass " << row.pass << " character " << row.index << " at "
                                        << row.progress);
        const CharPlacement at = PlacementIn(scene, row.name, row.pass, row.index, row.progress);
        EXPECT_NEAR(at.X, row.expected.X, kRowError);
        EXPECT_NEAR(at.Y, row.expected.Y, kRowError);
        EXPECT_NEAR(at.ScaleX, row.expected.ScaleX, kRowError);
        EXPECT_NEAR(at.ScaleY, row.expected.ScaleY, kRowError);
        EXPECT_NEAR(at.Rotation, row.expected.Rotation, kRowError);
        EXPECT_EQ(int{at.Alpha}, int{row.expected.Alpha});
    }
}

/// Two lines in the middle of 400 by 300 pixels, five characters, the last one without extent in the middle of the
/// string. Seen from the turned string the canvas is x 40 to 340, y -240 to 160.
inline const PathScene kTwoLines{400,
                                 300,
                                 {100, 60, 200, 80},
                                 {{100, 60, 80, 40, 100, 90},
                                  {180, 60, 40, 40, 180, 90},
                                  {220, 60, 80, 40, 220, 90},
                                  {100, 100, 100, 40, 100, 130},
                                  {200, 100, 0, 0, 200, 100}},
                                 90};

}  // namespace captionfx::test
