// Pictures to look at, in the build's test-output, and what can be said of them in numbers.
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <string>

#include <gtest/gtest.h>

#include "sgl/path_scene.h"
#include "sgl/pixel_canvas.h"
#include "tools/png_file.h"

namespace sgl::test {
namespace {

using Pixels = std::vector<uint32_t>;

void WritePicture(const std::string& name, const Pixels& pixels, int32_t width) {
    std::filesystem::create_directories(CAPTIONFX_TEST_OUTPUT);
    captionfx::WritePng(std::filesystem::path(CAPTIONFX_TEST_OUTPUT) / (name + ".png"), pixels, width,
                        static_cast<int32_t>(pixels.size()) / width);
}

/// The colour of a face with the normal `n` under the scene's light, as floating-point optics say.
uint32_t Lit(uint32_t color, const Vec3& n) {
    const Vec3 light = Vec3{0, -0.5f, 1} / std::sqrt(1.25f);
    const float strength = 0.1f + std::max(0.0f, Dot(n, light));
    uint32_t word = 0xFF000000;
    for (uint32_t shift = 0; shift < 24; shift += 8) {
        const auto level = static_cast<float>(color >> shift & 255U);
        word |= static_cast<uint32_t>(std::min(255.0f, level * strength)) << shift;
    }
    return word;
}

/// A cube of half-size 0.6 turned by `radians` about `axis`, in the middle of the frame.
Pixels LitCube(float radians, const Vec3& axis, int32_t antialias) {
    constexpr int32_t kSide = 160;
    Pixels frame(kSide * kSide, 0xFF404040);
    PathScene scene;
    EXPECT_TRUE(scene.Init(kSide, kSide, antialias));
    scene.AddMesh(CreateBoxMesh(0.6f, -0.6f, -0.6f, 0.6f, 0.6f, -0.6f, 200, 120, 40));
    EXPECT_TRUE(scene.BeginFrame(frame.data(), kSide, kSide));
    scene.ResetObjectTransform(1);
    scene.RotateObject(1, radians, axis.x, axis.y, axis.z);
    scene.TransformObjects();
    scene.BuildDrawList();
    scene.SortDrawList();
    scene.Render();
    return frame;
}

TEST(SglPictures, FacesOfACubeAreLitByTheirSlant) {
    Pixels all;
    for (const float degrees : {0.0f, 35.0f, 70.0f, -35.0f}) {
        const float radians = degrees * std::numbers::pi_v<float> / 180;
        for (const Vec3& axis : {Vec3{1, 0, 0}, Vec3{0, 1, 0}}) {
            const Pixels frame = LitCube(radians, axis, 0);
            all.insert(all.end(), frame.begin(), frame.end());
            // The front's centre is seen above the frame's middle when it is turned up by a positive angle, and to the
            // right when turned to the right: 0.6 sin a sideways at the distance of 4 - 0.6 cos a.
            const float s = std::sin(radians), c = std::cos(radians);
            const float aside = 0.6f * s / (4 - 0.6f * c) * 160;
            const bool up = axis.x == 1;
            const auto x = static_cast<size_t>(80 + (up ? 0 : aside)), y = static_cast<size_t>(80 - (up ? aside : 0));
            const uint32_t expected = Lit(0xC87828, up ? Vec3{0, -s, c} : Vec3{s, 0, c});
            for (uint32_t shift = 0; shift < 32; shift += 8) {
                EXPECT_NEAR(static_cast<int32_t>(frame[y * 160 + x] >> shift & 255U),
                            static_cast<int32_t>(expected >> shift & 255U), 1)
                    << degrees << " degrees about " << (up ? "x" : "y") << ", bits " << shift;
            }
        }
    }
    const Pixels smooth = LitCube(0.6f, {1, 1, 0.3f}, 1);
    all.insert(all.end(), smooth.begin(), smooth.end());
    WritePicture("sgl_lit_cubes", all, 160);
}

struct EyeCorner {
    double x, y, z, s, t;
};

/// The solution of p = b + f (a - b) + g (c - b) along the ray (x, y, 1), as the factors f and g.
std::array<double, 2> Meet(const std::array<EyeCorner, 3>& corners, double x, double y) {
    const auto& [a, b, c] = corners;
    // Columns: the two edges and the negated ray; the right side is -b. Cramer's rule.
    const double m[3][3] = {{a.x - b.x, c.x - b.x, -x}, {a.y - b.y, c.y - b.y, -y}, {a.z - b.z, c.z - b.z, -1}};
    const double r[3] = {-b.x, -b.y, -b.z};
    const auto det = [](const double(&k)[3][3]) {
        return k[0][0] * (k[1][1] * k[2][2] - k[1][2] * k[2][1]) - k[0][1] * (k[1][0] * k[2][2] - k[1][2] * k[2][0]) +
               k[0][2] * (k[1][0] * k[2][1] - k[1][1] * k[2][0]);
    };
    const auto replaced = [&](size_t column) {
        double k[3][3];
        for (size_t i = 0; i < 3; ++i)
            for (size_t j = 0; j < 3; ++j) k[i][j] = j == column ? r[i] : m[i][j];
        return det(k) / det(m);
    };
    return {replaced(0), replaced(1)};
}

constexpr int32_t kSide = 256;  // of the frame, and of a picture whose texels tell where they are from

/// What a pixel's ray meets: a texel, and how far inside; below 0 outside.
struct Met {
    int32_t u, v;
    double inside;
};

/// Each pixel by itself, in double. Its ray goes through its far corner; the frame is 1 wide at the distance of 1.
Met MeetPixel(const std::array<EyeCorner, 3>& corners, int32_t x, int32_t y) {
    const auto ray = [](int32_t i) { return (i - kSide / 2.0 + 1) / kSide; };
    const auto [f, g] = Meet(corners, ray(x), ray(y));
    if (!std::isfinite(f) || !std::isfinite(g)) return {0, 0, -1};  // along the plane
    const auto& [a, b, c] = corners;
    const auto at = [f = f, g = g](double ofA, double ofB, double ofC) {
        return ofB + f * (ofA - ofB) + g * (ofC - ofB);
    };
    const auto texel = [](double whole) { return std::clamp(static_cast<int32_t>(std::floor(whole * kSide)), 0, 255); };
    return {texel(at(a.s, b.s, c.s)), texel(at(a.t, b.t, c.t)), std::min({f, g, 1 - f - g, at(a.z, b.z, c.z) - 1})};
}

using Halves = std::array<std::array<EyeCorner, 3>, 2>;

Pixels DrawHalves(const Halves& halves, int32_t rasterMode, const Pixels& picture) {
    const PixelCanvas canvas(kSide, kSide, rasterMode);
    canvas.gl->MatrixMode(SGL_PROJECTION);
    canvas.gl->Frustum(-0.5, 0.5, -0.5, 0.5, 1, 500);
    canvas.gl->MatrixMode(SGL_MODELVIEW);
    canvas.BindPicture(1, picture, kSide);
    for (const auto& corners : halves) {
        std::array<Corner, 3> narrowed;
        for (size_t i = 0; i < 3; ++i) {
            const EyeCorner& e = corners[i];
            narrowed[i] = {static_cast<float>(e.x), static_cast<float>(e.y), static_cast<float>(e.z), e.s, e.t};
        }
        canvas.Triangle(narrowed);
    }
    return canvas.Pixels();
}

// Where the distance is the same along a row the two ways differ by the last bits of the planes, a texel at most. Where
// the picture recedes along the row, 32 pixels are stepped evenly, and the chord leaves the curve: on the wall 32
// columns from the ray 0.1 reach 0.225, the distance (0.9 / ray) goes from 9 to 4 and is 5.5 in the middle, not 6.5.
// That is 1 / 7 of 256 texels: 36. (Corners are at whole texels here, so that cutting them costs nothing.)
TEST(SglPictures, TexturesInPerspectiveAreThoseOfThePixelByPixelWay) {
    struct Quad {
        const char* name;
        EyeCorner a, b, c, d;
        int32_t most;  ///< Difference, in texels.
    };
    constexpr Quad kQuads[] = {
        {"floor", {-1, 0.8, 2, 0, 0}, {-1, 0.8, 6, 0, 1}, {1, 0.8, 6, 1, 1}, {1, 0.8, 2, 1, 0}, 1},
        {"wall", {0.9, -0.7, 2, 0, 0}, {0.9, 0.7, 2, 0, 1}, {0.9, 0.7, 9, 1, 1}, {0.9, -0.7, 9, 1, 0}, 36},
        {"from behind", {-0.3, 0.4, -1, 0, 0}, {-1.5, 0.4, 5, 0, 1}, {1.5, -0.4, 5, 1, 1}, {0.3, 0.2, -1, 1, 0}, 11},
        {"beyond the frame", {-3, -2, 3, 0, 0}, {-3, 3, 4, 0, 1}, {4, 3, 3, 1, 1}, {3, -3, 5, 1, 0}, 1},
    };
    Pixels picture(size_t{kSide} * kSide), all;
    for (uint32_t i = 0; i < picture.size(); ++i) picture[i] = 0xFF000000 | (i & 255) << 16 | i >> 8;
    for (const Quad& quad : kQuads) {
        const Halves halves = {{{quad.a, quad.b, quad.c}, {quad.c, quad.d, quad.a}}};
        Pixels reference(picture.size());
        std::vector<Met> met;
        for (int32_t i = 0; i < kSide * kSide; ++i) {
            const Met first = MeetPixel(halves[0], i % kSide, i / kSide),
                      second = MeetPixel(halves[1], i % kSide, i / kSide);
            const Met& m = met.emplace_back(first.inside > second.inside ? first : second);
            if (m.inside > 0) reference[static_cast<size_t>(i)] = 0xFF000000 | static_cast<uint32_t>(m.u << 16 | m.v);
        }
        all.insert(all.end(), reference.begin(), reference.end());
        for (const int32_t rasterMode : {0, kFloatRasterMode}) {
            const Pixels drawn = DrawHalves(halves, rasterMode, picture);
            all.insert(all.end(), drawn.begin(), drawn.end());
            int32_t worst = 0;
            for (size_t i = 0; i < drawn.size(); ++i) {
                if (met[i].inside < 0.03) continue;  // a pixel or more from the edges
                ASSERT_NE(drawn[i], 0U) << quad.name << " at " << i % kSide << ", " << i / kSide;
                worst = std::max({worst, std::abs(static_cast<int32_t>(drawn[i] >> 16 & 255) - met[i].u),
                                  std::abs(static_cast<int32_t>(drawn[i] & 255) - met[i].v)});
            }
            EXPECT_LE(worst, quad.most) << quad.name << ", raster mode " << rasterMode;
        }
    }
    WritePicture("sgl_perspective", all, kSide);
}

}  // namespace
}  // namespace sgl::test
