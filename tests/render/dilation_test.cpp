// The dilation by vectors against the one by stamps.
#include "render/dilation.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "render/border.h"

namespace captionfx::test {
namespace {

/// What masks look like, and what they may look like: levels of shapes that end softly, of noise, of shapes that wrap
/// from 255 to 0 as doubled ones do, and of hard shapes with holes.
enum class MaskKind { kSoft, kNoise, kWrapped, kHard, kClear, kKinds };

CoverageMask RandomMask(std::mt19937& random, int32_t width, int32_t height, MaskKind kind) {
    CoverageMask mask = *MakeMask(width, height);
    const int32_t cx = static_cast<int32_t>(random()) % width, cy = static_cast<int32_t>(random()) % height;
    const auto steepness = static_cast<int32_t>(1 + random() % 90);
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
            const int32_t slope = 300 - steepness * (std::abs(x - cx) + std::abs(y - cy));
            uint8_t& byte = mask.Row(y)[x];
            if (kind == MaskKind::kSoft) byte = static_cast<uint8_t>(std::clamp(slope, 0, 255));
            if (kind == MaskKind::kNoise) byte = random() % 3 == 0 ? static_cast<uint8_t>(random()) : uint8_t{0};
            if (kind == MaskKind::kWrapped) byte = static_cast<uint8_t>(2 * std::clamp(slope, 0, 255));
            if (kind == MaskKind::kHard) byte = slope > 0 && random() % 9 != 0 ? 255 : 0;
        }
    }
    return mask;
}

/// Radii that are whole, a hair beside whole, small, flat, and far larger than the mask. None lies below 1 / 8: what
/// rounds up to 0 has no kernel.
float RandomRadius(std::mt19937& random) {
    switch (random() % 6) {
        case 0:
            return static_cast<float>(1 + random() % 8);
        case 1:
            return std::nextafter(static_cast<float>(1 + random() % 8), 0.0F);
        case 2:
            return 0.125F + static_cast<float>(random() % 8) / 10;
        case 3:
            return static_cast<float>(random() % 900) / 10 + 1;
        default:
            return 1 + static_cast<float>(random() % 100) / 20;
    }
}

TEST(DilationTest, AllWidthsGiveTheBytesOfTheStamps) {
    CBorder border;
    const std::vector<Dilator*> all = VectorDilators();
    for (uint32_t seed = 1; seed <= 300; ++seed) {
        std::mt19937 random(seed);
        const auto side = [&] { return static_cast<int32_t>(1 + random() % (seed % 3 == 0 ? 90 : 20)); };
        const int32_t width = side(), height = side();
        const auto kind = static_cast<MaskKind>(seed % static_cast<uint32_t>(MaskKind::kKinds));
        const CoverageMask mask = RandomMask(random, width, height, kind);
        std::shared_ptr<const BorderKernel> kernel;
        const float radiusX = RandomRadius(random), radiusY = RandomRadius(random);
        ASSERT_EQ(border.GetKernel(&kernel, radiusX, radiusY), 0);

        CoverageMask expected = *MakeMask(width + 2 * kernel->Cx, height + 2 * kernel->Cy), actual = expected;
        CBorder::DilateMaskPlain(mask, expected, *kernel);
        for (size_t i = 0; i < all.size(); ++i) {
            std::ranges::fill(actual.Bytes, uint8_t{0x5A});
            DilateByPlan(mask, actual, kernel->Plan, all[i]);
            ASSERT_EQ(actual.Bytes, expected.Bytes) << "seed " << seed << ", width no. " << i << ", " << width << " by "
                                                    << height << ", radii " << radiusX << ' ' << radiusY;
        }
    }
}

// Rows of more than a block, so that runs grow in several; and a kernel of several bands over a mask of one row.
TEST(DilationTest, LargeMasksAndLowOnes) {
    CBorder border;
    std::mt19937 random(5);
    struct Case {
        int32_t Width, Height;
        float RadiusX, RadiusY;
    };
    for (const Case& c : {Case{700, 61, 9.4F, 7}, {3, 500, 40, 2.25F}, {17000, 2, 3, 2}, {40, 1, 20, 120.5F}}) {
        const CoverageMask mask = RandomMask(random, c.Width, c.Height, MaskKind::kNoise);
        std::shared_ptr<const BorderKernel> kernel;
        border.GetKernel(&kernel, c.RadiusX, c.RadiusY);
        CoverageMask expected = *MakeMask(c.Width + 2 * kernel->Cx, c.Height + 2 * kernel->Cy), actual = expected;
        CBorder::DilateMaskPlain(mask, expected, *kernel);
        CBorder::DilateMask(mask, actual, *kernel);
        EXPECT_EQ(actual.Bytes, expected.Bytes) << c.Width << " by " << c.Height;
    }
}

/// Kernels of any values, as none is that an ellipse gives: runs that do not lie in the middle, several in a row, and
/// every weight.
TEST(DilationTest, PlansHoldAnyKernel) {
    const std::vector<Dilator*> all = VectorDilators();
    for (uint32_t seed = 1; seed <= 100; ++seed) {
        std::mt19937 random(seed);
        BorderKernel kernel;
        kernel.Cx = static_cast<int32_t>(1 + random() % 12);
        kernel.Cy = static_cast<int32_t>(1 + random() % 40);
        for (int32_t i = 0; i < (2 * kernel.Cx + 1) * (2 * kernel.Cy + 1); ++i) {
            const auto value = static_cast<int32_t>(random() % 1400) - 600;
            kernel.Values.push_back(static_cast<int16_t>(std::clamp(value, -255, 255)));
        }
        kernel.Plan = MakeDilationPlan(kernel.Values, kernel.Cx, kernel.Cy);
        const CoverageMask mask = RandomMask(random, 1 + static_cast<int32_t>(random() % 9), 7, MaskKind::kNoise);
        CoverageMask expected = *MakeMask(mask.Width + 2 * kernel.Cx, 7 + 2 * kernel.Cy), actual = expected;
        CBorder::DilateMaskPlain(mask, expected, kernel);
        for (Dilator* const dilate : all) {
            DilateByPlan(mask, actual, kernel.Plan, dilate);
            ASSERT_EQ(actual.Bytes, expected.Bytes) << "seed " << seed;
        }
    }
}

}  // namespace
}  // namespace captionfx::test
