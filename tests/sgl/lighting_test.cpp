// Light in whole numbers.
#include "sgl/lighting.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "sgl/sgl.h"

namespace sgl {
namespace {

TEST(SglLighting, PropertiesOfALight) {
    Lighting lighting;
    constexpr float kParams[] = {1, 0.1f, -0.5f, 9};
    for (const int32_t property : {SGL_AMBIENT, SGL_DIFFUSE, SGL_SPECULAR}) lighting.Set(3, property, kParams);
    const SGLLight& light = lighting.lights[3];
    for (const Rgb& levels : {light.ambient, light.diffuse}) {
        EXPECT_EQ(levels.r, 65536);
        EXPECT_EQ(levels.g, 6425);    // 25 x 65536 / 255
        EXPECT_EQ(levels.b, -32639);  // -127 x 65536 / 255
    }
    EXPECT_EQ(light.specular.r, 255);
    EXPECT_EQ(light.specular.g, 25);
    EXPECT_EQ(light.specular.b, 129);  // -127
    constexpr float kPosition[] = {0, 3, 4, 9};
    lighting.Set(3, SGL_POSITION, kPosition);
    EXPECT_NEAR(light.direction.y, 0.6f, 1e-6f);
    EXPECT_NEAR(light.direction.z, -0.8f, 1e-6f);
}

// The light of number 0 shines along +z.
TEST(SglLighting, SumsOfLight) {
    constexpr Bgr kColor{40, 120, 200}, kWhite{255, 255, 255};
    Lighting lighting;
    SGLLight& light = lighting.lights[0];
    light.enabled = true;
    light.ambient = {6425, 6425, 6425};
    light.specular = {};
    // Half turned away: 200 x (6425 + 32768) and so on; turned away wholly: the ambient part alone.
    EXPECT_EQ(lighting.Light({0, 0, 32768}, kColor).r, 7838600);
    EXPECT_EQ(lighting.Light({0, 0, 32768}, kColor).b, 1567720);
    EXPECT_EQ(lighting.Light({0, 0, -32768}, kColor).g, 120 * 6425);
    EXPECT_EQ(lighting.Light({0, 0, 65536}, kWhite).r, 0xFF0000);
    // The specular part is that of the light, whatever the colour: 7 x 65536.
    light.specular = {0, 7, 0};
    EXPECT_EQ(lighting.Light({0, 0, 32768}, {}).g, 7 * 65536);
    // Each light is limited before the next takes away: 0xFF0000 - 255 x 32639.
    light.ambient = {2 * 65536, 0, 0};
    lighting.lights[1].enabled = true;
    lighting.lights[1].ambient = {-32639, -32639, 0};
    EXPECT_EQ(lighting.Light({0, 0, 0}, kWhite).r, 0xFF0000 - 8322945);
    EXPECT_EQ(lighting.Light({0, 0, 0}, kWhite).g, -8322945);
}

TEST(SglLighting, ReflectionsFollowTheTenthPower) {
    Lighting lighting;
    SGLLight& light = lighting.lights[0];
    light.enabled = true;
    light.diffuse = {};
    light.specular = {0, 0, 1};  // so that the sum is the table's entry
    light.reflectionSwitch = 1;
    for (int64_t n = 256; n <= 65536; n += 7) {
        const int64_t index = std::clamp<int64_t>(65536 - 2 * (n * n >> 16), 0, 65536);
        long double power = 65536;
        for (int i = 0; i < 10; ++i) power = power * static_cast<long double>(index) / 65536;
        ASSERT_EQ(lighting.Light({0, 0, static_cast<int32_t>(n)}, {}).r, static_cast<int32_t>(power)) << index;
    }
}

}  // namespace
}  // namespace sgl
