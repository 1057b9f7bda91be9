// The seven textured fills.
#include "sgl/span_routines.h"

#include <cmath>
#include <functional>

#include <gtest/gtest.h>

#include "sgl/pixel_canvas.h"

namespace sgl::test {
namespace {

using Pixels = std::vector<uint32_t>;

constexpr int32_t kSide = 8;
constexpr uint32_t kGround = 0x55204080;

/// Texels that differ in every channel; alphas 0, 0x7F, 0x80 and 255 take turns.
Pixels Picture() {
    constexpr std::array<uint32_t, 4> kAlphas = {0, 0x7F, 0x80, 255};
    Pixels picture(kSide * kSide);
    for (uint32_t i = 0; i < picture.size(); ++i)
        picture[i] = kAlphas[(i + i / 8) % 4] << 24 | (i * 4) << 16 | (255 - i) << 8 | i;
    return picture;
}

/// d + (s - d) a / 256, downward, channel by channel.
uint32_t Blended(uint32_t ground, uint32_t texel, int32_t added) {
    uint32_t pixel = ground & 0xFF000000;
    for (uint32_t shift = 0; shift < 24; shift += 8) {
        const double s = texel >> shift & 255, d = ground >> shift & 255, a = static_cast<double>(texel >> 24) + added;
        pixel |= static_cast<uint32_t>(d + std::floor((s - d) * a / 256)) << shift;
    }
    return pixel;
}

TEST(SglSpanRoutines, EachDoesItsOwn) {
    const auto whole = [](uint32_t, uint32_t texel) { return texel; };
    const auto tested = [](uint32_t ground, uint32_t texel) { return texel >> 24 > 127 ? texel : ground; };
    struct Case {
        const char* name;
        int32_t rasterMode;
        std::vector<int32_t> enabled;
        bool wraps;
        std::function<uint32_t(uint32_t ground, uint32_t texel)> pixel;
    };
    const std::vector<Case> cases = {
        {"opaque", 0, {}, false, whole},
        {"alpha test", 0, {SGL_ALPHA_TEST}, true, tested},
        {"blend", 0, {SGL_BLEND, SGL_ALPHA_TEST}, true, [](uint32_t d, uint32_t s) { return Blended(d, s, 1); }},
        {"opaque, depth", 0, {SGL_DEPTH_TEST}, true, whole},
        {"alpha test, depth", 1, {SGL_DEPTH_TEST, SGL_ALPHA_TEST}, true, tested},
        {"blend, depth", 0, {SGL_DEPTH_TEST, SGL_BLEND}, true, [](uint32_t d, uint32_t s) { return Blended(d, s, 0); }},
        {"float", kFloatRasterMode, {}, false, whole},
        {"float, whatever else", kFloatRasterMode, {SGL_DEPTH_TEST, SGL_BLEND, SGL_ALPHA_TEST}, false, whole},
    };
    const Pixels picture = Picture();
    for (const Case& c : cases) {
        const PixelCanvas canvas(kSide, kSide, c.rasterMode);
        Pixels frame(kSide * kSide, kGround), expected(kSide * kSide);
        canvas.gl->SetFrameBuffer(frame.data());
        canvas.gl->MatrixMode(SGL_PROJECTION);
        canvas.gl->Ortho(0, kSide, -1, 0, 0.001, 10);
        canvas.gl->MatrixMode(SGL_MODELVIEW);
        for (const int32_t capability : c.enabled) canvas.gl->Enable(capability);
        canvas.BindPicture(1, picture, kSide);
        // One triangle over the whole frame, so that rows are 8 pixels long and their steps exact.
        canvas.Triangle({{{0, 0, 1, 0, 0}, {16, 0, 1, 2, 0}, {0, 16, 1, 0, 2}}});
        for (int32_t y = 0; y < kSide; ++y) {
            for (int32_t x = 0; x < kSide; ++x) {
                // A pixel takes the texel at its far corner: the last one is outside.
                const auto texel = [&c](int32_t i) { return c.wraps ? (i + 1) % kSide : std::min(i + 1, kSide - 1); };
                const uint32_t source = picture[static_cast<size_t>(texel(y) * kSide + texel(x))];
                expected[static_cast<size_t>(y * kSide + x)] = c.pixel(kGround, source);
            }
        }
        EXPECT_EQ(frame, expected) << c.name;
    }
}

}  // namespace
}  // namespace sgl::test
