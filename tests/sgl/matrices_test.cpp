// The model-view matrix, through the operations that change it.
#include "sgl/matrices.h"

#include <cmath>
#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "sgl/sgl_gen.h"

namespace sgl {
namespace {

TEST(SglMatrices, OperationsMoveAPoint) {
    struct Case {
        const char* name;
        std::function<void(SGL&)> apply;
        Vec3 expected;  ///< Of (1, 2, 3).
    };
    const float columns[] = {1, 0, 0, 0, 0, 2, 0, 0, 0, 0, 3, 0, 10, 20, 30, 1};
    const double columns64[] = {1, 0, 0, 0, 0, 2, 0, 0, 0, 0, 3, 0, 10, 20, 30, 1};
    const std::vector<Case> cases = {
        {"45 is a quarter turn about x: (y, z) to (-z, y)", [](SGL& gl) { gl.Rotated(45, 1, 0, 0); }, {1, -3, 2}},
        {"about y: (z, x) to (x, -z)", [](SGL& gl) { gl.Rotated(45, 0, 1, 0); }, {3, 2, -1}},
        {"about z: (x, y) to (-y, x)", [](SGL& gl) { gl.Rotated(45, 0, 0, 1); }, {-2, 1, 3}},
        {"the general axis does the same", [](SGL& gl) { gl.Rotated(45, 0, 3, 0); }, {3, 2, -1}},
        {"a third of a turn about the diagonal: (x, y, z) to (z, x, y)",
         [](SGL& gl) { gl.Rotated(60, 1, 1, 1); },
         {3, 1, 2}},
        {"the last one is applied first",
         [](SGL& gl) {
             gl.Translated(10, 0, 0);
             gl.Rotated(45, 0, 0, 1);
         },
         {8, 1, 3}},
        {"columns of floats", [&](SGL& gl) { gl.MultMatrixf(columns); }, {11, 24, 39}},
        {"columns of doubles", [&](SGL& gl) { gl.MultMatrixd(columns64); }, {11, 24, 39}},
        {"from z = 5 to the origin", [](SGL& gl) { gl.LookAt(0, 0, 5, 0, 0, 0, 0, 1, 0); }, {1, 2, -2}},
        // f = (-1, 0, 0), side = f x up = (0, 0, -1): x' = -z, y' = y, z' = x - 5
        {"from x = 5 to the origin", [](SGL& gl) { gl.LookAt(5, 0, 0, 0, 0, 0, 0, 7, 0); }, {-3, 2, -4}},
        // Normalised alone, up = (0, 0.8, 0.6) leaves side = (0, 0, -1) x up = (0.8, 0, 0), up' = side x f = (0, 0.8,
        // 0).
        {"a slanted up is not made upright", [](SGL& gl) { gl.LookAt(0, 0, 0, 0, 0, -2, 0, 8, 6); }, {0.8f, 1.6f, 3}},
        {"the projection has no matrix",
         [](SGL& gl) {
             gl.MatrixMode(SGL_PROJECTION);
             gl.Translated(5, 5, 5);
             gl.LookAt(0, 0, 5, 0, 0, 0, 0, 1, 0);
             gl.LoadIdentity();
         },
         {1, 2, 3}},
    };
    for (const Case& c : cases) {
        SGLGen gl(0);
        c.apply(gl);
        const Vec3 p = Transform(gl.State().modelView, {1, 2, 3});
        EXPECT_NEAR(p.x, c.expected.x, 1e-5) << c.name;
        EXPECT_NEAR(p.y, c.expected.y, 1e-5) << c.name;
        EXPECT_NEAR(p.z, c.expected.z, 1e-5) << c.name;
    }
}

TEST(SglMatrices, OnlyAFlaggedIdentityIsSkipped) {
    const SGLMatrix zeros{{}, false}, huge = Translation(3e38f, 0, 0);
    EXPECT_EQ(Product({}, huge).m, huge.m);
    EXPECT_EQ(Product(huge, {}).m, huge.m);
    EXPECT_TRUE(Product({}, {}).isIdentity);
    EXPECT_FALSE(Translation(0, 0, 0).isIdentity);
    EXPECT_EQ(Product({}, zeros).m, zeros.m);
    EXPECT_TRUE(std::isinf(Product(huge, huge).m[3]));
    EXPECT_FALSE(std::isfinite(Rotation(1, {0, 0, 0}).m[0]));
}

}  // namespace
}  // namespace sgl
