// Flight path effects by rows. The string's top line runs from (0.25, 0.25) to (0.45, 0.25) of the canvas, so that
// point 8 of the tracks is (0.65, 0.25). The first character lags by 1/32 of the progress, the fourth by 7/32.
#include <cmath>
#include <limits>

#include "paths/placement_rows.h"

namespace captionfx::test {
namespace {

constexpr float kLag = 0.03125F;
// The track holds 0.2 as 1000.2, of which 32 bits keep 0.2000122: 3/8 of the rest is seen on 400 pixels.
constexpr float kMarkError = 0.0018F;

TEST(FlightPathsTest, Curves) {
    // In the middle of a segment a Bezier curve is at (P0 + 3 P1 + 3 P2 + P3) / 8 and heads along P3 + P2 - P1 - P0. A
    // heading of (x, y) has the rotation -(atan2(x, y) + 90 degrees).
    ExpectPlacements(
        {}, {
                // (0.65, 0.5625) towards (-1.4, -1.9)
                {"PATH_ROLLERCOASTERLEFT", 0, 0, 0.125F + kLag, {260 - 10, 112.5F, 0.625F, 0.625F, 53.6157F, 255}},
                {"PATH_ROLLERCOASTERLEFT", 0, 3, 0.34375F, {260 - 10, 20 + 112.5F, 0.625F, 0.625F, 53.6157F, 255}},
                {"PATH_ROLLERCOASTERRIGHT", 0, 0, 0.125F + kLag, {140 - 10, 112.5F, 0.625F, 0.625F, -233.6157F, 255}},
                // (0.6875, 0.16875) towards (-1.3, -0.95)
                {"PATH_SWARMLEFT", 0, 0, 0.125F + kLag, {275 - 10, 33.75F, 0.625F, 0.625F, 36.1582F, 255}},
                {"PATH_SWARMRIGHT", 0, 0, 0.125F + kLag, {125 - 10, 33.75F, 0.625F, 0.625F, -216.1582F, 255}},
                // At the first joint along 3 (P3 - P2): to the right, upside down.
                {"PATH_ROLLERCOASTERLEFT", 0, 0, 0.25F + kLag, {200 - 10, 20, 0.25F, 0.25F, -180, 255}},
                {"PATH_ROLLERCOASTERRIGHT", 0, 0, 0.25F + kLag, {200 - 10, 20, 0.25F, 0.25F, 0, 255}},
                // (0.45, 0.4875) towards (-1, 1.5)
                {"PATH_ROLLERCOASTERLEFT", 0, 0, 0.375F + kLag, {180 - 10, 97.5F, 0.625F, 0.625F, -56.3099F, 255}},
                {"PATH_ROLLERCOASTERRIGHT", 0, 0, 0.375F + kLag, {220 - 10, 97.5F, 0.625F, 0.625F, -123.6901F, 255}},
                // (0.5 + 2.1 + 0.6 + 0.4, 0.1 + 0.45 + 2.4 + 0.8) / 8 towards (0.4 + 0.2 - 0.7 - 0.5, 1.35)
                {"PATH_SWARMLEFT", 0, 0, 0.375F + kLag, {180 - 10, 93.75F, 0.25F, 0.25F, -66.0375F, 255}},
                {"PATH_SWARMRIGHT", 0, 0, 0.375F + kLag, {220 - 10, 93.75F, 0.25F, 0.25F, -113.9625F, 255}},
                // (0.3125, 0.4875) towards (1, -1); (0.7875, 0.4875) towards (-0.8, -1)
                {"PATH_ROLLERCOASTERLEFT", 0, 0, 0.625F + kLag, {125 - 10 + kMarkError, 97.5F, 1, 1, -225, 255}},
                {"PATH_ROLLERCOASTERRIGHT", 0, 0, 0.625F + kLag, {315 - 10 + kMarkError, 97.5F, 1, 1, 51.3402F, 255}},
                // (0.575, 0.525), (0.525, 0.525), both towards (0.1, -1.1)
                {"PATH_SWARMLEFT", 0, 0, 0.625F + kLag, {230 - 10 + kMarkError, 105, 0.625F, 0.625F, -264.8056F, 255}},
                {"PATH_SWARMRIGHT", 0, 0, 0.625F + kLag, {210 - 10 + kMarkError, 105, 0.625F, 0.625F, -264.8056F, 255}},
            });
}

TEST(FlightPathsTest, BeforeAndBehindTheCurve) {
    ExpectPlacements({}, {
                             {"PATH_SWARMLEFT", 0, 0, kLag, {100, 50, 1, 1, 0, 0}},
                             {"PATH_SWARMLEFT", 0, 3, 0.21875F, {160, 70, 1, 1, 0, 0}},
                             // Along the line from its right end, four times its width in the whole progress.
                             {"PATH_SWARMRIGHT", 0, 0, 0.75F + kLag, {180 - 10, 50, 1, 1, 0, 255}},
                             {"PATH_SWARMRIGHT", 0, 0, 0.875F + kLag, {180 - 40 - 10, 50, 1, 1, 0, 255}},
                             {"PATH_ROLLERCOASTERLEFT", 0, 3, 0.984375F, {180 - 5 - 10, 70, 1, 1, 0, 255}},
                         });
    EXPECT_EQ(PlacementIn({}, "PATH_SWARMLEFT", 0, 0, 0.9F).ScaleX, 1);
    EXPECT_NE(PlacementIn({}, "PATH_SWARMLEFT", 0, 3, 0.9F).Rotation, 0) << "still on the curve";
    // Sevenths are no floats: only what is not computed is exact.
    const PathScene odd{.string = {1 / 7.0F, 0, 100 / 7.0F, 9}, .boxes = {{39 / 7.0F, 0, 22 / 7.0F, 9, 0, 0}}};
    EXPECT_EQ(PlacementIn(odd, "PATH_SWARMLEFT", 0, 0, 1).X, 39 / 7.0F);
    EXPECT_EQ(PlacementIn(odd, "PATH_SWARMLEFT", 0, 0, std::nextafter(1.0F, 2.0F)).Alpha, 255);
    EXPECT_EQ(PlacementIn(odd, "PATH_SWARMLEFT", 0, 0, std::numeric_limits<float>::quiet_NaN()).Alpha, 0);
}

// A string far above the canvas puts marks into the table itself: its line at -1000 is 0 after point 7's 0.7, from
// point to point. (0.3125, 0.8 + 3 * 0.7 + 3 * 0.7 + 0.7 over 8) towards (1, -0.1).
TEST(FlightPathsTest, CoordinatesOfTheStringMayBeMarks) {
    const PathScene above{.height = 1, .string = {100, -1000, 80, 60}, .boxes = {{100, -1000, 20, 40, 100, -970}}};
    ExpectPlacements(
        above,
        {{"PATH_ROLLERCOASTERLEFT", 0, 0, 0.625F + kLag, {125 - 10 + kMarkError, 0.7125F, 1, 1, -185.7106F, 255}}});
}

}  // namespace
}  // namespace captionfx::test
