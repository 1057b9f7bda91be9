// `captionfx preview` and `captionfx fonts`, and what progress says.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/process.h"
#include "tests/tools/scratch_folder.h"
#include "tools/argument_values.h"
#include "tools/png_file.h"
#include "tools/progress.h"

namespace captionfx {
namespace {

using testing::HasSubstr;

TEST(PreviewMoments, AreSecondsOrPercentages) {
    EXPECT_EQ(ParseMoments("0,25%,-1s"), (std::vector<Moment>{{0, false}, {25, true}, {-1, false}}));
    for (const char* const wrong : {"", "1,", ",1", "1%%", "s", "1 s", "nan"})
        EXPECT_FALSE(ParseMoments(wrong)) << wrong;
}

// A fade from nothing at 1 s to all at 3 s: of four pictures in two rows the first alone is bare, and the second is
// paler than the third.
TEST(PreviewCommand, ShowsTheMomentsInOrderWithLabels) {
    const ScratchFolder scratch;
    const std::string title = (scratch / "t.xml").string(), sheet = (scratch / "sheet.png").string();
    ASSERT_EQ(RunTool(scratch, {"render", "--text", "HH", "--size", "60", "--frame", "192x108", "--key",
                                "1:PATH_FADE:0", "--key", "3:PATH_FADE:1", "--save", title})
                  .exitCode,
              0);
    const ProcessResult result = RunTool(scratch, {"preview", title, "--frame", "192x108", "--cell", "96x96", "--at",
                                                   "1s,50%,2.5,100%", "--background", "000000", "-o", sheet});
    ASSERT_EQ(result.errors, "");
    const PngImage image = ReadPng(sheet);
    // Cells of 96 by 54, gaps of 12, labels of 26 pixels height.
    ASSERT_EQ(image.width, 12 + 2 * (96 + 12));
    ASSERT_EQ(image.height, 12 + 2 * (54 + 26 + 12));
    const auto brightest = [&](int32_t left, int32_t top, int32_t height) {
        uint32_t best = 0;
        for (int32_t y = top; y < top + height; ++y) {
            for (int32_t x = left; x < left + 96; ++x)
                best = std::max(best, image.pixels[static_cast<size_t>(y * image.width + x)] >> 8 & 0xFF);
        }
        return best;
    };
    const uint32_t seen[] = {brightest(12, 12, 54), brightest(120, 12, 54), brightest(12, 104, 54),
                             brightest(120, 104, 54)};
    EXPECT_EQ(seen[0], 0U);
    EXPECT_NEAR(seen[1], 64, 10) << "50% is at 1.5 s, a quarter of the fade";
    EXPECT_NEAR(seen[2], 191, 10);
    EXPECT_GT(seen[3], 240U);
    for (const int32_t left : {12, 120}) EXPECT_GT(brightest(left, 12 + 54, 26), 150U) << "a label";

    std::filesystem::remove(sheet);
    ASSERT_EQ(RunTool(scratch, {"render", "--text", "HH", "--save", title}).exitCode, 0);
    const ProcessResult noEnd = RunTool(scratch, {"preview", title, "-o", sheet});
    EXPECT_EQ(noEnd.exitCode, 1);
    EXPECT_THAT(noEnd.errors, HasSubstr("no keyframes"));
    EXPECT_FALSE(std::filesystem::exists(sheet));
}

TEST(FontsCommand, ListsFamiliesAndTellsWhatStandsIn) {
    const ScratchFolder scratch;
    EXPECT_THAT(RunTool(scratch, {"fonts"}).output,
                testing::AllOf(HasSubstr("DejaVu Sans\n"), HasSubstr("Liberation Serif\n")));
    const std::string runs = RunTool(scratch, {"fonts", "--text", "a\\n\xE4\xB8\x96z"}).output;
    EXPECT_EQ(runs,
              "DejaVu Sans: \"a\\r\\n\"\n"
              "Droid Sans Fallback: \"\xE4\xB8\x96\" (stands in for DejaVu Sans)\n"
              "DejaVu Sans: \"z\"\n");
}

TEST(ProgressText, TellsRateAndTimeLeft) {
    using std::chrono_literals::operator""s;
    const Progress::Clock::time_point start{};
    Progress bar(ProgressStyle::kBar, 4000, start), lines(ProgressStyle::kNone, 4000, start);
    for (int i = 0; i < 1000; ++i) lines.Advance(start);
    EXPECT_EQ(lines.Text(start + 50s), "1000 of 4000 frames, 20.0 a second, 2 min 30 s left");
    EXPECT_EQ(bar.Text(start), "[------------------------] 0 of 4000 frames");
    lines.Finish(start + 4000s);
    EXPECT_EQ(lines.Text(start + 4000s), "1000 frames, 0.2 a second, 1 h 06 min");
}

}  // namespace
}  // namespace captionfx
