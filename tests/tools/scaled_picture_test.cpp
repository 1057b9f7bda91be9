#include "tools/scaled_picture.h"

#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace captionfx {
namespace {

// Three columns become two: each covers one whole column and half of the middle one.
TEST(ScaledPicture, EachPixelIsTheMeanOfWhatItCovers) {
    const std::vector<uint32_t> row{0xFF000000, 0xFF00FF60, 0xFFFF0000};
    EXPECT_EQ(ScaledPicture(row, {3, 1}, {2, 1}), (std::vector<uint32_t>{0xFF005520, 0xFFAA5520}));
    const std::vector<uint32_t> square{0xFF000000, 0xFF000010, 0xFF000020, 0xFF000031};
    EXPECT_EQ(ScaledPicture(square, {2, 2}, {1, 1}), std::vector<uint32_t>{0xFF000018}) << "97 / 4";
    EXPECT_EQ(ScaledPicture(square, {2, 2}, {2, 2}), square);
    EXPECT_EQ(ScaledPicture(std::vector<uint32_t>{0xFF000000, 0xFF0000FF}, {2, 1}, {3, 2}),
              (std::vector<uint32_t>{0xFF000000, 0xFF000080, 0xFF0000FF, 0xFF000000, 0xFF000080, 0xFF0000FF}));
}

}  // namespace
}  // namespace captionfx
