// Two-pass effects by rows. Pass 0 is the ghost.
#include "paths/placement_rows.h"

namespace captionfx::test {
namespace {

TEST(TwoPassPathsTest, StraightTrances) {
    // Half of the way, 5 widths or 2 heights, is 50 or 40 pixels. Coming: 2 * 63.75; leaving: 1.5 * 63.75.
    ExpectPlacements({}, {
                             {"PATH_TRANCERIGHT", 1, 1, 0.25F, {120 - 50, 50, 1, 1, 0, 127}},
                             {"PATH_TRANCERIGHT", 0, 1, 0.25F, {120, 50, 1, 1, 0, 0}},
                             {"PATH_TRANCERIGHT", 1, 1, 0.5F, {120, 50, 1, 1, 0, 255}},
                             {"PATH_TRANCERIGHT", 0, 1, 0.5F, {120, 50, 1, 1, 0, 0}},
                             {"PATH_TRANCERIGHT", 1, 1, 0.75F, {120, 50, 1, 1, 0, 255}},
                             {"PATH_TRANCERIGHT", 0, 1, 0.75F, {120 + 50, 50, 1, 1, 0, 95}},
                             {"PATH_TRANCERIGHT", 0, 1, 1, {120 + 100, 50, 1, 1, 0, 0}},
                             {"PATH_TRANCELEFT", 1, 1, 0.25F, {120 + 50, 50, 1, 1, 0, 127}},
                             {"PATH_TRANCELEFT", 0, 1, 0.75F, {120 - 50, 50, 1, 1, 0, 95}},
                             {"PATH_TRANCEDOWN", 1, 3, 0.25F, {160, 70 - 40, 1, 1, 0, 127}},
                             {"PATH_TRANCEDOWN", 0, 3, 0.75F, {160, 70 + 40, 1, 1, 0, 95}},
                             {"PATH_TRANCEUP", 1, 3, 0.25F, {160, 70 + 40, 1, 1, 0, 127}},
                             {"PATH_TRANCEUP", 0, 3, 0.75F, {160, 70 - 40, 1, 1, 0, 95}},
                         });
}

TEST(TwoPassPathsTest, TurningTrances) {
    ExpectPlacements({}, {
                             // The bottom left corner, (20, 30) from the centre, by 90 degrees is (-30, 20).
                             {"PATH_TRANCECCW", 0, 3, 0, {140 - 30, 80 + 20 - 40, 1, 1, 90, 0}},
                             // (-40, 10) by -45 degrees: (-40 + 10, 10 + 40) / sqrt 2, on either side of the half
                             {"PATH_TRANCECCW", 0, 0, 0.75F, {140 - 21.2132F, 80 + 35.3553F - 40, 1, 1, -45, 95}},
                             {"PATH_TRANCECW", 0, 0, 0.25F, {140 - 21.2132F, 80 + 35.3553F - 40, 1, 1, -45, 127}},
                             {"PATH_TRANCECCW", 1, 0, 0.5F, {100, 50, 1, 1, 0, 0}},
                             {"PATH_TRANCECW", 1, 0, 0.51F, {100, 50, 1, 1, 0, 255}},
                         });
}

TEST(TwoPassPathsTest, TranceFromTheCentre) {
    ExpectPlacements(
        {}, {
                // 0.15 / 0.3 * 1.6 = 0.8: the middle of the width, (-30) from the centre, and a point 1.5 heights down.
                {"PATH_TRANCECENTER", 0, 0, 0.15F, {140 - 24 - 10, 80 + 24 - 60, 0.8F, 0.8F, 0, 204}},
                {"PATH_TRANCECENTER", 1, 0, 0.15F, {100, 50, 1, 1, 0, 0}},
                // 0.2625 / 0.3 * 1.6 = 1.4, a third of 0.6 from the end: 85 * 3/4
                {"PATH_TRANCECENTER", 0, 0, 0.2625F, {140 - 42 - 10, 80 + 42 - 60, 1.4F, 1.4F, 0, 63}},
                {"PATH_TRANCECENTER", 1, 0, 0.2625F, {100, 50, 1, 1, 0, 255}},
                // Half of the order later, 0.35.
                {"PATH_TRANCECENTER", 0, 2, 0.5F, {140 + 8 - 10, 80 + 24 - 60, 0.8F, 0.8F, 0, 204}},
                {"PATH_TRANCECENTER", 0, 2, 0.25F, {140 - 10, 80 - 60, 0, 0, 0, 0}},
                {"PATH_TRANCECENTER", 0, 3, 1, {140 + 48 - 10, 80 + 80 - 60, 1.6F, 1.6F, 0, 0}},
            });
}

TEST(TwoPassPathsTest, DoubleVision) {
    // Of four characters each takes half; the second starts at 1/8, so it is half done at 3/8: 3/8 of its extent away.
    ExpectPlacements({}, {
                             {"PATH_DOUBLEVISIONH", 0, 1, 0.375F, {120 + 3.75F, 50, 1, 1, 0, 127}},
                             {"PATH_DOUBLEVISIONH", 1, 1, 0.375F, {120 - 4.25F, 50, 1, 1, 0, 127}},
                             {"PATH_DOUBLEVISIONV", 0, 1, 0.375F, {120, 50 + 7.5F, 1, 1, 0, 127}},
                             {"PATH_DOUBLEVISIONV", 1, 1, 0.375F, {120, 50 - 8, 1, 1, 0, 127}},
                             {"PATH_DOUBLEVISIONH", 1, 3, 1, {160 - 0.5F, 70, 1, 1, 0, 0}},
                         });
    // A character alone takes the whole progress.
    ExpectPlacements({.boxes = {{100, 50, 20, 40, 100, 80}}},
                     {{"PATH_DOUBLEVISIONH", 0, 0, 0.25F, {100 + 5.625F, 50, 1, 1, 0, 63}}});
}

}  // namespace
}  // namespace captionfx::test
