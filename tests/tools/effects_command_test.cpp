// `captionfx effects`: the list, the contact sheet, and what is refused.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/process.h"
#include "tests/tools/scratch_folder.h"
#include "tools/png_file.h"

namespace captionfx {
namespace {

using testing::HasSubstr;

class EffectsCommand : public testing::Test {
protected:
    [[nodiscard]] ProcessResult Run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "effects");
        return RunTool(scratch_, arguments);
    }
    [[nodiscard]] std::string Picture() const { return (scratch_ / "sheet.png").string(); }

    ScratchFolder scratch_;
};

TEST_F(EffectsCommand, ListsAlignedColumns) {
    const ProcessResult all = Run({});
    EXPECT_EQ(all.exitCode, 0);
    EXPECT_EQ(all.ErrorLines(), 0);
    const size_t length = all.output.find('\n') + 1, classColumn = all.output.find("CLASS");
    EXPECT_EQ(std::ranges::count(all.output, '\n'), 66) << "a heading and 65 effects";
    for (size_t at = all.output.find("PATH_"); at != std::string::npos; at = all.output.find("PATH_", at + 1))
        EXPECT_EQ(all.output.find("CLASS_", at), at + classColumn) << at / length;

    const std::string rolls = Run({"--class", "CLASS_ROLLNCRAWL"}).output;
    EXPECT_EQ(std::ranges::count(rolls, '\n'), 6);
    EXPECT_THAT(rolls, HasSubstr("\nPATH_PERSPECTIVESCROLL  CLASS_ROLLNCRAWL"));
}

// An effect that is a switch at the half: of its six pictures the first two are empty. Beyond it, that the pictures are
// there is for eyes.
TEST_F(EffectsCommand, SheetShowsTheMomentsInOrder) {
    constexpr uint32_t kCell = 0xFF4A5059;
    constexpr int32_t kWidth = 64, kHeight = 36, kStep = kWidth + 4, kMoments = 6;
    const ProcessResult result =
        Run({"--class", "CLASS_NOEFFECT", "--cell", "64x36", "--text", "II", "--sheet", Picture()});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "");
    const PngImage sheet = ReadPng(Picture());
    const auto first = std::ranges::find(sheet.pixels, kCell) - sheet.pixels.begin();
    std::string seen;
    for (int32_t moment = 0; moment < kMoments; ++moment) {
        bool hasInk = false;
        for (int32_t y = 0; y < kHeight; ++y) {
            const auto row = sheet.pixels.begin() + first + std::ptrdiff_t{y} * sheet.width + moment * kStep;
            hasInk |= !std::all_of(row, row + kWidth, [&](uint32_t pixel) { return pixel == kCell; });
        }
        seen += hasInk ? 'x' : '.';
    }
    EXPECT_EQ(seen, "..xxxx");
}

TEST_F(EffectsCommand, RefusesInOneLine) {
    const struct {
        std::vector<std::string> arguments;
        int exitCode;
        const char* named;
    } rows[] = {
        {{"--class", "CLASS_FLYING"}, 2, "--class"},
        {{"--text", "alone"}, 2, "--sheet"},
        {{"--sheet", Picture(), "--cell", "31x90"}, 2, "--cell"},
        {{"--sheet", Picture(), "--font", ""}, 2, "captionfx effects --help"},
        {{"--class", "CLASS_NOEFFECT", "--sheet", (scratch_ / "missing/sheet.png").string()}, 1, "sheet.png"},
        {{"--sheet", Picture(), "--text", " "}, 1, "text"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.arguments));
        const ProcessResult result = Run(row.arguments);
        EXPECT_EQ(result.exitCode, row.exitCode);
        EXPECT_EQ(result.ErrorLines(), 1) << result.errors;
        EXPECT_THAT(result.errors, HasSubstr(row.named));
        EXPECT_FALSE(std::filesystem::exists(Picture()));
    }
}

}  // namespace
}  // namespace captionfx
