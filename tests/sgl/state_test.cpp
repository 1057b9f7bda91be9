// The interface: slots and status.
#include <bit>
#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "support/sgl_program.h"

namespace sgl::test {
namespace {

/// A pointer to a virtual operation holds its offset in the table, plus 1; destructors take the first two places.
template <class Operation>
size_t SlotOf(Operation operation) {
    const auto parts = std::bit_cast<std::array<size_t, 2>>(operation);
    return (parts[0] - 1) / sizeof(void*) - 1;
}

TEST(SglState, OperationsKeepTheirSlots) {
    const auto slots = std::apply([](auto... all) { return std::vector<size_t>{SlotOf(all)...}; }, kOperations);
    ASSERT_EQ(slots.size(), 47U);
    for (size_t i = 0; i < slots.size(); ++i) EXPECT_EQ(slots[i], i + 1);
}

TEST(SglState, StatusOfEachRefusal) {
    constexpr int32_t kMost = std::numeric_limits<int32_t>::max();
    static uint32_t out[256];
    static const float params[4] = {};
    struct Case {
        const char* name;
        std::function<void(SGL&)> call;
        int32_t expected;
    };
    const std::vector<Case> cases = {
        {"enable light 7", [](SGL& gl) { gl.Enable(16); }, 31},
        {"enable 6", [](SGL& gl) { gl.Enable(6); }, 33},
        {"viewport aside", [](SGL& gl) { gl.Viewport(1, 0, 8, 8); }, 34},
        {"viewport beyond 31 bits", [](SGL& gl) { gl.Viewport(0, 0, 32768, 16384); }, 34},
        {"viewport of no rows", [](SGL& gl) { gl.Viewport(0, 0, kMost, 0); }, 31},
        {"light 8", [](SGL& gl) { gl.Lightfv(17, SGL_AMBIENT, params); }, 33},
        {"64 names", [](SGL& gl) { gl.GenTextures(64, out); }, 34},
        {"bind to 22", [](SGL& gl) { gl.BindTexture(22, 0); }, 33},
        {"bind name 64", [](SGL& gl) { gl.BindTexture(21, 64); }, 32},
        {"image of another format", [](SGL& gl) { gl.TexImage2D(21, 0, 22, 1, 1, 0, 22, 24, out); }, 33},
        {"begin", [](SGL& gl) { gl.Begin(28); }, 32},
        {"vertex outside", [](SGL& gl) { gl.Vertex3fv(params); }, 32},
        {"read a part", [](SGL& gl) { gl.ReadPixels(0, 0, 8, 8, 23, 24, out); }, 34},
        {"colours and clearing leave the status",
         [](SGL& gl) {
             gl.ShadeModel(2);
             gl.Color3ub(1, 2, 3);
             gl.Clear(0x4100);
         },
         33},
    };
    for (const Case& c : cases) {
        SGLGen gl(0);
        c.call(gl);
        EXPECT_EQ(gl.GetError(), c.expected) << c.name;
    }
}

TEST(SglState, ColoursWrapInEightBits) {
    SGLGen gl(0);
    gl.Color3d(1.5, 0, 1);  // 382 = 0x17E
    EXPECT_EQ(gl.State().currentColor, 0xFF7E00FF);
    gl.Color4f(0.5f, -0.5f, 1, 0.25f);  // -127 = 0x81
    EXPECT_EQ(gl.State().currentColor, 0x3F7F81FF);
    gl.ClearColor(1.5, -1, 0.5, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(gl.State().clearColor, 0x00FF007FU);
}

}  // namespace
}  // namespace sgl::test
