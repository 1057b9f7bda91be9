// What every effect has from its base.
#include "paths/path_base.h"

#include <array>

#include <gtest/gtest.h>

namespace captionfx::test {
namespace {

struct Probe final : CPathBase {
    using CPathBase::sine_;
};

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

}  // namespace
}  // namespace captionfx::test
