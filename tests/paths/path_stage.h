// Effects bound to a string of round numbers, and the frames that they give.
#pragma once

#include <array>
#include <memory>
#include <span>
#include <vector>

#include <gtest/gtest.h>

#include "paths/path_catalog.h"
#include "paths/path_random.h"

namespace captionfx::test {

struct PathStage {
    int32_t Width, Height;
    TitleRectF String;
    float AngleDeg;
    std::vector<CharBox> Boxes;
};

/// Two lines in the middle of 400 by 300 pixels, the second with a character of no extent in the middle of the string.
/// Turned by 90 degrees the canvas spans x from 40 to 340 and y from -240 to 160.
inline const PathStage kTwoLines{400,
                                 300,
                                 {100, 60, 200, 80},
                                 90,
                                 {{100, 60, 80, 40, 100, 90},
                                  {180, 60, 40, 40, 180, 90},
                                  {220, 60, 80, 40, 220, 90},
                                  {100, 100, 100, 40, 100, 130},
                                  {200, 100, 0, 0, 200, 100}}};

inline std::unique_ptr<CPathBase> Bind(PathMaker* make, const PathStage& stage) {
    std::unique_ptr<CPathBase> path = make();
    const auto count = static_cast<int32_t>(stage.Boxes.size());
    path->SetCanvasSize(stage.Width, stage.Height);
    path->SetStringRect(stage.String, stage.AngleDeg);
    path->SetCharCount(count);
    for (int32_t i = 0; i < count; ++i) path->SetCharBox(i, stage.Boxes[static_cast<size_t>(i)]);
    return path;
}

/// X, Y, ScaleX, ScaleY, Rotation, Alpha.
using Placed = std::array<float, 6>;

/// All characters of one pass, placed as a frame does it.
inline std::vector<Placed> Pass(CPathBase& path, const PathStage& stage, int32_t pass, float progress) {
    std::vector<Placed> all;
    SeedPathRandom(1);
    for (size_t i = 0; i < stage.Boxes.size(); ++i) {
        CharPlacement at{};
        path.CalcCharacter(pass, static_cast<int32_t>(i), progress, &at);
        all.push_back({at.X, at.Y, at.ScaleX, at.ScaleY, at.Rotation, static_cast<float>(at.Alpha)});
    }
    return all;
}

/// What a character of kTwoLines comes out as.
struct PlacementRow {
    const char* Name;
    size_t Index;
    float Progress;
    float X, Y, ScaleX, ScaleY, Alpha;
};

inline void ExpectPlacements(std::span<const PlacementRow> rows) {
    constexpr Placed kTolerances = {0.01F, 0.01F, 1e-4F, 1e-4F, 0, 0};
    for (const PlacementRow& row : rows) {
        const Placed expected = {row.X, row.Y, row.ScaleX, row.ScaleY, 0, row.Alpha};
        const Placed at = Pass(*Bind(FindPathMaker(row.Name), kTwoLines), kTwoLines, 0, row.Progress)[row.Index];
        for (size_t field = 0; field < at.size(); ++field) {
            EXPECT_NEAR(at[field], expected[field], kTolerances[field])
                << row.Name << ' ' << row.Index << " at " << row.Progress << ", field " << field;
        }
    }
}

}  // namespace captionfx::test
