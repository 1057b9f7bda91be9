// Effects on images, on pictures of a few pixels.
#include "paths/image_paths.h"

#include <functional>

#include <gtest/gtest.h>

#include "paths/perspective_scroll.h"
#include "paths/placement_rows.h"

namespace captionfx::test {
namespace {

using Pixels = std::vector<uint32_t>;

constexpr uint32_t kOpaque = 0xFF000000;

void SetImages(CPathBase& path, Pixels& source, Pixels& target, int32_t width) {
    const auto height = static_cast<int32_t>(source.size()) / width;
    path.SetSourceImage(reinterpret_cast<uint8_t*>(source.data()), width, height, width * 4);
    path.SetTargetImage(reinterpret_cast<uint8_t*>(target.data()), width, height, width * 4);
}

/// Opaque in columns 2 to 4: the wipe's columns are 1 to 5, five wide.
TEST(ImagePathsTest, WipesSmearTheColumnAtTheirEdge) {
    const Pixels text{0, 9, kOpaque | 2, kOpaque | 3, kOpaque | 4, 0, 7, 8};
    const uint32_t a = text[2], b = text[3], c = text[4], held = 0x01010101;
    const struct {
        bool isLeft;
        float progress;
        Pixels expected;
    } rows[] = {
        {true, 0.5F, {b, b, b, b, c, 0, 7, 8}},      // 5 - trunc(2.5) = 3
        {true, 0.0F, {0, 0, 0, 0, 0, 0, 7, 8}},      // the column behind the text
        {true, 1.0F, text},                          // 0
        {true, 2.0F, text},                          // -5
        {true, -0.7F, Pixels(8, 0)},                 // 5 + 3
        {true, 1e30F, Pixels(8, 0)},                 // cut to -2^31
        {false, 0.5F, {0, 9, a, b, b, b, b, held}},  // trunc(2.5) + 1 = 3
        {false, 0.0F, {0, 9, 9, 9, 9, 9, 9, held}},  // the column before the text
        {false, 1.0F, {0, 9, a, b, c, 0, 7, held}},  // 6
        {false, 1.4F, text},                         // 8
        {false, -0.5F, Pixels(8, 0)},                // -1
    };
    for (const auto& row : rows) {
        Pixels source = text, target(8, held);
        const auto path = FindPathMaker(row.isLeft ? "PATH_BLURLEFT" : "PATH_BLURRIGHT")();
        SetImages(*path, source, target, 8);
        EXPECT_EQ(path->ProcessImage(row.progress), kTitleOk);
        EXPECT_EQ(target, row.expected) << row.isLeft << ' ' << row.progress;
        Pixels small(2);
        path->SetTargetImage(reinterpret_cast<uint8_t*>(small.data()), 2, 1, 8);
        EXPECT_EQ(path->ProcessImage(row.progress), kTitleFailure);
    }
}

TEST(ImagePathsTest, BoundsAreWhatTheResultCanReach) {
    Pixels image(100 * 40);
    const auto boundsOf = [&](const char* name, TitleRect in) {
        const auto path = FindPathMaker(name)();
        SetImages(*path, image, image, 100);
        TitleRect out{};
        path->GetImageBounds(&out, &in);
        return std::vector{out.left, out.top, out.right, out.bottom};
    };
    EXPECT_EQ(boundsOf("PATH_BLURLEFT", {30, 10, 60, 20}), (std::vector{0, 10, 60, 20}));
    EXPECT_EQ(boundsOf("PATH_BLURRIGHT", {30, 10, 60, 20}), (std::vector{30, 10, 100, 20}));
    EXPECT_EQ(boundsOf("PATH_GLOW", {30, 10, 60, 12}), (std::vector{10, 0, 80, 32})) << "20 on each side";
    EXPECT_EQ(boundsOf("PATH_GLOW", {-2147483647, 0, -2147483640, 1}), (std::vector{0, 0, 0, 0}));
    EXPECT_EQ(boundsOf("PATH_PERSPECTIVESCROLL", {30, 10, 60, 20}), (std::vector{0, 0, 100, 40}));
}

/// A width of 30 makes the largest radius 3.
Pixels Glowing(const Pixels& image, float progress) {
    Pixels source = image, target(image.size(), 0x01010101);
    CPathGlow glow;
    SetImages(glow, source, target, 30);
    EXPECT_EQ(glow.ProcessImage(progress), kTitleOk);
    EXPECT_EQ(source, image);
    return target;
}

TEST(ImagePathsTest, GlowIsABlurAndTenTimesWhatIsLeftOfIt) {
    Pixels image(30 * 7);
    image[3 * 30 + 15] = 0xFF604020;
    EXPECT_EQ(Glowing(image, 1), image);

    // At 0.5 the radius is trunc(0.5 * 3) = 1. The first mean over 3 by 3 leaves alpha 255 / 9 = 28 on nine pixels, the
    // second in the middle 28, in a corner of 5 by 5 28 / 9 = 3. Colours stay. Then five times the same is added.
    const Pixels half = Glowing(image, 0.5F);
    EXPECT_EQ(half[3 * 30 + 15], 0xA8FFFFC0) << "6 * 28 = 168; 6 * 0x20 = 0xC0; the others are full";
    EXPECT_EQ(half[1 * 30 + 13], 0x12FFFFC0) << "6 * 3 = 18";
    EXPECT_EQ(half[0 * 30 + 15], 0U);

    // Above 1 the blur ends and the factor is negative: 0xFF - 5 * 0xFF is -1020, whose low byte is 4.
    EXPECT_EQ(Glowing(image, 1.5F)[3 * 30 + 15] >> 24U, 4U);
    // A factor that does not fit is -2^31: 0xFF times that wraps to -2^31, shifted -32768; 0xFF on top.
    EXPECT_EQ(Glowing(image, 1e30F)[3 * 30 + 15] >> 24U, 0xFFU);

    const struct {
        float progress;
        int alpha;
    } rows[] = {{0.1F, 51}, {0.5F, 255}, {0.50001F, 255}, {0, 0}, {-0.1F, 205}};
    for (const auto& row : rows) {
        EXPECT_EQ(int{PlacementIn({}, "PATH_GLOW", 0, 0, row.progress).Alpha}, row.alpha) << row.progress;
    }
}

// The canvas is 200 high: the fade begins at 60. The string rises from 200 at 0 by (200 + 60) p.
TEST(ImagePathsTest, CreditsFadeOutAtTheTop) {
    ExpectPlacements({}, {
                             {"PATH_PERSPECTIVESCROLL", 0, 0, 0.5F, {100, 70, 1, 1, 0, 255}},
                             {"PATH_PERSPECTIVESCROLL", 0, 1, 0.65F, {120, 31, 1, 1, 0, 131}},  // 255 - 29 / 60 * 255
                             {"PATH_PERSPECTIVESCROLL", 0, 3, 1, {160, -40, 1, 1, 0, 0}},
                             {"PATH_PERSPECTIVESCROLL", 0, 0, 0, {100, 50, 1, 1, 0, 0}},
                         });
}

TEST(ImagePathsTest, TheSlabIsNewForNewImagesOnly) {
    constexpr int32_t kWidth = 40, kHeight = 30;
    constexpr size_t kSize = size_t{kWidth} * kHeight;
    Pixels white(kSize, 0xFFFFFFFF), red(kSize, 0xFFFF0000), first(kSize), second(kSize);
    CPathPerspectiveScroll path;
    const auto draw = [&](Pixels& source, Pixels& target) {
        SetImages(path, source, target, kWidth);
        EXPECT_EQ(path.ProcessImage(0.5F), kTitleOk);
    };
    draw(white, first);
    draw(white, second);
    EXPECT_EQ(first, second);
    EXPECT_EQ(first[kSize / 2 + kWidth / 2], 0xFFFFFFFF);
    EXPECT_EQ(first[0], 0U) << "beside the slab";
    draw(red, second);
    EXPECT_EQ(second[kSize / 2 + kWidth / 2], 0xFFFF0000);
    red.assign(kSize, 0xFF00FF00);
    draw(red, second);
    EXPECT_EQ(second[kSize / 2 + kWidth / 2], 0xFF00FF00) << "the same buffer is read anew";

    path.SetPixelFormat(kPixelFormatAYUV);
    draw(red, second);
    EXPECT_EQ(second[0], 0x00108080U);
    Pixels other(size_t{20} * 30);
    path.SetTargetImage(reinterpret_cast<uint8_t*>(other.data()), 20, 30, 80);
    EXPECT_EQ(path.ProcessImage(0.5F), kTitleFailure);
    EXPECT_EQ(other, Pixels(other.size()));
    path.SetSourceImage(reinterpret_cast<uint8_t*>(red.data()), 20, 30, 80);
    EXPECT_EQ(path.ProcessImage(0.5F), kTitleOk) << "of another size";
    EXPECT_EQ(other[15 * 20 + 10], 0xFF00FF00);
}

}  // namespace
}  // namespace captionfx::test
