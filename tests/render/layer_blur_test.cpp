// The blur of layers, and the division that it rests on.
#include "render/layer_blur.h"

#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "render/exact_divider.h"
#include "render/pixel.h"

namespace captionfx::test {
namespace {

using Pixels = std::vector<uint32_t>;

TEST(ExactDividerTest, GivesTheQuotient) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; ++i) {
        const uint64_t divisor = 1 + random() % (uint64_t{1} << (1 + random() % 40));
        const uint64_t largest = random() >> (random() % 60);
        const ExactDivider divide(divisor, largest);
        const uint64_t multiple = largest / divisor * divisor;
        for (const uint64_t n : {uint64_t{0}, largest, multiple, multiple - (multiple > 0 ? 1 : 0), largest / 2}) {
            ASSERT_EQ(divide(n), n / divisor) << n << " / " << divisor;
        }
    }
}

TEST(LayerBlurTest, OneBoxIsTheMeanOverItsWindow) {
    // Radius 0.5 on a row: 255 times 0.5 / 2 and 1 / 2, in both directions: 127.5 / 2 = 63.75 and so on.
    Pixels half(25);
    half[12] = 0xFFFFFFFF;
    BlurLayer(half.data(), 5, 5, 0.5F, BlurKind::kOneBox);
    EXPECT_EQ(AlphaOf(half[12]), 64U);
    EXPECT_EQ(AlphaOf(half[11]), 32U);
    EXPECT_EQ(AlphaOf(half[6]), 16U);
    EXPECT_EQ(half[10], 0U);
}

TEST(LayerBlurTest, ReachesNoFartherThanTheRadiusRoundedUp) {
    for (const BlurKind kind : {BlurKind::kOneBox, BlurKind::kThreeBoxes}) {
        for (float radius = 0.05F; radius < 9; radius += 0.35F) {
            Pixels point(441);
            point[220] = 0xFFFFFFFF;
            BlurLayer(point.data(), 21, 21, radius, kind);
            uint32_t sum = 0;
            for (int32_t i = 0; i < 441; ++i) {
                const auto distance = static_cast<float>(std::max(std::abs(i / 21 - 10), std::abs(i % 21 - 10)));
                const uint32_t alpha = AlphaOf(point[static_cast<size_t>(i)]);
                EXPECT_TRUE(alpha == 0 || distance <= std::ceil(radius)) << radius;
                EXPECT_EQ(alpha, AlphaOf(point[static_cast<size_t>(440 - i)])) << "symmetric";
                sum += alpha;
            }
            EXPECT_TRUE(radius > 3 || std::abs(static_cast<int32_t>(sum) - 255) <= 12) << "lost at radius " << radius;
        }
    }
}

TEST(LayerBlurTest, ThreeBoxesAreCloseToAGaussian) {
    constexpr int32_t kSize = 81;
    constexpr double kRadius = 18;
    // Three boxes of radius 6: variance 3 (13^2 - 1) / 12 = 42.
    Pixels edge(kSize * kSize);
    for (int32_t y = 0; y < kSize; ++y) {
        for (int32_t x = 40; x < kSize; ++x) edge[static_cast<size_t>(y * kSize + x)] = 0xFFFFFFFF;
    }
    BlurLayer(edge.data(), kSize, kSize, kRadius, BlurKind::kThreeBoxes);
    for (int32_t x = 22; x < 59; ++x) {
        const double expected = 255 * 0.5 * std::erfc((39.5 - x) / std::sqrt(2 * 42.0));
        EXPECT_NEAR(AlphaOf(edge[static_cast<size_t>(40 * kSize + x)]), expected, 4) << x;
    }
}

TEST(LayerBlurTest, TheShortCutForOneColorChangesNothing) {
    for (uint32_t seed = 1; seed <= 60; ++seed) {
        std::mt19937 random(seed);
        const auto width = static_cast<int32_t>(1 + random() % 30), height = static_cast<int32_t>(1 + random() % 30);
        const uint32_t color = static_cast<uint32_t>(random()) & kColorMask;
        Pixels quick(static_cast<size_t>(width * height));
        for (uint32_t& pixel : quick) {
            const uint32_t alpha = random() % 4 == 0 ? static_cast<uint32_t>(random()) >> 24U : (random() % 2) * 2;
            pixel = alpha == 0 ? static_cast<uint32_t>(random()) & kColorMask : WithAlpha(color, alpha);
        }
        Pixels plain = quick;
        const float radius = static_cast<float>(random() % 1000) / 50;
        const BlurKind kind = random() % 2 == 0 ? BlurKind::kOneBox : BlurKind::kThreeBoxes;
        BlurLayer(quick.data(), width, height, radius, kind);
        BlurLayerPlain(plain.data(), width, height, radius, kind);
        ASSERT_EQ(quick, plain) << "seed " << seed;
    }
}

// Against the blur of pixels, which divides in 64 bits; boxes on both sides of what fits vectors.
TEST(LayerBlurTest, CoverageIsTheAlphaOfOneColor) {
    std::vector<CoverageBlur*> all = VectorCoverageBlurs();
    all.push_back(nullptr);
    for (uint32_t seed = 1; seed <= 200; ++seed) {
        std::mt19937 random(seed);
        const auto side = [&] { return static_cast<int32_t>(1 + random() % (seed % 4 == 0 ? 150 : 40)); };
        const int32_t width = side(), height = side(), pitch = width + static_cast<int32_t>(random() % 4);
        const BlurKind kind = random() % 2 == 0 ? BlurKind::kOneBox : BlurKind::kThreeBoxes;
        constexpr float kScales[] = {1, 7, 30, 420};
        const auto fraction = static_cast<float>(1 + random() % 1000) / 1000;
        float radius = kScales[random() % 4] * fraction;
        if (random() % 3 == 0) radius = std::ceil(radius);
        const uint32_t threshold = random() % 256;  // between noise and nothing but full and clear
        std::vector<uint8_t> before(static_cast<size_t>(pitch * height));
        for (uint8_t& byte : before) {
            const auto level = static_cast<uint32_t>(random()) >> 24U;
            byte = static_cast<uint8_t>(level > threshold ? 255 : level % 3 == 0 ? level : 0);
        }

        Pixels pixels(static_cast<size_t>(width * height));
        const auto at = [&](size_t i) {
            return i / static_cast<size_t>(width) * static_cast<size_t>(pitch) + i % static_cast<size_t>(width);
        };
        for (size_t i = 0; i < pixels.size(); ++i) pixels[i] = uint32_t{before[at(i)]} << kAlphaShift;
        BlurLayerPlain(pixels.data(), width, height, radius, kind);
        std::vector<uint8_t> expected = before;  // what lies between the rows stays
        for (size_t i = 0; i < pixels.size(); ++i) expected[at(i)] = static_cast<uint8_t>(AlphaOf(pixels[i]));
        for (size_t i = 0; i < all.size(); ++i) {
            std::vector<uint8_t> actual = before;
            BlurCoverageWith(actual.data(), width, height, pitch, radius, kind, all[i]);
            ASSERT_EQ(actual, expected) << "seed " << seed << ", width no. " << i << ", " << width << " by " << height
                                        << ", radius " << radius;
        }
    }
}

TEST(LayerBlurTest, MeansOfVectorsAreExact) {
    uint32_t found = 0;
    for (int64_t whole = 0; whole < 80; ++whole) {
        for (uint32_t edgeWeight = 0; edgeWeight < 256; ++edgeWeight) {
            const std::optional<BoxStep> box = MakeBoxStep(whole, edgeWeight);
            if (!box) continue;
            ++found;
            const uint64_t divisor = box->Weight, largest = 65280 * divisor + divisor / 2;
            for (const uint64_t quotient : {1U, 255U, 256U, 32767U, 65279U, 65280U}) {
                for (const uint64_t n : {quotient * divisor - 1, quotient * divisor, largest}) {
                    ASSERT_EQ(box->Quotient(static_cast<uint32_t>(n)), n / divisor) << whole << ' ' << edgeWeight;
                }
            }
        }
    }
    EXPECT_GE(found, 63U * 256 - 1) << "all boxes below 63 pixels but the one that changes nothing";
}

TEST(LayerBlurTest, ColorIsWeighedByAlpha) {
    // Red of full alpha beside green of alpha 51 (a fifth): at the seam 5 parts of red to 1 of green.
    Pixels row = {0xFFFF0000, 0x3300FF00, 0, 0};
    BlurLayer(row.data(), 4, 1, 1, BlurKind::kOneBox);
    EXPECT_EQ(row[0] & kColorMask, 0x00D52B00U);  // 212.5 and 42.5
    EXPECT_EQ(row[2] & kColorMask, 0x0000FF00U);
}

TEST(LayerBlurTest, RadiiThatBlurNothing) {
    const Pixels before = {0x00123456, 0x80FFFFFF};
    for (const float radius : {0.0F, -3.0F, std::numeric_limits<float>::quiet_NaN()}) {
        Pixels pixels = before;
        BlurLayer(pixels.data(), 2, 1, radius, BlurKind::kOneBox);
        EXPECT_EQ(pixels, before);
    }
    Pixels pixels = before;
    BlurLayer(pixels.data(), 2, 1, std::numeric_limits<float>::infinity(), BlurKind::kThreeBoxes);
    BlurLayer(nullptr, 2, 1, 3, BlurKind::kThreeBoxes);
    BlurLayer(pixels.data(), 0, 1, 3, BlurKind::kThreeBoxes);
    uint8_t coverage[] = {0, 255, 3};
    for (const float radius : {0.0F, -3.0F, std::numeric_limits<float>::quiet_NaN()}) {
        BlurCoverage(coverage, 3, 1, 3, radius, BlurKind::kOneBox);
        EXPECT_EQ(coverage[1], 255);
    }
    BlurCoverage(nullptr, 2, 1, 2, 3, BlurKind::kThreeBoxes);
}

}  // namespace
}  // namespace captionfx::test
