// Reveal effects by rows of name, character, progress and what comes out.
#include <limits>

#include <gtest/gtest.h>

#include "paths/path_stage.h"

namespace captionfx::test {
namespace {

constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();

TEST(RevealPathsTest, AlphaAlone) {
    // The string is 200 by 80 at (100, 60); d is where a character starts in it, h half of the string.
    const PlacementRow rows[] = {
        {"PATH_FADE", 1, 0.5F, 180, 60, 1, 1, 127},  // 127.5 is cut
        {"PATH_FADE", 1, 1, 180, 60, 1, 1, 255},
        {"PATH_FADE", 1, 2, 180, 60, 1, 1, 254},       // 510 keeps its low byte
        {"PATH_FADE", 1, -0.01F, 180, 60, 1, 1, 254},  // -2.55 is cut to -2
        {"PATH_FADE", 1, 1e30F, 180, 60, 1, 1, 0},     // does not fit: 0x80000000
        {"PATH_FADE", 1, kNotANumber, 180, 60, 1, 1, 0},
        {"PATH_NOEFFECT", 1, 0.5F, 180, 60, 1, 1, 0},
        {"PATH_NOEFFECT", 1, 0.50001F, 180, 60, 1, 1, 255},
        {"PATH_NOEFFECT", 1, kNotANumber, 180, 60, 1, 1, 0},
        {"PATH_WIPERIGHT", 0, 0.25F, 100, 60, 1, 1, 159},     // 50 / 80
        {"PATH_WIPERIGHT", 2, 0.5F, 220, 60, 1, 1, 0},        // 100 - 120
        {"PATH_WIPERIGHT", 2, 5, 220, 60, 1, 1, 255},         // beyond the end it stays
        {"PATH_WIPERIGHT", 2, 1e38F, 220, 60, 1, 1, 255},     // infinite on the way
        {"PATH_WIPERIGHT", 4, 0.5025F, 200, 100, 1, 1, 127},  // 0.5 pixels into no width
        {"PATH_WIPERIGHT", 4, 0.52F, 200, 100, 1, 1, 255},
        {"PATH_WIPEDOWN", 3, 0.75F, 100, 100, 1, 1, 127},  // (60 - 40) / 40
        {"PATH_WIPELEFT", 1, 0.5F, 180, 60, 1, 1, 127},    // (80 + 40 - 100) / 40
        {"PATH_WIPEUP", 3, 0.25F, 100, 100, 1, 1, 127},    // (40 + 40 - 60) / 40
        {"PATH_AMPLIFYH", 2, 0.5F, 220, 60, 1, 1, 95},     // right of the middle: (1.5 h - 120) / 80
        {"PATH_AMPLIFYH", 0, 0.5F, 100, 60, 1, 1, 95},     // left of it: (0 + 80 - 0.5 h) / 80
        {"PATH_AMPLIFYH", 1, 0.1F, 180, 60, 1, 1, 127},    // across it: 200 * 0.1 / 40
        {"PATH_AMPLIFYV", 3, 0.25F, 100, 100, 1, 1, 63},   // d = h: (1.25 h - 40) / 40
        {"PATH_AMPLIFYV", 0, 0.25F, 100, 60, 1, 1, 63},    // d + 40 = h: (40 - 0.75 h) / 40
    };
    ExpectPlacements(rows);
}

TEST(RevealPathsTest, Pops) {
    // Five characters: each takes 1.4 / 5 = 0.28 of the progress and starts 0.144 after the one before.
    const PlacementRow rows[] = {
        {"PATH_POPUP1", 0, 0.14F, 100, 60, 1, 1, 127},            // t = 0.14 / 0.28
        {"PATH_POPUP2", 1, 0.214F, 180, 60, 0.25F, 0.25F, 63},    // t = (0.214 - 0.144) / 0.28
        {"PATH_POPUP3", 2, 0.428F, 210, 80, 0.5F, 0.5F, 127},     // halfway to the centre (200, 100)
        {"PATH_MAGNETS1", 0, 0.14F, 100, 60, 1.65F, 1.65F, 127},  // 0.5 * 1.3 + 1
        {"PATH_MAGNETS1", 4, 0.5F, 200, 100, 2.3F, 2.3F, 0},      // not yet
        {"PATH_MAGNETS2", 2, 0.428F, 233, 34, 1.65F, 1.65F, 127},
        {"PATH_POPUP3", 2, 0, 220, 60, 1, 1, 0},
        {"PATH_MAGNETS2", 2, kNotANumber, 220, 60, 1, 1, 0},
    };
    ExpectPlacements(rows);
    const PathStage one{400, 300, {100, 60, 80, 40}, 0, {{100, 60, 80, 40, 100, 90}}};
    EXPECT_EQ(Pass(*Bind(FindPathMaker("PATH_POPUP1"), one), one, 0, 0.3F)[0][5], 76) << "alone it takes all the time";
}

TEST(RevealPathsTest, SparklesAndIcicles) {
    // The random numbers 41, 18467, 6334, 26500, 19169 put five characters in places 1, 2, 4, 0 and 4.
    const PlacementRow rows[] = {
        {"PATH_GLITTER", 0, 0.2F, 100, 60, 0.55556F, 0.55556F, 141},  // t = 1/3: (sin(pi / 2) + 1) (1 - 4/9) / 2
        {"PATH_GLITTER", 1, 0.31F, 180, 60, 0.37343F, 0.37343F, 95},  // t = (0.31 - 0.4 * 0.4) / 0.6 = 1/4
        {"PATH_TWINKLE", 0, 0.38F, 100, 60, 0.375F, 0.375F, 95},      // t = (0.38 - 0.2 * 0.4) / 0.6 = 1/2
        {"PATH_TWINKLE", 1, 0.46F, 180, 60, 0.375F, 0.375F, 95},      // 0.46 - 0.4 * 0.4
        {"PATH_ICICLES", 0, 0.32F, 100, 103.3333F, 1, 4.25F, 127},    // t = (0.32 - 0.2 * 0.6) / 0.4, 300 / 40 = 7.5
        {"PATH_ICICLES", 1, 0.34F, 180, 125, 1, 5.875F, 63},          // t = 1/4: 6.5 * 0.75 + 1; 4.875 * 40 / 3 + 60
        {"PATH_ICICLES", 4, 0.68F, 200, 100, 1, 150.5F, 127},         // no height: (300 - 1) / 2 + 1
    };
    ExpectPlacements(rows);
}

}  // namespace
}  // namespace captionfx::test
