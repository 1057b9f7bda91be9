// Travel effects by rows of name, character, progress and what comes out.
#include "paths/placement_rows.h"

namespace captionfx::test {
namespace {

// At 0.5 the eased way is 0.75. Seen from the turned string the canvas is x 40 to 340, y -240 to 160: its right edge
// lies 240 from the string, its bottom 100; off the left edge it is 60 + 200, off the top 300 + 80.
TEST(TravelPathsTest, StringsCrossTheCanvas) {
    const std::vector<PlacementRow> rows = {
        {"PATH_SLIDELEFT", 0, 1, 0.5F, {240, 60, 1, 1, 0, 255}},  // 180 + 240 / 4
        {"PATH_SLIDEUP", 0, 0, 0.5F, {100, 85, 1, 1, 0, 255}},    // 60 + 100 / 4
        {"PATH_SLIDERIGHT", 0, 1, 0.5F, {115, 60, 1, 1, 0, 255}},
        {"PATH_SLIDEDOWN", 0, 3, 0.5F, {100, 5, 1, 1, 0, 255}},
        {"PATH_SCROLLUP", 0, 3, 0.5F, {100, -40, 1, 1, 0, 255}},    // 100 + 100 - 0.5 (400 + 80)
        {"PATH_SCROLLUP", 0, 3, 1, {100, -280, 1, 1, 0, 255}},      // the last line just above the top
        {"PATH_SCROLLDOWN", 0, 3, 0.5F, {100, -40, 1, 1, 0, 255}},  // 100 - 380 + 240
        {"PATH_SCROLLLEFT", 0, 1, 0.25F, {295, 60, 1, 1, 0, 255}},  // 180 + 240 - (300 + 200) / 4
        {"PATH_SCROLLRIGHT", 0, 1, 0.25F, {45, 60, 1, 1, 0, 255}},  // 180 - 260 + 125
        // It climbs by 140 p; a line shows itself by what has passed the string's top, at 0.75 of its size by the size.
        {"PATH_SCROLLNRESIZE", 0, 0, 0.1F, {110, 46, 0.9F, 0.9F, 0, 89}},                     // 14 * 255 / 40
        {"PATH_SCROLLNRESIZE", 0, 0, 0.5F, {150, -10, 0.5F, 0.5F, 0, 127}},                   // 0.25 * 510
        {"PATH_SCROLLNRESIZE", 0, 3, 0.41F, {112.4286F, 42.6F, 0.87571F, 0.87571F, 0, 110}},  // 17.4 past
        {"PATH_SCROLLNRESIZE", 0, 4, 0.5F, {200, 30, 0.78571F, 0.78571F, 0, 255}},            // without a height
    };
    ExpectPlacements(kTwoLines, rows);
}

TEST(TravelPathsTest, CharactersStopAtTheirPlaces) {
    const std::vector<PlacementRow> rows = {
        {"PATH_HIDEDOWN", 0, 0, 0.5F, {100, 50, 1, 1, 0, 127}},   // (80 + 60 - 40) / 2
        {"PATH_HIDERIGHT", 0, 1, 0.5F, {130, 60, 1, 1, 0, 127}},  // (200 + 100 - 40) / 2
        {"PATH_HIDEUP", 0, 3, 0.5F, {100, 180, 1, 1, 0, 127}},    // 300 - 240 / 2
        {"PATH_HIDELEFT", 0, 1, 0.5F, {250, 60, 1, 1, 0, 127}},   // 400 - 300 / 2
        // Starts of a solo: 3, 8, 26 of 131. These are halfway through their 100.
        {"PATH_SOLODOWN", 0, 0, 53 / 131.0F, {100, -35, 1, 1, 0, 255}},  // 60 - 380 / 4
        {"PATH_SOLOUP", 0, 0, 53 / 131.0F, {100, 85, 1, 1, 0, 255}},     // 60 + 100 / 4
        {"PATH_SOLORIGHT", 0, 1, 58 / 131.0F, {115, 60, 1, 1, 0, 255}},
        {"PATH_SOLOLEFT", 0, 1, 58 / 131.0F, {240, 60, 1, 1, 0, 255}},
        {"PATH_SOLODOWN", 0, 0, 104 / 131.0F, {100, 60, 1, 1, 0, 255}},
        {"PATH_SOLODOWN", 0, 2, 0.1F, {100, -80, 1, 1, 0, 0}},  // waiting
        {"PATH_SOLOUP", 0, 2, 0.1F, {100, 300, 1, 1, 0, 0}},
        {"PATH_SOLORIGHT", 0, 2, 0.1F, {-200, 60, 1, 1, 0, 0}},
        {"PATH_SOLOLEFT", 0, 2, 0.1F, {400, 60, 1, 1, 0, 0}},
        // 280 (1 - p) to the right of its place, but never beyond the string's end at 300.
        {"PATH_ASSEMBLY", 0, 0, 0.5F, {240, 60, 1, 1, 0, 255}},
        {"PATH_ASSEMBLY", 0, 1, 0.5F, {300, 60, 1.65F, 1.65F, 0, 127}},   // 20 of its 40 beyond
        {"PATH_ASSEMBLY", 0, 2, 0.5F, {300, 60, 1.975F, 1.975F, 0, 63}},  // 60 of 80
        {"PATH_ASSEMBLY", 0, 4, 0.5F, {300, 100, 2.3F, 2.3F, 0, 0}},      // no width: all of it
        {"PATH_UNITE", 0, 0, 0.5F, {-65, 60, 1, 1, 0, 127}},              // 200 - 100 * (0.5 * 3.3 + 1)
    };
    ExpectPlacements(kTwoLines, rows);

    PathScene many = kTwoLines;
    many.boxes.assign(33, kTwoLines.boxes[0]);
    EXPECT_EQ(PlacementIn(many, "PATH_SOLOUP", 0, 32, 0.3F).Y, PlacementIn(many, "PATH_SOLOUP", 0, 0, 0.3F).Y);
}

TEST(TravelPathsTest, CharactersComeOnCurves) {
    const std::vector<PlacementRow> rows = {
        // The road is 400 * 1.5 + 40 pi = 725.664 long; character 0 has its centre at 140, the turn ends at -25.664.
        {"PATH_MARCH", 0, 0, 0.95F, {63.7168F, 60, 1, 1, 0, 255}},         // 100 - 725.664 * 0.05
        {"PATH_MARCH", 0, 0, 0.8582927F, {20, 60, 0.75F, 0.75F, 0, 255}},  // a quarter of the circle: 100 - 40 - 40
        {"PATH_MARCH", 0, 0, 0.5F, {257.1681F, 60, 0.5F, 0.5F, 0, 255}},   // 100 - (-222.832 + 25.664) - 40
        // 60 from the axis, halfway in time: a quarter of the way, sqrt(60^2 - 45^2) = 39.686 deep, 0.2381 of scale.
        {"PATH_FLIP", 0, 0, 0.1F, {115, 60, 1.23812F, 1.23812F, 0, 25}},
        {"PATH_FLIP", 0, 0, 0.5F, {205, 60, 0.76188F, 0.76188F, 0, 127}},  // mirrored: 100 + 120 - 15
        {"PATH_FLIP", 0, 0, 0.7F, {205, 60, 1.23812F, 1.23812F, 0, 178}},
        {"PATH_FLIP", 0, 2, 0.1F, {205, 60, 0.76188F, 0.76188F, 0, 25}},         // on the other side
        {"PATH_FLIP", 0, 0, -0.3F, {100, 60, 1, 1, 0, 180}},                     // -76 in 8 bits
        {"PATH_WINDSHIELDLEFT", 0, 1, 0.38F, {235, -30, 0.75F, 0.75F, 0, 255}},  // t = (0.38 - 0.2 * 0.4) / 0.6 = 1/2
        {"PATH_WINDSHIELDRIGHT", 0, 1, 0.38F, {135, -30, 0.75F, 0.75F, 0, 255}},
        // 120 high; exp(-4) 120 = 2.1979
        {"PATH_WAVE", 0, 0, 0.35F, {100, 45.9576F, 1, 1, 0, 191}},    // t = 1/2: 60 - exp(-2) 120 + 2.1979
        {"PATH_WAVE", 0, 4, 0.415F, {200, 146.3434F, 1, 1, 0, 111}},  // t = 1/4, cos(pi): 100 + exp(-1) 120 + 2.1979
        // From 500 away, at 0 and at 13/16 pi: (-415.7, 277.8), cut.
        {"PATH_FLOCKING", 0, 0, 0.5F, {225, 60, 1, 1, 0, 255}},          // 100 + 500 / 4
        {"PATH_FLOCKING", 0, 1, 0.5F, {76.25F, 129.25F, 1, 1, 0, 255}},  // 180 - 415 / 4, 60 + 277 / 4
    };
    ExpectPlacements(kTwoLines, rows);
}

}  // namespace
}  // namespace captionfx::test
