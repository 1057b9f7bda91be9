// Scenes: objects, pictures, the order of drawing and the two sizes of frame.
#include "sgl/path_scene.h"

#include <limits>

#include <gtest/gtest.h>

namespace sgl::test {
namespace {

using Pixels = std::vector<uint32_t>;

constexpr int32_t kSide = 8;
constexpr uint32_t kGround = 0x10203040;

/// A box whose front is that of a frame from column `left` to before `right`, at the distance of 2.
BoxMesh Plate(float left, float right, int32_t shade) {
    return CreateBoxMesh(2, 1.9f, -1, 1, 2 * right / kSide - 1, 2 * left / kSide - 1, shade, shade, shade);
}

using Picture = std::array<uint32_t, 4>;  // 2 x 2

BoxMesh Pictured(BoxMesh mesh, const Picture& picture) {
    SetBoxFaceTexture(mesh, picture.data(), 2, 2, {{{0, 0}, {1, 0}, {0, 1}, {1, 1}}});
    return mesh;
}

/// Resets the transforms of the objects from `first` on, draws, and gives the first row.
Pixels DrawRow(PathScene& scene, int32_t first = 1) {
    Pixels frame(kSide * kSide, kGround);
    EXPECT_TRUE(scene.BeginFrame(frame.data(), kSide, kSide));
    for (int32_t object = first; object <= 400; ++object) scene.ResetObjectTransform(object);
    scene.TransformObjects();
    scene.BuildDrawList();
    scene.SortDrawList();
    scene.Render();
    frame.resize(kSide);
    return frame;
}

TEST(SglPathScene, ObjectsHaveNumbersFromOne) {
    PathScene scene;
    EXPECT_EQ(scene.AddMesh(Plate(0, 8, 9)), 0) << "before Init";
    ASSERT_TRUE(scene.Init(kSide, kSide, 0));
    EXPECT_EQ(scene.AddMesh({}), 0);
    for (int32_t number = 1; number <= 400; ++number) ASSERT_EQ(scene.AddMesh(Plate(0, 8, 9)), number);
    EXPECT_EQ(scene.AddMesh(Plate(0, 8, 9)), 0);
    for (const int32_t number : {0, 401, -1}) scene.RotateObject(number, 1, 1, 0, 0);
    EXPECT_EQ(DrawRow(scene, 401), Pixels(8, kGround)) << "a transform that was never reset is all zero";
    EXPECT_EQ(DrawRow(scene, 400), Pixels(8, 0xFF080808)) << "9 x 0.994";
    ASSERT_TRUE(scene.Init(kSide, kSide, 0));
    EXPECT_EQ(DrawRow(scene), Pixels(8, kGround)) << "Init drops all";
    EXPECT_EQ(scene.AddMesh(Plate(0, 8, 9)), 1);
}

TEST(SglPathScene, EqualPicturesShareOneOf63Names) {
    constexpr size_t kPictures = 64;
    std::vector<Picture> pictures(kPictures);
    PathScene scene;
    ASSERT_TRUE(scene.Init(kSide, kSide, 0));
    for (uint32_t i = 0; i < kPictures; ++i) pictures[i].fill(0xAB000000 + i);
    for (int round = 0; round < 2; ++round)
        for (size_t i = 0; i < kPictures - 1; ++i) scene.AddMesh(Pictured(Plate(0, 8, 0), pictures[i]));
    ASSERT_EQ(scene.AddMesh(Pictured(Plate(0, 4, 255), pictures[0])), 127);
    ASSERT_EQ(scene.AddMesh(Pictured(Plate(4, 8, 255), pictures[kPictures - 1])), 128);
    const Pixels row = DrawRow(scene, 127);
    EXPECT_EQ(row[1], 0xAB000000) << "pictures are not lit and keep their alpha";
    EXPECT_EQ(row[6], 0xFFFDFDFD) << "no name was left: lit colour, 255 x 0.994";
    pictures[0].fill(7);
    EXPECT_EQ(DrawRow(scene, 127)[1], 7U) << "pixels are read when drawing";
}

// The near plate hides the far one, whichever comes first; of two at one depth the later one is seen.
TEST(SglPathScene, DrawnFromBackToFront) {
    constexpr Picture kPictures[] = {{1, 1, 1, 1}, {2, 2, 2, 2}};
    const auto far = [&] { return Pictured(CreateBoxMesh(0, -0.5f, -2, 2, 2, -2, 0, 0, 0), kPictures[0]); };
    const auto near = [&] { return Pictured(Plate(0, 4, 0), kPictures[1]); };
    for (const bool nearFirst : {false, true}) {
        PathScene scene;
        ASSERT_TRUE(scene.Init(kSide, kSide, 0));
        scene.AddMesh(nearFirst ? near() : far());
        scene.AddMesh(nearFirst ? far() : near());
        EXPECT_EQ(DrawRow(scene), (Pixels{2, 2, 2, 2, 1, 1, 1, 1})) << nearFirst;
    }
    PathScene scene;
    ASSERT_TRUE(scene.Init(kSide, kSide, 0));
    scene.AddMesh(near());
    scene.AddMesh(Pictured(Plate(2, 8, 0), kPictures[0]));
    EXPECT_EQ(DrawRow(scene), (Pixels{2, 2, 1, 1, 1, 1, 1, 1}));
}

// The plate covers half of column 0: the ground shows through in the mean of four, alpha included.
TEST(SglPathScene, AntialiasingIsTheMeanOfFour) {
    PathScene scene;
    ASSERT_TRUE(scene.Init(kSide, kSide, 1));
    scene.AddMesh(Plate(0.5f, 6, 200));
    const Pixels row = DrawRow(scene);
    // 200 x 0.994 is 198 = 0xC6. (0x10 + 0xFF) / 2 = 0x87, (0x20 + 0xC6) / 2 = 0x73, and so on, cut.
    EXPECT_EQ(row[0], 0x87737B83);
    EXPECT_EQ(row[3], 0xFFC6C6C6);
    EXPECT_EQ(row[7], kGround);
}

TEST(SglPathScene, SizesThatCannotBe) {
    constexpr int32_t kMost = std::numeric_limits<int32_t>::max(), kLeast = std::numeric_limits<int32_t>::min();
    for (const auto& [width, height, antialias] :
         {std::array{-1, 8, 0}, {8, kLeast, 1}, {kMost, 8, 1}, {1 << 16, 1 << 16, 0}, {20000, 20000, 1}}) {
        PathScene scene;
        EXPECT_FALSE(scene.Init(width, height, antialias)) << width << " x " << height;
        EXPECT_FALSE(scene.BeginFrame(nullptr, width, height));
        scene.Render();
    }
    PathScene scene;
    ASSERT_TRUE(scene.Init(0, 0, 1));
    scene.AddMesh(Plate(0, 8, 9));
    scene.BeginFrame(nullptr, 0, 0);
    scene.ResetObjectTransform(1);
    scene.TransformObjects();
    scene.BuildDrawList();
    scene.Render();
    scene.Release();
    scene.SetColorSpace(1);
    EXPECT_TRUE(scene.Init(8, 8, 0));
}

}  // namespace
}  // namespace sgl::test
