// Reveal effects by rows of name, progress and what comes out.
#include <limits>

#include <gtest/gtest.h>

#include "paths/path_manager.h"

namespace captionfx::test {
namespace {

TEST(RevealPathsTest, Alphas) {
    const struct {
        const char* name;
        float progress;
        int alpha;
    } rows[] = {
        {"PATH_FADE", 0, 0},
        {"PATH_FADE", 0.5F, 127},  // 127.5 is cut
        {"PATH_FADE", 1, 255},
        {"PATH_FADE", 2, 254},       // 510 keeps its low byte
        {"PATH_FADE", -0.01F, 254},  // -2.55 is cut to -2
        {"PATH_FADE", 1e30F, 0},     // does not fit: 0x80000000
        {"PATH_FADE", std::numeric_limits<float>::quiet_NaN(), 0},
        {"PATH_NOEFFECT", 0.5F, 0},
        {"PATH_NOEFFECT", 0.50001F, 255},
        {"PATH_NOEFFECT", std::numeric_limits<float>::quiet_NaN(), 0},
    };
    CPathManager manager;
    for (const auto& row : rows) {
        CPathBase* const path = manager.CreatePath(row.name);
        path->SetCharCount(1);
        path->SetCharBox(0, {3, 4, 10, 20, 3, 16});
        CharPlacement at{};
        path->CalcCharacter(0, 0, row.progress, &at);
        EXPECT_EQ(int{at.Alpha}, row.alpha) << row.name << ' ' << row.progress;
        EXPECT_EQ(at.X, 3);
        EXPECT_EQ(at.ScaleX, 1);
    }
}

}  // namespace
}  // namespace captionfx::test
