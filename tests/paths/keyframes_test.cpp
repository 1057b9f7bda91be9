// From a time to an effect and its progress.
#include "paths/keyframes.h"

#include <limits>

#include <gtest/gtest.h>

namespace captionfx::test {
namespace {

MetaPath Key(const char* name, float progress) {
    MetaPath path{};
    SetText(path.PathID, name);
    path.PathProgress = progress;
    return path;
}

TEST(KeyframesTest, TimesResolve) {
    const float kNotANumber = std::numeric_limits<float>::quiet_NaN();
    const struct {
        float time;
        const char* name;
        float progress;
    } cases[] = {
        {0.5F, "", 0},              // before the first
        {1, "PATH_FADE", 0},        // exact
        {1.5F, "PATH_FADE", 0.5F},  // one effect: linear
        {2, "PATH_FADE", 1},
        {2.5F, "PATH_FADE", 1},  // another effect follows: the lower holds
        {3, "PATH_WIPEUP", 0.25F},
        {3.9F, "PATH_WIPEUP", 0.25F},
        {4, "PATH_NOEFFECT", 1},  // at rest, whatever the keyframe says
        {4.5F, "PATH_NOEFFECT", 1},
        {5, "PATH_NOEFFECT", 1},
        {5.5F, "PATH_NOEFFECT", 1},
        {6, "PATH_FADE", 3},  // nothing clamps
        {6.5F, "PATH_FADE", -1},
        {7, "PATH_FADE", -5},
        {7.1F, "", 0},  // past the last
        {kNotANumber, "", 0},
        {std::numeric_limits<float>::infinity(), "", 0},
    };
    MetaString string;
    string.PathList = {{1, Key("PATH_FADE", 0)},     {2, Key("PATH_FADE", 1)},     {3, Key("PATH_WIPEUP", 0.25F)},
                       {4, Key("PATH_NOEFFECT", 0)}, {5, Key("PATH_NOEFFECT", 0)}, {6, Key("PATH_FADE", 3)},
                       {7, Key("PATH_FADE", -5)}};
    for (const auto& c : cases) {
        UpdateStringPath(string, c.time);
        EXPECT_STREQ(string.PathID, c.name) << c.time;
        EXPECT_EQ(string.PathProgress, c.progress) << c.time;
    }
}

TEST(KeyframesTest, AChangeOfNameAsksForBinding) {
    MetaString string;
    SetText(string.PathID, "PATH_FADE");
    string.PathProgress = 0.3F;
    UpdateStringPath(string, 1);
    EXPECT_EQ(string.PathProgress, 0.3F) << "no keyframes: what was set stays";
    EXPECT_EQ(string.PathChanged, 0);

    string.PathList = {{1, Key("PATH_FADE", 0)}, {2, Key("PATH_FADE", 1)}};
    UpdateStringPath(string, 1.5F);
    EXPECT_EQ(string.PathChanged, 0) << "the same name";
    UpdateStringPath(string, 3);
    EXPECT_EQ(string.PathChanged, 1);
    string.PathChanged = 0;
    UpdateStringPath(string, 4);
    EXPECT_EQ(string.PathChanged, 0) << "still none";
    UpdateStringPath(string, 2);
    EXPECT_EQ(string.PathChanged, 1) << "back inside";
}

TEST(KeyframesTest, NamesMayFillTheirField) {
    MetaString string;
    MetaPath full{};
    std::fill(std::begin(full.PathID), std::end(full.PathID), 'x');
    string.PathList = {{1, full}, {2, full}};
    UpdateStringPath(string, 1.5F);
    EXPECT_EQ(TextOf(string.PathID).size(), kNameLength - 1);
}

}  // namespace
}  // namespace captionfx::test
