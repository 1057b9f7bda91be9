// What the tool draws, judged from the picture alone.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/tools/process.h"
#include "tests/tools/scratch_folder.h"
#include "tools/png_file.h"

namespace captionfx {
namespace {

constexpr int32_t kWidth = 480, kHeight = 270;

int32_t Alpha(uint32_t pixel) {
    return static_cast<int32_t>(pixel >> 24);
}

/// The smallest box around all pixels that `isInk` names; right and bottom lie outside.
struct InkBox {
    int32_t left = kWidth, top = kHeight, right = 0, bottom = 0;
    size_t pixels = 0;
};

template <class Predicate>
InkBox BoxOf(const PngImage& image, Predicate isInk) {
    InkBox box;
    for (int32_t y = 0; y < image.height; ++y) {
        for (int32_t x = 0; x < image.width; ++x) {
            if (!isInk(
                    image.pixels[static_cast<size_t>(y) * static_cast<size_t>(image.width) + static_cast<size_t>(x)]))
                continue;
            box.left = std::min(box.left, x);
            box.right = std::max(box.right, x + 1);
            box.top = std::min(box.top, y);
            box.bottom = std::max(box.bottom, y + 1);
            ++box.pixels;
        }
    }
    return box;
}

bool IsSolid(uint32_t pixel) {
    return Alpha(pixel) >= 250;
}

class RenderedFrame : public testing::Test {
protected:
    [[nodiscard]] PngImage Render(const std::vector<std::string>& more, const std::string& text = "HOH",
                                  const char* size = "96") const {
        const std::filesystem::path picture = scratch_ / "out.png";
        std::vector<std::string> arguments{"render",  "--text",  text, "--size",        size,
                                           "--frame", "480x270", "-o", picture.string()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const ProcessResult result = RunTool(scratch_, arguments);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return ReadPng(picture);
    }

    ScratchFolder scratch_;
};

TEST_F(RenderedFrame, GroundOfAColorIsOpaqueEverywhere) {
    const PngImage image = Render({"--background", "204060"});
    EXPECT_EQ(image.pixels.front(), 0xFF204060);
    EXPECT_EQ(image.pixels.back(), 0xFF204060);
    EXPECT_TRUE(std::all_of(image.pixels.begin(), image.pixels.end(), [](uint32_t p) { return Alpha(p) == 255; }));
    EXPECT_GT(BoxOf(image, [](uint32_t p) { return p != 0xFF204060; }).pixels, 2000U);
}

TEST_F(RenderedFrame, TextStandsInTheMiddleOfATransparentGround) {
    const PngImage image = Render({});
    EXPECT_EQ(image.width, kWidth);
    EXPECT_EQ(image.height, kHeight);
    EXPECT_EQ(image.pixels.front() | image.pixels.back(), 0U);
    const InkBox ink = BoxOf(image, IsSolid);
    EXPECT_GT(ink.pixels, 2000U) << "three letters of 70 pixels height hold more ink than this";
    // Capitals of equal side bearings: the ink is as wide as the text less a bearing at each end. Upright it lies in a
    // line box with room for accents and descenders, so its middle is near the box's and not on it.
    EXPECT_NEAR((ink.left + ink.right) / 2.0, kWidth / 2.0, 2.0);
    EXPECT_NEAR((ink.top + ink.bottom) / 2.0, kHeight / 2.0, 15.0);
}

TEST_F(RenderedFrame, PositionIsTheUpperLeftCorner) {
    const InkBox at10 = BoxOf(Render({"--position", "10,20"}), IsSolid);
    const InkBox at50 = BoxOf(Render({"--position", "50,60"}), IsSolid);
    EXPECT_EQ(at50.left - at10.left, 40);
    EXPECT_EQ(at50.top - at10.top, 40);
    EXPECT_NEAR(at10.left, 10, 12) << "left bearing of an H less its border";
}

TEST_F(RenderedFrame, BoldIsWiderAndItalicLeans) {
    const InkBox regular = BoxOf(Render({}), IsSolid);
    const InkBox bold = BoxOf(Render({"--bold"}), IsSolid);
    EXPECT_GT(bold.right - bold.left, regular.right - regular.left);
    EXPECT_GT(bold.pixels, regular.pixels * 5 / 4);

    // A stem leans by about a fifth of its height.
    const InkBox upright = BoxOf(Render({}, "l"), IsSolid);
    const InkBox leaning = BoxOf(Render({"--italic"}, "l"), IsSolid);
    EXPECT_GT(leaning.right - leaning.left, upright.right - upright.left + 8);
}

}  // namespace
}  // namespace captionfx
