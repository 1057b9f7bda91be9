// What every effect has from its base.
#include "paths/path_base.h"

#include <array>

#include <gtest/gtest.h>

namespace captionfx::test {
namespace {

using KVTImageUtility::CImageARGB;

struct Probe final : CPathBase {
    using CPathBase::FindOpaqueBounds;
    [[nodiscard]] size_t BoxCount() const { return boxes_.size(); }
};

TEST(PathBaseTest, BoxesComeInOrderUpToTheCount) {
    Probe path;
    EXPECT_EQ(path.SetCharBox(0, {}), 0) << "a fresh object has no characters";
    path.SetCharCount(2);
    EXPECT_EQ(path.SetCharBox(0, {1, 2, 3, 4, 5, 6}), 1);
    EXPECT_EQ(path.SetCharBox(1, {7, 8, 9, 10, 11, 12}), 1);
    EXPECT_EQ(path.SetCharBox(2, {}), 0);
    EXPECT_EQ(path.SetCharBox(-1, {}), 0);
    EXPECT_EQ(path.BoxCount(), 2U);
    CharPlacement at{};
    EXPECT_EQ(path.CalcCharacter(1, 1, 0, &at), 1);
    EXPECT_EQ(at.X, 7);
    EXPECT_EQ(at.Y, 8);
    EXPECT_EQ(at.ScaleX, 1);
    EXPECT_EQ(at.ScaleY, 1);
    EXPECT_EQ(at.Rotation, 0);
    EXPECT_EQ(at.Alpha, 255) << "at rest at any progress";
}

TEST(PathBaseTest, CanvasBoundsInTheStringsFrame) {
    Probe path;
    EXPECT_EQ(path.CanvasBounds().Right, 320);
    EXPECT_EQ(path.CanvasBounds().Bottom, 240);
    path.SetCanvasSize(100, 50);
    path.SetStringRect({10, 20, 5, 5}, 0);
    EXPECT_EQ(path.CanvasBounds().Right, 100);
    EXPECT_EQ(path.CanvasBounds().Bottom, 50);
    EXPECT_EQ(path.CanvasBounds().Left + path.CanvasBounds().Top, 0);
    // By 90 degrees (x, y) becomes (y - 20 + 10, -(x - 10) + 20): x from -10 to 40, y from -70 to 30.
    path.SetStringRect({10, 20, 5, 5}, 90);
    EXPECT_NEAR(path.CanvasBounds().Left, -10, 1e-4);
    EXPECT_NEAR(path.CanvasBounds().Right, 40, 1e-4);
    EXPECT_NEAR(path.CanvasBounds().Top, -70, 1e-4);
    EXPECT_NEAR(path.CanvasBounds().Bottom, 30, 1e-4);
}

TEST(PathBaseTest, ImagesAreCopiedWhenTheyMatch) {
    std::array<uint32_t, 6> source{1, 2, 3, 4, 5, 6}, target{};
    const auto bytes = [](std::array<uint32_t, 6>& pixels) { return reinterpret_cast<uint8_t*>(pixels.data()); };
    Probe path;
    path.SetSourceImage(bytes(source), 2, 2, 12);
    path.SetTargetImage(bytes(target), 2, 1, 8);
    EXPECT_EQ(path.ProcessImage(1), kTitleFailure);
    EXPECT_EQ(target[0], 0U);
    path.SetTargetImage(bytes(target), 2, 2, 8);
    EXPECT_EQ(path.ProcessImage(1), kTitleOk);
    EXPECT_EQ(target, (std::array<uint32_t, 6>{1, 2, 4, 5, 0, 0})) << "rows of their own pitch";
    TitleRect out{};
    const TitleRect in{1, 1, 2, 2};
    EXPECT_EQ(path.GetImageBounds(&out, &in), kTitleOk);
    EXPECT_EQ(out.right + out.bottom + out.left + out.top, 4);
}

TEST(PathBaseTest, OpaqueBounds) {
    CImageARGB image(5, 4);
    TitleRect bounds{};
    Probe::FindOpaqueBounds(&bounds, image);
    EXPECT_EQ(bounds.left, 4);
    EXPECT_EQ(bounds.top, 3);
    EXPECT_EQ(bounds.right + bounds.bottom, 0);
    image.Row(2)[1 * 4 + 3] = 1;
    image.Row(1)[3 * 4 + 3] = 255;
    image.Row(3)[4 * 4 + 2] = 255;  // colour without alpha does not count
    Probe::FindOpaqueBounds(&bounds, image);
    EXPECT_EQ(bounds.left, 1);
    EXPECT_EQ(bounds.top, 1);
    EXPECT_EQ(bounds.right, 3);
    EXPECT_EQ(bounds.bottom, 2);
}

}  // namespace
}  // namespace captionfx::test
