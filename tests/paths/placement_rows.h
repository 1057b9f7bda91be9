// Effects by rows of name, pass, index, progress and the placement that comes out.
#pragma once

#include <vector>

#include <gtest/gtest.h>

#include "paths/path_manager.h"

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
};

struct PlacementRow {
    const char* name;
    int32_t pass, index;
    float progress;
    CharPlacement expected;
};

inline CharPlacement PlacementIn(const PathScene& scene, const char* name, int32_t pass, int32_t index,
                                 float progress) {
    CPathManager manager;
    CPathBase* const path = manager.CreatePath(name);
    path->SetCanvasSize(scene.width, scene.height);
    path->SetStringRect(scene.string, 0);
    const auto count = static_cast<int32_t>(scene.boxes.size());
    path->SetCharCount(count);
    for (int32_t i = 0; i < count; ++i) path->SetCharBox(i, scene.boxes[static_cast<size_t>(i)]);
    CharPlacement at{};
    EXPECT_EQ(path->CalcCharacter(pass, index, progress, &at), 1);
    return at;
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

}  // namespace captionfx::test
