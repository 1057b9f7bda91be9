// From eye space to whole numbers on the screen.
#include "sgl/clipping.h"

#include <algorithm>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sgl/scan_conversion.h"

namespace sgl {
namespace {

/// "x,y,z' " of each corner; "nothing" when all is clipped away.
std::string Clip(const ScreenProjection& projection, const std::array<Vec3, 3>& eye) {
    std::array<SGLVertex, 3> vertices{};
    SGLTriangle triangle{};
    for (size_t i = 0; i < 3; ++i) {
        vertices[i].eye = eye[i];
        triangle.corners[i] = &vertices[i];
    }
    ScreenPolygon polygon;
    if (!ClipTriangle(projection, triangle, {}, polygon)) return "nothing";
    std::string text;
    for (int32_t i = 0; i < polygon.count; ++i) {
        const ScreenVertex& v = polygon.At(i);
        text += std::to_string(v.x) + "," + std::to_string(v.y) + "," + std::to_string(v.z) + " ";
    }
    return text;
}

TEST(SglClipping, TrianglesOnAFrameOfEightByEight) {
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN(), kInf = std::numeric_limits<float>::infinity();
    const ScreenProjection flat(false, 8, 8, {0, 1, 0, 8, 0.5f});    // pixels, the axis at (0, 0)
    const ScreenProjection deep(true, 8, 8, {-1, 1, -1, 1, 1});      // 4 pixels a unit at 1, the axis at (4, 4)
    const ScreenProjection nearZero(true, 8, 8, {-1, 1, -1, 1, 0});  // a scale of 0
    struct Case {
        const ScreenProjection& projection;
        std::array<Vec3, 3> eye;
        std::string expected;
    };
    const std::vector<Case> cases = {
        {flat, {{{2.9f, 2, 1}, {6, 2.9f, 2}, {2, 6, 4}}}, "2,2,1000000000 6,2,500000000 2,6,250000000 "},
        {flat, {{{0, 0, 1}, {8, 0, 1}, {8, 8, 1000}}}, "0,0,1000000000 8,0,1000000000 8,8,1000000 "},
        // Right, at half of each way: y 2.9 is cut to 2, not rounded; 1 / z is halfway from 1 to 1 / 3, in 32-bit
        // floats.
        {flat, {{{6, 2, 1}, {10, 3.8f, 3}, {6, 6, 1}}}, "6,2,1000000000 8,2,666666688 8,4,666666688 6,6,1000000000 "},
        // Bottom, at half: x 4.6 and 3.35 are rounded by adding a half.
        {flat,
         {{{2, 6, 1}, {4.5f, 6, 1}, {4.7f, 10, 3}}},
         "3,8,666666688 2,6,1000000000 4,6,1000000000 5,8,666666688 "},
        {flat, {{{-4, 2, 1}, {-1, 2, 1}, {-1, 7, 1}}}, "nothing"},
        {flat, {{{2, -4, 1}, {4, -1, 1}, {3, -1, 1}}}, "nothing"},
        {flat, {{{2, 2, 0.4f}, {4, 2, 0.4f}, {3, 3, 0.49f}}}, "nothing"},
        // All four limits at once: a triangle over the whole frame leaves the frame.
        {flat,
         {{{-50, -20, 1}, {60, -20, 1}, {5, 90, 1}}},
         "0,8,1000000000 0,0,1000000000 8,0,1000000000 8,8,1000000000 "},
        // One corner before the near distance, at 1 = halfway: two corners for one. x = 4 + 4 x / z.
        {deep,
         {{{0, -0.5f, 0.5f}, {0.5f, 1, 2}, {-0.5f, 0.5f, 1.5f}}},
         "3,4,1000000000 4,4,1000000000 5,6,500000000 2,5,666666688 "},
        {deep, {{{0, 0, 1}, {0, 1, 1}, {1, 1, 1}}}, "4,4,1000000000 4,8,1000000000 8,8,1000000000 "},
        // A corner at infinity is cut off like others; what is no number is not drawn.
        {flat, {{{kInf, 2, 1}, {4, 2, 1}, {3, 3, 1}}}, "8,3,1000000000 8,2,1000000000 4,2,1000000000 3,3,1000000000 "},
        {flat, {{{kNan, 2, 1}, {4, 2, 1}, {3, 3, 1}}}, "nothing"},
        {flat, {{{2, kNan, 1}, {4, 2, 1}, {9, 3, 1}}}, "nothing"},
        {nearZero, {{{1, 2, 0}, {4, 2, 0}, {3, 3, 0}}}, "nothing"},
    };
    for (const Case& c : cases) EXPECT_EQ(Clip(c.projection, c.eye), c.expected) << &c - cases.data();
}

/// Adds 1 to each pixel of a polygon, or takes 1 where the ends of a row are the wrong way round, as those of slivers
/// can be: long steps come first on one side and not on the other.
void Cover(const std::vector<ScreenVertex>& corners, std::vector<int32_t>& counts, int32_t side) {
    ScreenPolygon polygon;
    for (const ScreenVertex& corner : corners) polygon.Append(corner);
    std::vector<ScanEdge> table(static_cast<size_t>(side) + 1);
    const ScanRun run = ScanConvert(polygon, table, false);
    for (int32_t y = 0; y < run.rows; ++y) {
        const int32_t left = run.edges[y].left.x, right = run.edges[y].right.x;
        for (int32_t x = std::min(left, right); x < std::max(left, right); ++x)
            counts.at(static_cast<size_t>((run.firstRow + y) * side + x)) += left < right ? 1 : -1;
    }
}

// A frame cut into triangles round a point, in either direction: they cover it without a gap, and share no pixel.
TEST(SglScanConversion, NeighboursShareNoPixel) {
    std::mt19937 random(7);
    for (int round = 0; round < 400; ++round) {
        const int32_t side = 2 + static_cast<int32_t>(random() % 60);
        const auto at = [&] { return static_cast<int32_t>(random() % static_cast<uint32_t>(side + 1)); };
        const ScreenVertex middle{at(), at(), 0, {}};
        std::vector<ScreenVertex> rim = {{0, 0, 0, {}},       {at(), 0, 0, {}},    {side, 0, 0, {}},
                                         {side, at(), 0, {}}, {side, side, 0, {}}, {at(), side, 0, {}},
                                         {0, side, 0, {}},    {0, at(), 0, {}}};
        std::vector<int32_t> counts(static_cast<size_t>(side * side));
        for (size_t i = 0; i < rim.size(); ++i) {
            const ScreenVertex &a = rim[i], &b = rim[(i + 1) % rim.size()];
            round % 2 == 0 ? Cover({middle, a, b}, counts, side) : Cover({b, a, middle}, counts, side);
        }
        EXPECT_EQ(counts, std::vector<int32_t>(counts.size(), 1)) << "round " << round << " side " << side;
    }
}

TEST(SglScanConversion, RowsOfATriangle) {
    // Left: 1 to the left in 4 rows, then again 3 in 1. Right: 5 to the right in 2 rows (steps of 3 and 2, the longer
    // one first), level, then 8 to the left in 3 rows.
    std::vector<ScanEdge> table(9);
    ScreenPolygon polygon;
    for (const ScreenVertex& v : {ScreenVertex{4, 1, 100, {}}, {9, 3, 300, {}}, {0, 6, 130, {}}, {3, 5, 104, {}}})
        polygon.Append(v);
    const ScanRun run = ScanConvert(polygon, table, false);
    ASSERT_EQ(run.rows, 5);
    EXPECT_EQ(run.firstRow, 1);
    constexpr int32_t kLeft[] = {4, 3, 3, 3, 3}, kRight[] = {4, 7, 9, 6, 3};
    constexpr int32_t kLeftZ[] = {100, 101, 102, 103, 104}, kRightZ[] = {100, 200, 300, 244, 188};
    for (int32_t i = 0; i < run.rows; ++i) {
        EXPECT_EQ(table[static_cast<size_t>(i)].left.x, kLeft[i]) << i;
        EXPECT_EQ(table[static_cast<size_t>(i)].right.x, kRight[i]) << i;
        EXPECT_EQ(table[static_cast<size_t>(i)].left.z, kLeftZ[i]) << i;
        EXPECT_EQ(table[static_cast<size_t>(i)].right.z, kRightZ[i]) << i;
    }
}

}  // namespace
}  // namespace sgl
