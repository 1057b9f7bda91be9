// The interface: slots, status, names, frames, and how triangles are collected.
#include <algorithm>
#include <bit>
#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "sgl/pixel_canvas.h"
#include "support/sgl_program.h"

namespace sgl::test {
namespace {

using Pixels = std::vector<uint32_t>;

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

TEST(SglState, NothingChangesBetweenBeginAndEndButTheBatch) {
    const Pixels red(4, 0xFFFF0000);
    PixelCanvas canvas(4, 4);
    SGLGen& gl = *canvas.gl;
    canvas.BindPicture(5, red, 2);
    const uint32_t name = 5;
    gl.Begin(SGL_TRIANGLES);
    const float corners[][3] = {{0, 0, -1}, {4, 0, -1}, {0, 4, -1}};
    const double at[][2] = {{0, 0}, {1, 0}, {0, 1}};
    for (size_t i = 0; i < 3; ++i) {
        gl.TexCoord2d(at[i][0], at[i][1]);
        gl.Vertex3fv(corners[i]);
        EXPECT_EQ(gl.State().status, SGL_NO_ERROR);
    }
    for (const auto& refused : std::vector<std::function<void()>>{
             [&] { gl.DeleteTextures(1, &name); }, [&] { gl.BindTexture(SGL_TEXTURE_2D, 0); },
             [&] { gl.Viewport(0, 0, 2, 2); }, [&] { gl.Disable(SGL_TEXTURE_2D); }, [&] { gl.SetFrameBuffer(nullptr); },
             [&] { gl.Begin(SGL_TRIANGLES); }, [&] { gl.LoadIdentity(); }}) {
        refused();
        EXPECT_EQ(gl.State().status, SGL_INVALID_OPERATION);
    }
    gl.End();
    EXPECT_EQ(canvas.Pixels()[0], 0xFFFF0000) << "the texture is still there when its triangle is drawn";
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

TEST(SglState, FramesComeAndGo) {
    const PixelCanvas canvas(8, 8);
    SGLGen& gl = *canvas.gl;
    canvas.Rectangle(0, 0, 8, 8);
    gl.Viewport(1, 0, 4, 4);
    EXPECT_EQ(canvas.Pixels(), Pixels(64, 0xFFFFFFFF)) << "a refused viewport keeps the frame";
    // A new frame buffer counts from the next volume on. Until then: not into the old one, which is gone.
    Pixels first(64), second(64);
    const auto takeOver = [&gl] {
        gl.MatrixMode(SGL_PROJECTION);
        gl.Ortho(0, 8, -1, 0, 0.001, 10);
        gl.MatrixMode(SGL_MODELVIEW);
    };
    gl.SetFrameBuffer(first.data());
    canvas.Rectangle(0, 0, 8, 8);
    EXPECT_EQ(first, Pixels(64));
    takeOver();
    gl.SetFrameBuffer(second.data());
    canvas.Rectangle(0, 0, 8, 8);
    EXPECT_EQ(first, Pixels(64, 0xFFFFFFFF));
    second.assign(64, 7);
    gl.ClearColor(1, 1, 1, 1);
    gl.Begin(SGL_TRIANGLES);
    gl.Clear(SGL_COLOR_BUFFER_BIT);
    gl.End();
    EXPECT_EQ(second, Pixels(64));
    gl.Viewport(0, 0, 0, 8);
    canvas.Rectangle(0, 0, 8, 8);
    EXPECT_EQ(gl.GetError(), SGL_NO_ERROR);
    EXPECT_EQ(second, Pixels(64));
    gl.Viewport(0, 0, 8, 8);
    canvas.Rectangle(0, 0, 8, 8);
    EXPECT_EQ(canvas.Pixels(), Pixels(64, 0xFFFFFFFF)) << "after a frame without pixels";
}

// 600 triangles of a pixel's height in three batches, each in a colour of its own that comes with its last corner.
TEST(SglState, ManyTrianglesAreNoneTooMany) {
    const PixelCanvas canvas(2, 600);
    SGLGen& gl = *canvas.gl;
    gl.Begin(SGL_TRIANGLES);
    for (int32_t i = 0; i < 600; ++i) {
        const double y = i, corners[][3] = {{0, y, -1}, {2, y, -1}, {0, y + 1, -1}};
        for (const auto& corner : corners) {
            gl.Color3ub(0, static_cast<uint8_t>(i >> 8), static_cast<uint8_t>(&corner == &corners[2] ? i : 99));
            gl.Vertex3dv(corner);
        }
        EXPECT_EQ(gl.State().triangleCount, i % 256 + 1) << "the 257th triangle begins a new batch";
        EXPECT_TRUE(gl.State().insideBegin);
    }
    const float rest[] = {0, 0, -1};
    gl.Vertex3fv(rest);
    gl.Vertex3fv(rest);
    gl.End();
    const Pixels pixels = canvas.Pixels();
    for (uint32_t i = 0; i < 600; ++i) EXPECT_EQ(pixels[2 * i], 0xFF000000 | i);
    gl.Begin(SGL_TRIANGLES);
    gl.Vertex3fv(rest);
    EXPECT_EQ(gl.State().cornerIndex, 1) << "the corners that were left over are gone";
}

}  // namespace
}  // namespace sgl::test
