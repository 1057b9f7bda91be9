// What every effect has from its base.
#include "paths/path_base.h"

#include <array>

#include <gtest/gtest.h>

namespace captionfx::test {
namespace {

using KVTImageUtility::CImageARGB;

struct Probe final : CPathBase {
    using CPathBase::FindOpaqueBounds;
    using CPathBase::sine_;
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
    const struct {
        float angle, left, right, top, bottom, sine;
    } cases[] = {
        {0, 0, 100, 0, 50, 0},
        {90, -10, 40, -70, 30, -1},  // (x, y) becomes (y - 20 + 10, -(x - 10) + 20)
        {-90, -20, 30, 10, 110, 1},  // (-(y - 20) + 10, x - 10 + 20)
        // c = 0.99999048, s = 0.00436331: -10 c - 20 s + 10, 90 c + 30 s + 10, -20 c - 90 s + 20, 30 c + 10 s + 20
        {0.25F, -0.08717F, 100.13004F, -0.39251F, 50.04335F, -0.00436F},
    };
    for (const auto& c : cases) {
        path.SetStringRect({10, 20, 5, 5}, c.angle);
        EXPECT_NEAR(path.CanvasBounds().Left, c.left, 1e-4) << c.angle;
        EXPECT_NEAR(path.CanvasBounds().Right, c.right, 1e-4) << c.angle;
        EXPECT_NEAR(path.CanvasBounds().Top, c.top, 1e-4) << c.angle;
        EXPECT_NEAR(path.CanvasBounds().Bottom, c.bottom, 1e-4) << c.angle;
        EXPECT_NEAR(path.sine_, c.sine, 1e-5) << "of the negated angle";
    }
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
