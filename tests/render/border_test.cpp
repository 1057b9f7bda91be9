// Kernels, dilation, rings.
#include "render/border.h"

#include <limits>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "host/caption_fx.h"

namespace captionfx::test {
namespace {

CoverageMask Mask(int32_t width, std::vector<uint8_t> bytes) {
    const auto height = static_cast<int32_t>(bytes.size()) / width;
    return {std::move(bytes), width, height};
}

TEST(BorderTest, KernelsFadeOverOnePixel) {
    CBorder border;
    std::shared_ptr<const BorderKernel> kernel;
    ASSERT_EQ(border.GetKernel(&kernel, 2.5F, 1.5F), kTitleOk);
    EXPECT_EQ(kernel->Cx, 3);
    EXPECT_EQ(kernel->Cy, 2);
    const auto at = [&](int32_t x, int32_t y) { return kernel->Values[static_cast<size_t>((y + 2) * 7 + x + 3)]; };
    EXPECT_EQ(at(0, 0), 255);
    EXPECT_EQ(at(1, 0), 255);   // 2.5 - 1 is above 1
    EXPECT_EQ(at(2, 0), 127);   // half a pixel inside: 127.5 is cut
    EXPECT_EQ(at(3, 0), -127);  // half a pixel outside
    EXPECT_EQ(at(0, 1), 127);
    EXPECT_EQ(at(0, -2), -127);
    EXPECT_EQ(at(-3, 2), -255);
    // On the diagonal (1, 1) the ellipse is sqrt(2 / (6.25 + 2.25)) 2.5 1.5 = 1.81902 away: 0.40481 inside, 103.2.
    EXPECT_EQ(at(1, 1), 103);
    EXPECT_EQ(at(-1, -1), 103);
}

TEST(BorderTest, KernelsAreCachedByTheirExactRadii) {
    CBorder border;
    std::shared_ptr<const BorderKernel> a, b, c;
    border.GetKernel(&a, 2, 2);
    border.GetKernel(&b, 2, 2);
    border.GetKernel(&c, 2, std::nextafter(2.0F, 3.0F));
    EXPECT_EQ(a, b);
    EXPECT_NE(a, c);
    border.ClearKernels();
    EXPECT_EQ(a->Cx, 2) << "a kernel in use stays";
    border.GetKernel(&b, 2, 2);
    EXPECT_NE(a, b);
    EXPECT_EQ(border.GetKernel(nullptr, 1, 1), kTitleNullPointer);
    for (const float bad : {-1.0F, std::numeric_limits<float>::quiet_NaN(), 1e30F}) {
        EXPECT_EQ(border.GetKernel(&a, bad, 1), kTitleInvalidArgument);
        EXPECT_EQ(a, nullptr);
        EXPECT_EQ(border.GetKernel(&a, 1, bad), kTitleInvalidArgument);
    }
}

TEST(BorderTest, RadiiBelowOneLeaveTheGlyph) {
    const CoverageMask glyph = Mask(2, {10, 0, 200, 255});
    for (const auto& [rx, ry] : {std::pair{0.0F, 0.0F}, {-3.0F, -2.0F}}) {
        const std::optional<BorderMasks> masks = MakeBorderMasks(glyph, rx, ry);
        EXPECT_EQ(masks->Dilated.Bytes, glyph.Bytes);
        EXPECT_EQ(masks->Ring.Bytes, (std::vector<uint8_t>{0, 0, 0, 0}));
    }
    const std::optional<BorderMasks> wide = MakeBorderMasks(glyph, 2, 0);  // one radius below 1
    EXPECT_EQ(wide->Ring.Width, 6);
    EXPECT_EQ(wide->Dilated.Bytes, (std::vector<uint8_t>{0, 0, 10, 0, 0, 0, 0, 0, 200, 255, 0, 0}));
    EXPECT_FALSE(MakeBorderMasks(glyph, 1e9F, 1));
}

// The dilation against its plain meaning: every pixel raised by every stamp. Only edges are stamped, so that inside a
// shape a pixel that is no edge is full.
TEST(BorderTest, DilationIsTheLargestOfAllStamps) {
    CBorder border;
    for (uint32_t seed = 1; seed <= 40; ++seed) {
        std::mt19937 random(seed);
        const auto width = static_cast<int32_t>(1 + random() % 12), height = static_cast<int32_t>(1 + random() % 12);
        CoverageMask mask = *MakeMask(width, height);
        for (uint8_t& byte : mask.Bytes) byte = random() % 3 == 0 ? static_cast<uint8_t>(random()) : uint8_t{0};
        std::shared_ptr<const BorderKernel> kernel;
        border.GetKernel(&kernel, 1 + static_cast<float>(random() % 30) / 10,
                         1 + static_cast<float>(random() % 30) / 10);
        CoverageMask dilated = *MakeMask(width + 2 * kernel->Cx, height + 2 * kernel->Cy);
        CBorder::DilateMask(mask, dilated, *kernel);

        const auto level = [&](int32_t x, int32_t y) {
            return x < 0 || y < 0 || x >= width || y >= height ? -1 : int32_t{mask.Row(y)[x]};
        };
        CoverageMask expected = *MakeMask(dilated.Width, dilated.Height);
        const auto raise = [&](int32_t x, int32_t y, int32_t value) {
            uint8_t& byte = expected.Row(y)[x];
            byte = static_cast<uint8_t>(std::clamp(value, int32_t{byte}, 255));
        };
        for (int32_t y = 0; y < height; ++y) {
            for (int32_t x = 0; x < width; ++x) {
                const int32_t p = level(x, y);
                if (p == 0) continue;
                const bool isEdge =
                    p > level(x - 1, y) || p > level(x + 1, y) || p > level(x, y - 1) || p > level(x, y + 1);
                if (!isEdge) raise(x + kernel->Cx, y + kernel->Cy, 255);
                for (int32_t j = 0; isEdge && j <= 2 * kernel->Cy; ++j) {
                    for (int32_t i = 0; i <= 2 * kernel->Cx; ++i) {
                        raise(x + i, y + j, p + kernel->Values[static_cast<size_t>(j * (2 * kernel->Cx + 1) + i)]);
                    }
                }
            }
        }
        ASSERT_EQ(dilated.Bytes, expected.Bytes) << "seed " << seed;
    }
}

TEST(BorderTest, ThreadsShareKernels) {
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < 200; ++i) {
                const auto radius = static_cast<float>(1 + (i + t) % 5);
                EXPECT_TRUE(MakeBorderMasks(Mask(1, {255}), radius, radius));
                if (i % 50 == 0) SharedBorder().ClearKernels();
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace captionfx::test
