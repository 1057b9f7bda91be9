// The built-in image operations, against their definitions in exact arithmetic.
#include "render/image_utility.h"

#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "render/pixel.h"

namespace captionfx::test {
namespace {

ImageUtilityOps& Ops() {
    return BuiltInImageUtility();
}

uint32_t Over(void (ImageUtilityOps::*composite)(uint32_t*, const uint32_t*, int32_t, int32_t, int32_t) noexcept,
              uint32_t source, uint32_t destination) {
    (Ops().*composite)(&destination, &source, 1, 1, 4);
    return destination;
}

TEST(ImageUtilityTest, Div255RoundsToNearestForAllProducts) {
    for (uint32_t v = 0; v <= 255 * 255; ++v) ASSERT_EQ(Div255(v), (2 * v + 255) / 510);
}

TEST(ImageUtilityTest, PremultiplyAndItsInverseForAllPairs) {
    for (uint32_t a = 0; a < 256; ++a) {
        for (uint32_t c = 0; c < 256; ++c) {
            uint32_t pixel = a << 24U | c << 16U | c;
            Ops().Premultiply(&pixel, 1, 1, 4);
            const uint32_t product = (2 * c * a + 255) / 510;
            ASSERT_EQ(pixel, a << 24U | product << 16U | product);
            pixel = a << 24U | c << 8U;
            Ops().Unpremultiply(&pixel, 1, 1, 4);
            const uint32_t quotient = a == 0 ? 0 : std::min(255U, (255 * c + a / 2) / a);
            ASSERT_EQ(pixel, a << 24U | quotient << 8U) << c << " of " << a;
        }
    }
}

TEST(ImageUtilityTest, CompositesRoundOnce) {
    std::mt19937 random(1);
    for (int i = 0; i < 200000; ++i) {
        const auto s = static_cast<uint32_t>(random()), d = static_cast<uint32_t>(random());
        const double sa = AlphaOf(s) / 255.0, da = AlphaOf(d) / 255.0, a = sa + da * (1 - sa);
        const uint32_t straight = Over(&ImageUtilityOps::CompositeStraight, s, d);
        uint32_t premultipliedSource = s;
        for (const uint32_t shift : kColorShifts) {  // a channel beyond its alpha is no premultiplied pixel
            const uint32_t channel = std::min(ChannelOf(s, shift), AlphaOf(s));
            premultipliedSource = (premultipliedSource & ~(255U << shift)) | channel << shift;
        }
        const uint32_t onStraight = Over(&ImageUtilityOps::CompositePremultiplied, premultipliedSource, d);
        if (AlphaOf(s) == 0) {
            ASSERT_EQ(straight, d);
            continue;
        }
        ASSERT_NEAR(AlphaOf(straight), 255 * a, 0.5 + 1e-9);
        for (const uint32_t shift : kColorShifts) {
            const double sc = ChannelOf(s, shift), dc = ChannelOf(d, shift);
            ASSERT_NEAR(ChannelOf(straight, shift), (sc * sa + dc * da * (1 - sa)) / a, 0.5 + 1e-9);
            const double pc = ChannelOf(premultipliedSource, shift);
            ASSERT_NEAR(ChannelOf(onStraight, shift), std::min(255.0, (pc + dc * da * (1 - sa)) / a), 0.5 + 1e-9);
        }
    }
    // Premultiplied on premultiplied: source + div255(destination times what is left), alpha alike.
    EXPECT_EQ(Over(&ImageUtilityOps::CompositePremultipliedOnto, 0x80402010, 0xFF808080), 0xFF806050U + 0U);
    EXPECT_EQ(Over(&ImageUtilityOps::CompositePremultipliedOnto, 0xFF010203, 0xFF808080), 0xFF010203U);
    EXPECT_EQ(Over(&ImageUtilityOps::CompositePremultipliedOnto, 0, 0x12345678), 0x12345678U);
}

TEST(ImageUtilityTest, PlaneFilterIsAVerticalLowpassWithinItsRectangle) {
    // 3 columns of 70 would be one strip and more: the filter must not mix columns nor leave the rectangle.
    constexpr int32_t kWidth = 70, kPitch = 72, kHeight = 3;
    std::vector<uint32_t> pixels(kPitch * kHeight, 0x11111111);
    for (int32_t y = 0; y < kHeight; ++y) {
        for (int32_t x = 0; x < kWidth; ++x) pixels[static_cast<size_t>(y * kPitch + x)] = y == 1 ? 0xFF0000FF : 0;
    }
    Ops().PlaneFilter(pixels.data(), kWidth, kHeight, kPitch * 4);
    for (int32_t x = 0; x < kPitch; ++x) {
        const bool inside = x < kWidth;
        EXPECT_EQ(pixels[static_cast<size_t>(x)], inside ? 0x400000FFU : 0x11111111U);  // 255 / 4, colour not darkened
        EXPECT_EQ(pixels[static_cast<size_t>(kPitch + x)], inside ? 0x800000FFU : 0x11111111U);
    }
    std::vector<uint32_t> flat(4, 0xFF204060);
    Ops().PlaneFilter(flat.data(), 1, 4, 4);
    EXPECT_EQ(flat, std::vector<uint32_t>(4, 0xFF204060)) << "edge rows repeat";
}

}  // namespace
}  // namespace captionfx::test
