// The fills without a picture, and what decides about them.
#include <array>

#include <gtest/gtest.h>

#include "sgl/pixel_canvas.h"

namespace sgl::test {
namespace {

using Pixels = std::vector<uint32_t>;

/// A frame with `word` in the rectangle and zeroes round it.
Pixels Filled(int32_t width, int32_t height, int32_t left, int32_t top, int32_t right, int32_t bottom, uint32_t word) {
    Pixels pixels(static_cast<size_t>(width * height));
    for (int32_t y = top; y < bottom; ++y)
        for (int32_t x = left; x < right; ++x) pixels[static_cast<size_t>(y * width + x)] = word;
    return pixels;
}

TEST(SglFills, ARectangle) {
    struct Case {
        const char* name;
        std::vector<int32_t> enabled;
        int32_t shadeModel;
        uint32_t color, yuv, expected;
    };
    const std::vector<Case> cases = {
        {"flat", {}, SGL_FLAT, 0x123456, 0, 0xFF123456},
        {"with depth alpha is 0", {SGL_DEPTH_TEST}, SGL_FLAT, 0x123456, 0, 0x00123456},
        // Y = (3518 x 255 + 67584) >> 12
        {"white in YUV", {}, SGL_FLAT, 0xFFFFFF, 1, 0xFFEB8080},
        // Y = (1053 x 255 + 67584) >> 12, U = (-606 x 255 + 526336) >> 12, V = (1798 x 255 + 526336) >> 12
        {"red in YUV", {}, SGL_FLAT, 0xFF0000, 7, 0xFF525AF0},
        {"with depth never YUV", {SGL_DEPTH_TEST}, SGL_FLAT, 0xFFFFFF, 1, 0x00FFFFFF},
        {"blending is for textures", {SGL_BLEND, SGL_ALPHA_TEST}, SGL_FLAT, 0x123456, 0, 0xFF123456},
        {"lit by nothing", {SGL_LIGHTING}, SGL_FLAT, 0x123456, 0, 0xFF000000},
        {"smooth without depth", {SGL_LIGHT0}, SGL_SMOOTH, 0xFFFFFF, 0, 0},
        // Ambient 0.5 alone, though light 0 shines straight on it: 255 x 32639 >> 16; the frame's alpha stays.
        {"smooth", {SGL_LIGHT0, SGL_DEPTH_TEST}, SGL_SMOOTH, 0xFFFFFF, 1, 0x007E7E7E},
        {"smooth under no light", {SGL_DEPTH_TEST}, SGL_SMOOTH, 0xFFFFFF, 0, 0},
    };
    for (const Case& c : cases) {
        const PixelCanvas canvas(8, 6);
        for (const int32_t capability : c.enabled) canvas.gl->Enable(capability);
        constexpr float kHalf[] = {0.5f, 0.5f, 0.5f, 1};
        canvas.gl->Lightfv(SGL_LIGHT0, SGL_AMBIENT, kHalf);
        canvas.gl->ShadeModel(c.shadeModel);
        canvas.gl->SetColorSpace(c.yuv);
        canvas.gl->Color3ub(static_cast<uint8_t>(c.color >> 16), static_cast<uint8_t>(c.color >> 8),
                            static_cast<uint8_t>(c.color));
        canvas.Rectangle(2, 1, 6, 4);
        EXPECT_EQ(canvas.Pixels(), Filled(8, 6, 2, 1, 6, 4, c.expected)) << c.name;
    }
}

TEST(SglFills, NearerWinsAndEqualLoses) {
    for (const bool nearFirst : {true, false}) {
        const PixelCanvas canvas(8, 6);
        canvas.gl->Enable(SGL_DEPTH_TEST);
        for (const bool isNear : {nearFirst, !nearFirst}) {
            canvas.gl->Color3ub(0, isNear ? 255 : 0, 0);
            canvas.Rectangle(0, 0, 8, 6, isNear ? 2.0f : 3.0f);
        }
        canvas.gl->Color3ub(9, 9, 9);
        canvas.Rectangle(0, 0, 8, 6, 2.0f);
        EXPECT_EQ(canvas.Pixels(), Filled(8, 6, 0, 0, 8, 6, 0x00FF00));
        canvas.gl->Clear(SGL_DEPTH_BUFFER_BIT);
        canvas.Rectangle(0, 0, 8, 6, 9.0f);
        EXPECT_EQ(canvas.Pixels(), Filled(8, 6, 0, 0, 8, 6, 0x090909)) << "a clear buffer is infinitely far";
    }
}

TEST(SglFills, CullingTellsTheSidesApart) {
    for (const bool perspective : {false, true}) {
        for (const int32_t frontFace : {SGL_CW, SGL_CCW}) {
            for (const bool turned : {false, true}) {
                const PixelCanvas canvas(8, 8);
                canvas.gl->Enable(SGL_CULL_FACE);
                canvas.gl->FrontFace(frontFace);
                canvas.gl->MatrixMode(SGL_PROJECTION);
                if (perspective) canvas.gl->Frustum(0, 8, -8, 0, 1, 10);
                canvas.gl->MatrixMode(SGL_MODELVIEW);
                // Rightward, then down the frame: C . (A x B) = 2 (6 x 6 + ...) is above 0, which is counterclockwise
                // here.
                const Corner a{1, 1, 2}, b{6, 1, 2}, c{6, 6, 2};
                turned ? canvas.Triangle({a, c, b}) : canvas.Triangle({a, b, c});
                const bool drawn = canvas.Pixels() != Pixels(64);
                EXPECT_EQ(drawn, turned == (frontFace == SGL_CW)) << perspective << frontFace << turned;
            }
        }
    }
}

}  // namespace
}  // namespace sgl::test
