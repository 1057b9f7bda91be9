// Raw frames on standard output, and the same frames as PNG files.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/process.h"
#include "tests/tools/scratch_folder.h"
#include "tools/frame_times.h"
#include "tools/png_file.h"

namespace captionfx {
namespace {

constexpr int32_t kWidth = 96, kHeight = 64, kCount = 5;
constexpr size_t kPixels = size_t{kWidth} * kHeight;

/// Five frames of a text that comes in half there.
ProcessResult Render(const ScratchFolder& scratch, std::vector<std::string> more) {
    more.insert(more.begin(), {"render", "--text", "Mg", "--size", "40", "--frame", "96x64", "--key", "0:PATH_FADE:0.3",
                               "--key", "1:PATH_FADE:1", "--fps", "5"});
    return RunTool(scratch, more);
}

// Among the bytes are 10 and 13, which are no line ends.
TEST(RawFrames, BgraIsThePixelsOfThePictures) {
    const ScratchFolder scratch;
    const std::string pattern = (scratch / "%d.png").string();
    ASSERT_EQ(Render(scratch, {"-o", pattern}).exitCode, 0);
    std::string wanted;
    for (int32_t i = 0; i < kCount; ++i) {
        const auto pixels = ReadPng(FrameFile(pattern, i)).pixels;
        wanted.append(reinterpret_cast<const char*>(pixels.data()), pixels.size() * sizeof(uint32_t));
    }
    EXPECT_THAT(wanted, testing::HasSubstr("\n"));
    EXPECT_TRUE(Render(scratch, {"-o", "-", "--format", "bgra"}).output == wanted);
}

// The ground 205080 is by BT.709: Y 16 + 73.3 * 219 / 255, Cb 128 + (128 - 73.3) / 1.856 * 224 / 255,
// Cr 128 + (32 - 73.3) / 1.575 * 224 / 255.
TEST(RawFrames, Y4mHasHeadersAndPlanes) {
    const ScratchFolder scratch;
    const std::string y4m = Render(scratch, {"-o", "-", "--format", "y4m", "--background", "205080"}).output;
    EXPECT_THAT(y4m, testing::StartsWith("YUV4MPEG2 W96 H64 F5:1 Ip A1:1 C420mpeg2"));
    constexpr size_t kFrame = 6 + kPixels * 3 / 2;  // "FRAME\n" and the planes
    ASSERT_EQ(y4m.size(), y4m.find('\n') + 1 + kCount * kFrame);
    const std::string last = y4m.substr(y4m.size() - kPixels * 3 / 2);
    const auto byte = [&](size_t at) { return static_cast<int>(static_cast<uint8_t>(last[at])); };
    EXPECT_NEAR(byte(0), 79, 1);
    EXPECT_NEAR(byte(kPixels), 154, 1);
    EXPECT_NEAR(byte(kPixels * 5 / 4), 105, 1);
    int brightest = 0;
    for (size_t i = 0; i < kPixels; ++i) brightest = std::max(brightest, byte(i));
    EXPECT_NEAR(brightest, 213, 2) << "at 0.8 s white letters, 235, are there to 0.86 over 79";
}

TEST(RawFrames, WhatCannotBeSentIsToldInOneLine) {
    const ScratchFolder scratch;
    const struct {
        std::vector<std::string> arguments;
        int exitCode;
        const char* named;
    } rows[] = {{{"--format", "y4m"}, 1, "--background"},
                {{"--format", "y4m", "--background", "000000", "--frame", "63x48"}, 1, "63x48"},
                {{"--format", "nut"}, 2, "bgra or y4m"},
                {{}, 2, "bgra or y4m"}};
    for (const auto& row : rows) {
        std::vector<std::string> arguments{"render", "--text", "a", "--to", "1", "-o", "-"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        const ProcessResult result = RunTool(scratch, arguments);
        EXPECT_EQ(result.exitCode, row.exitCode);
        EXPECT_EQ(result.ErrorLines(), 1) << result.errors;
        EXPECT_THAT(result.errors, testing::HasSubstr(row.named));
        EXPECT_EQ(result.output, "");
    }
}

}  // namespace
}  // namespace captionfx
