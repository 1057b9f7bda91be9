// Rotation effects by rows. Turns are clockwise, (x, y) by 90 degrees gives (-y, x).
#include "paths/placement_rows.h"

namespace captionfx::test {
namespace {

TEST(RotationPathsTest, TheWholeStringTurns) {
    ExpectPlacements(
        {}, {
                // The bottom left corner, (20, 30) from the centre, by 90 degrees, less the height of 40.
                {"PATH_ROTATECCW", 0, 3, 0, {140 - 30, 80 + 20 - 40, 1, 1, 90, 0}},
                {"PATH_ROTATECW", 0, 3, 0, {140 + 30, 80 - 20 - 40, 1, 1, -90, 0}},
                // (-40, 10) by 45 degrees: (-40 - 10, 10 - 40) / sqrt 2
                {"PATH_ROTATECCW", 0, 0, 0.5F, {140 - 35.3553F, 80 - 21.2132F - 40, 1, 1, 45, 127}},
                // It goes on; 510 keeps its low byte.
                {"PATH_ROTATECW", 0, 3, 2, {140 - 30, 80 + 20 - 40, 1, 1, 90, 254}},
                // A whirl at 1/4 is at 1/16 of four turns. The base point, (20, 20) from the centre and 30
                // below the top, times 15/16 * 9 + 1, or 0.9/16 + 0.1.
                {"PATH_ROTATEINWARDS", 0, 3, 0.25F, {140 - 188.75F, 80 + 188.75F - 30, 9.4375F, 9.4375F, 90, 15}},
                {"PATH_ROTATEOUTWARDS", 0, 3, 0.25F, {140 - 3.125F, 80 + 3.125F - 30, 0.15625F, 0.15625F, 90, 15}},
                {"PATH_ROTATEINWARDS", 0, 3, 1, {160, 70, 1, 1, 1440, 255}},
                {"PATH_ROTATEOUTWARDS", 0, 3, 1, {160, 70, 1, 1, 1440, 255}},
            });
}

TEST(RotationPathsTest, CharactersRollIn) {
    // With t = 1/2 a character still has 400 - 400 * 3/4 = 100 pixels to roll, on a wheel of radius 20: 5 radians. The
    // base point turns about the hub: (-10, 40/3) by 5 radians is (9.9490, 13.3714), by -5 (-15.6223, -5.8071).
    constexpr float kDeg = 286.4789F, kThird = 40.0F / 3;
    ExpectPlacements({},
                     {
                         {"PATH_ROLLINGLEFT", 0, 0, 0.45F, {210 + 9.9490F, 50 - kThird + 13.3714F, 1, 1, kDeg, 255}},
                         // The last one but for the first quarter of the order: (0.475 - 0.25 * 0.1) / 0.9 = 1/2.
                         {"PATH_ROLLINGRIGHT", 0, 3, 0.475F, {70 - 15.6223F, 70 - kThird - 5.8071F, 1, 1, -kDeg, 255}},
                         {"PATH_ROLLINGLEFT", 0, 3, 0.525F, {270 + 9.9490F, 70 - kThird + 13.3714F, 1, 1, kDeg, 255}},
                         {"PATH_ROLLINGRIGHT", 0, 1, -1, {120, 50, 1, 1, 0, 0}},
                     });
    // Without a height there is no third, and half a radian a pixel: (-10, 0) by 50 radians.
    ExpectPlacements({.boxes = {{100, 50, 20, 0, 100, 50}}},
                     {{"PATH_ROLLINGLEFT", 0, 0, 0.45F, {210 - 9.6497F, 50 + 2.6237F, 1, 1, 2864.789F, 255}}});
}

TEST(RotationPathsTest, SwirlIsHalfATurnAndABend) {
    // At 1/2 the gap is (50 - 10) / 4 = 10. Farther out than half its width, at 50 from the centre, it is 10 * 50 / 10:
    // a character at 100, twice its distance, bent by 50 / 400 * 4 = 0.5 radians on top of 90 degrees.
    // (-40, -30) by 90 degrees is (30, -40), by 0.5: (30 c + 40 s, 30 s - 40 c) = (45.5045, -20.7205).
    ExpectPlacements({}, {
                             {"PATH_SWIRL", 0, 0, 0.5F, {140 + 91.0089F, 80 - 41.4411F, 1, 1, -118.6479F, 127}},
                         });
    // Nearer, at 5: 10 farther out is three times its distance, bent by 0.1. (3, 4) by 90 degrees is (-4, 3), by 0.1:
    // (-4 c - 3 s, -4 s + 3 c) = (-4.2795, 2.5857). At the centre itself it stays there.
    const PathScene near{.boxes = {{143, 84, 20, 40, 143, 114}, {140, 80, 20, 40, 140, 110}}};
    ExpectPlacements(near, {
                               {"PATH_SWIRL", 0, 0, 0.5F, {140 - 12.8386F, 80 + 7.7570F, 1, 1, -95.7296F, 127}},
                               {"PATH_SWIRL", 0, 1, 0.5F, {140, 80, 1, 1, -95.7296F, 127}},
                           });
    // Without a width it keeps its distance, and comes to rest like any other: (0, 1) by 90 degrees is (-1, 0).
    ExpectPlacements({.boxes = {{140, 81, 0, 40, 140, 111}}}, {
                                                                  {"PATH_SWIRL", 0, 0, 0.5F, {139, 80, 1, 1, -90, 127}},
                                                              });
}

TEST(RotationPathsTest, SpiralIsTwoHalfCircles) {
    // Radius 100 from above to below, on the left; then radius 50 about (0, 50), on the right.
    ExpectPlacements({}, {
                             {"PATH_SPIRAL", 0, 1, 0, {120, -50, 1, 1, 0, 0}},
                             {"PATH_SPIRAL", 0, 1, 0.25F, {20, 50, 1, 1, 0, 63}},
                             {"PATH_SPIRAL", 0, 1, 0.5F, {120, 150, 1, 1, 0, 127}},
                             {"PATH_SPIRAL", 0, 1, 0.75F, {170, 100, 1, 1, 0, 191}},
                             {"PATH_SPIRAL", 0, 1, 1.25F, {120, 50, 1, 1, 0, 62}},  // 318.75 - 256
                         });
}

}  // namespace
}  // namespace captionfx::test
