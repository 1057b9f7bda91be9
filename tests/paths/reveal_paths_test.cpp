// Reveal effects by rows of name, character, progress and what comes out.
#include <limits>

#include "paths/placement_rows.h"

namespace captionfx::test {
namespace {

constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();

TEST(RevealPathsTest, AlphaAlone) {
    // The string is 200 by 80 at (100, 60); d is where a character starts in it, h half of the string.
    const std::vector<PlacementRow> rows = {
        {"PATH_FADE", 0, 1, 0.5F, {180, 60, 1, 1, 0, 127}},  // 127.5 is cut
        {"PATH_FADE", 0, 1, 1, {180, 60, 1, 1, 0, 255}},
        {"PATH_FADE", 0, 1, 2, {180, 60, 1, 1, 0, 254}},       // 510 keeps its low byte
        {"PATH_FADE", 0, 1, -0.01F, {180, 60, 1, 1, 0, 254}},  // -2.55 is cut to -2
        {"PATH_FADE", 0, 1, 1e30F, {180, 60, 1, 1, 0, 0}},     // does not fit: 0x80000000
        {"PATH_FADE", 0, 1, kNotANumber, {180, 60, 1, 1, 0, 0}},
        {"PATH_NOEFFECT", 0, 1, 0.5F, {180, 60, 1, 1, 0, 0}},
        {"PATH_NOEFFECT", 0, 1, 0.50001F, {180, 60, 1, 1, 0, 255}},
        {"PATH_NOEFFECT", 0, 1, kNotANumber, {180, 60, 1, 1, 0, 0}},
        {"PATH_WIPERIGHT", 0, 0, 0.25F, {100, 60, 1, 1, 0, 159}},     // 50 / 80
        {"PATH_WIPERIGHT", 0, 2, 0.5F, {220, 60, 1, 1, 0, 0}},        // 100 - 120
        {"PATH_WIPERIGHT", 0, 2, 1e38F, {220, 60, 1, 1, 0, 255}},     // infinite on the way
        {"PATH_WIPERIGHT", 0, 4, 0.5025F, {200, 100, 1, 1, 0, 127}},  // 0.5 pixels into no width
        {"PATH_WIPERIGHT", 0, 4, 0.52F, {200, 100, 1, 1, 0, 255}},
        {"PATH_WIPEDOWN", 0, 3, 0.75F, {100, 100, 1, 1, 0, 127}},  // (60 - 40) / 40
        {"PATH_WIPELEFT", 0, 1, 0.5F, {180, 60, 1, 1, 0, 127}},    // (80 + 40 - 100) / 40
        {"PATH_WIPEUP", 0, 3, 0.25F, {100, 100, 1, 1, 0, 127}},    // (40 + 40 - 60) / 40
        {"PATH_AMPLIFYH", 0, 2, 0.5F, {220, 60, 1, 1, 0, 95}},     // right of the middle: (1.5 h - 120) / 80
        {"PATH_AMPLIFYH", 0, 0, 0.5F, {100, 60, 1, 1, 0, 95}},     // left of it: (0 + 80 - 0.5 h) / 80
        {"PATH_AMPLIFYH", 0, 1, 0.1F, {180, 60, 1, 1, 0, 127}},    // across it: 200 * 0.1 / 40
        {"PATH_AMPLIFYV", 0, 3, 0.25F, {100, 100, 1, 1, 0, 63}},   // d = h: (1.25 h - 40) / 40
        {"PATH_AMPLIFYV", 0, 0, 0.25F, {100, 60, 1, 1, 0, 63}},    // d + 40 = h: (40 - 0.75 h) / 40
    };
    ExpectPlacements(kTwoLines, rows);
}

TEST(RevealPathsTest, Pops) {
    // Five characters: each takes 1.4 / 5 = 0.28 of the progress and starts 0.144 after the one before.
    const std::vector<PlacementRow> rows = {
        {"PATH_POPUP1", 0, 0, 0.14F, {100, 60, 1, 1, 0, 127}},            // t = 0.14 / 0.28
        {"PATH_POPUP2", 0, 1, 0.214F, {180, 60, 0.25F, 0.25F, 0, 63}},    // t = (0.214 - 0.144) / 0.28
        {"PATH_POPUP3", 0, 2, 0.428F, {210, 80, 0.5F, 0.5F, 0, 127}},     // halfway to the centre (200, 100)
        {"PATH_MAGNETS1", 0, 0, 0.14F, {100, 60, 1.65F, 1.65F, 0, 127}},  // 0.5 * 1.3 + 1
        {"PATH_MAGNETS1", 0, 4, 0.5F, {200, 100, 2.3F, 2.3F, 0, 0}},      // not yet
        {"PATH_MAGNETS2", 0, 2, 0.428F, {233, 34, 1.65F, 1.65F, 0, 127}},
        {"PATH_POPUP3", 0, 2, 0, {220, 60, 1, 1, 0, 0}},
    };
    ExpectPlacements(kTwoLines, rows);
    // Alone it takes all the time.
    ExpectPlacements({.boxes = {{100, 50, 20, 40, 100, 80}}}, {{"PATH_POPUP1", 0, 0, 0.3F, {100, 50, 1, 1, 0, 76}}});
}

TEST(RevealPathsTest, SparklesAndIcicles) {
    // The random numbers 41, 18467, 6334, 26500, 19169 put five characters in places 1, 2, 4, 0 and 4.
    const std::vector<PlacementRow> rows = {
        // t = 1/3: (sin(pi / 2) + 1) (1 - 4/9) / 2
        {"PATH_GLITTER", 0, 0, 0.2F, {100, 60, 0.55556F, 0.55556F, 0, 141}},
        {"PATH_GLITTER", 0, 1, 0.31F, {180, 60, 0.37343F, 0.37343F, 0, 95}},  // t = (0.31 - 0.4 * 0.4) / 0.6 = 1/4
        {"PATH_TWINKLE", 0, 0, 0.38F, {100, 60, 0.375F, 0.375F, 0, 95}},      // t = (0.38 - 0.2 * 0.4) / 0.6 = 1/2
        {"PATH_TWINKLE", 0, 1, 0.46F, {180, 60, 0.375F, 0.375F, 0, 95}},      // 0.46 - 0.4 * 0.4
        // t = (0.32 - 0.2 * 0.6) / 0.4, 300 / 40 = 7.5
        {"PATH_ICICLES", 0, 0, 0.32F, {100, 103.3333F, 1, 4.25F, 0, 127}},
        {"PATH_ICICLES", 0, 1, 0.34F, {180, 125, 1, 5.875F, 0, 63}},   // t = 1/4: 6.5 * 0.75 + 1; 4.875 * 40 / 3 + 60
        {"PATH_ICICLES", 0, 4, 0.68F, {200, 100, 1, 150.5F, 0, 127}},  // no height: (300 - 1) / 2 + 1
    };
    ExpectPlacements(kTwoLines, rows);
}

}  // namespace
}  // namespace captionfx::test
