// The interface: slots, status, names, frames, and how triangles are collected.
#include <algorithm>
#include <bit>
#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "sgl/pixel_canvas.h"

namespace sgl::test {
namespace {

using Pixels = std::vector<uint32_t>;

/// A pointer to a virtual operation holds its offset in the table, plus 1; destructors take the first two places.
template <class Operation>
size_t SlotOf(Operation operation) {
    const auto parts = std::bit_cast<std::array<size_t, 2>>(operation);
    return (parts[0] - 1) / sizeof(void*) - 1;
}

template <class... Operations>
std::vector<size_t> SlotsOf(Operations... operations) {
    return {SlotOf(operations)...};
}

TEST(SglState, OperationsKeepTheirSlots) {
    const std::vector<size_t> slots =
        SlotsOf(&SGL::ClearColor, &SGL::ShadeModel, &SGL::Enable, &SGL::Disable, &SGL::Viewport, &SGL::GetIntegerv,
                &SGL::Lightfv, &SGL::GenTextures, &SGL::DeleteTextures, &SGL::BindTexture, &SGL::TexImage2D,
                &SGL::Clear, &SGL::FrontFace, &SGL::MatrixMode, &SGL::LoadIdentity, &SGL::Translated, &SGL::Rotated,
                &SGL::MultMatrixf, &SGL::MultMatrixd, &SGL::LookAt, &SGL::Color3ub, &SGL::Color3d, &SGL::Color3f,
                &SGL::Color4ub, &SGL::Color4d, &SGL::Color4f, &SGL::Color3fv, &SGL::Color3dv, &SGL::Color3ubv,
                &SGL::Color4fv, &SGL::Color4dv, &SGL::Color4ubv, &SGL::TexCoord2d, &SGL::Begin, &SGL::Normal3fv,
                &SGL::Normal3dv, &SGL::Vertex3fv, &SGL::Vertex3dv, &SGL::End, &SGL::GetBeginState, &SGL::ReadPixels,
                &SGL::Frustum, &SGL::Ortho, &SGL::GetError, &SGL::SetFrameBuffer, &SGL::SetColorSpace, &SGL::Flush);
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
        {"shade 2", [](SGL& gl) { gl.ShadeModel(2); }, 33},
        {"enable light 7", [](SGL& gl) { gl.Enable(16); }, 31},
        {"enable 6", [](SGL& gl) { gl.Enable(6); }, 33},
        {"disable 17", [](SGL& gl) { gl.Disable(17); }, 33},
        {"viewport aside", [](SGL& gl) { gl.Viewport(1, 0, 8, 8); }, 34},
        {"viewport below 0", [](SGL& gl) { gl.Viewport(0, 0, 8, -1); }, 34},
        {"viewport beyond 31 bits", [](SGL& gl) { gl.Viewport(0, 0, 32768, 16384); }, 34},
        {"viewport of no rows", [](SGL& gl) { gl.Viewport(0, 0, kMost, 0); }, 31},
        {"get 8", [](SGL& gl) { gl.GetIntegerv(8, out); }, 33},
        {"light 8", [](SGL& gl) { gl.Lightfv(17, SGL_AMBIENT, params); }, 33},
        {"light of no property", [](SGL& gl) { gl.Lightfv(9, 21, params); }, 33},
        {"light at the origin", [](SGL& gl) { gl.Lightfv(16, SGL_POSITION, params); }, 31},
        {"64 names", [](SGL& gl) { gl.GenTextures(64, out); }, 34},
        {"-1 names", [](SGL& gl) { gl.GenTextures(-1, nullptr); }, 31},
        {"delete -1", [](SGL& gl) { gl.DeleteTextures(-1, out); }, 34},
        {"bind to 22", [](SGL& gl) { gl.BindTexture(22, 0); }, 33},
        {"bind name 64", [](SGL& gl) { gl.BindTexture(21, 64); }, 32},
        {"image of another format", [](SGL& gl) { gl.TexImage2D(21, 0, 22, 1, 1, 0, 22, 24, out); }, 33},
        {"image without pixels", [](SGL& gl) { gl.TexImage2D(21, 0, 22, 1, 1, 0, 23, 24, nullptr); }, 31},
        {"front 28", [](SGL& gl) { gl.FrontFace(28); }, 33},
        {"matrix mode 27", [](SGL& gl) { gl.MatrixMode(27); }, 33},
        {"begin 29", [](SGL& gl) { gl.Begin(29); }, 33},
        {"begin", [](SGL& gl) { gl.Begin(28); }, 32},
        {"vertex outside", [](SGL& gl) { gl.Vertex3fv(params); }, 32},
        {"end outside", [](SGL& gl) { gl.End(); }, 32},
        {"begin, end",
         [](SGL& gl) {
             gl.Begin(28);
             gl.GetError();
             gl.End();
         },
         31},
        {"begin state",
         [](SGL& gl) {
             gl.ShadeModel(2);
             gl.GetBeginState();
         },
         31},
        {"read with an offset", [](SGL& gl) { gl.ReadPixels(1, 0, 256, 256, 23, 24, out); }, 34},
        {"read a part", [](SGL& gl) { gl.ReadPixels(0, 0, 8, 8, 23, 24, out); }, 34},
        {"read another type", [](SGL& gl) { gl.ReadPixels(0, 0, 256, 256, 23, 23, out); }, 33},
        {"frustum without a frame",
         [](SGL& gl) {
             gl.SetFrameBuffer(nullptr);
             gl.Frustum(-1, 1, -1, 1, 1, 2);
         },
         32},
        {"ortho without a frame",
         [](SGL& gl) {
             gl.SetFrameBuffer(nullptr);
             gl.Ortho(-1, 1, -1, 1, 1, 2);
         },
         31},
        {"clear leaves the status",
         [](SGL& gl) {
             gl.ShadeModel(2);
             gl.Clear(0x4100);
         },
         33},
        {"a colour too",
         [](SGL& gl) {
             gl.ShadeModel(2);
             gl.Color3ub(1, 2, 3);
             gl.TexCoord2d(1, 1);
             gl.Flush();
         },
         33},
    };
    for (const Case& c : cases) {
        SGLGen gl(0);
        c.call(gl);
        EXPECT_EQ(gl.GetError(), c.expected) << c.name;
    }
    SGL base;
    EXPECT_EQ(base.GetError(), 31);
    EXPECT_EQ(base.GetBeginState(), 0);
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

TEST(SglState, ColoursAndVolumes) {
    SGLGen gl(0);
    gl.Color3d(1.5, 0, 1);  // 382 = 0x17E
    EXPECT_EQ(gl.State().currentColor, 0xFF7E00FF);
    gl.Color4f(0.5f, -0.5f, 1, 0.25f);  // -127 = 0x81
    EXPECT_EQ(gl.State().currentColor, 0x3F7F81FF);
    gl.ClearColor(1.5, -1, 0.5, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(gl.State().clearColor, 0x00FF007FU);
    gl.Frustum(-2, 2, -3, 3, 4, 5);
    EXPECT_EQ(gl.State().frustumBottom, -3);
    EXPECT_EQ(gl.State().frustumTop, 3);
    EXPECT_FALSE(gl.State().perspective) << "not in this matrix mode";
    gl.MatrixMode(SGL_PROJECTION);
    gl.Frustum(-2, 2, -3, 3, 4, 5);
    EXPECT_TRUE(gl.State().perspective);
}

TEST(SglState, TextureNames) {
    const Pixels pixels(4);
    SGLGen gl(0);
    std::vector<uint32_t> names(64, 99);
    gl.GenTextures(2, names.data());
    gl.GenTextures(64, names.data());
    EXPECT_EQ(names[0], 1U) << "asking reserves nothing";
    EXPECT_EQ(names[62], 63U);
    EXPECT_EQ(names[63], 99U);
    const auto give = [&](uint32_t name, const uint32_t* picture, int32_t width) {
        gl.BindTexture(SGL_TEXTURE_2D, name);
        gl.TexImage2D(SGL_TEXTURE_2D, 0, SGL_RGBA, width, 4, 0, SGL_BGRA, SGL_UNSIGNED_BYTE, picture);
        return gl.State().textures[name];
    };
    EXPECT_EQ(give(1, pixels.data(), 100)->log2Width, 0);
    EXPECT_EQ(give(1, pixels.data(), 1024)->log2Width, 10);
    EXPECT_EQ(give(3, pixels.data(), 2048)->log2Width, 0);
    EXPECT_EQ(give(3, pixels.data(), 0)->log2Height, 2);
    gl.GenTextures(2, names.data());
    EXPECT_EQ(names[0], 2U);
    EXPECT_EQ(names[1], 4U);
    EXPECT_EQ(give(1, nullptr, 4), nullptr);
    const uint32_t doomed[] = {3, 64, 0xFFFFFFFF, 1};
    gl.DeleteTextures(4, doomed);
    EXPECT_EQ(gl.State().textures[3], nullptr);
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
    gl.Viewport(0, 0, 8, 8);
    canvas.Rectangle(0, 0, 8, 8);
    EXPECT_EQ(canvas.Pixels(), Pixels(64, 0xFFFFFFFF));
    EXPECT_EQ(second, Pixels(64));
    gl.Viewport(0, 0, 0, 8);
    canvas.Rectangle(0, 0, 8, 8);
    EXPECT_EQ(gl.GetError(), SGL_NO_ERROR);
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

// The drop goes by the volume as stored, the clip by the one that took effect.
TEST(SglState, BehindTheNearDistance) {
    for (const double nearZ : {2.0, 1.999, 0.0, -5.0}) {
        const PixelCanvas canvas(4, 4);
        canvas.gl->Ortho(0, 4, -1, 0, nearZ, 10);  // stored alone: the matrix mode is that of the model
        canvas.Rectangle(0, 0, 4, 4, 2);
        EXPECT_EQ(canvas.Pixels(), Pixels(16, nearZ < 2 ? 0xFFFFFFFF : 0)) << nearZ;
    }
}

}  // namespace
}  // namespace sgl::test
