// Light in whole numbers.
#include "sgl/lighting.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "sgl/sgl.h"

namespace sgl {
namespace {

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
