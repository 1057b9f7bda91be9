// Pictures on disk: the same words back, and never half a file.
#include "tools/png_file.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "tests/tools/scratch_folder.h"

namespace captionfx {
namespace {

TEST(PngFile, KeepsEveryBit) {
    // Colour under alpha 0 and dark colour under low alpha are what a conversion to multiplied alpha would lose.
    const std::vector<uint32_t> pixels{0x00112233, 0x01FF8040, 0x80FF0000, 0x8000FF00, 0xFF0000FF, 0x00000000};
    const ScratchFolder scratch;
    WritePng(scratch / "a.png", pixels, 3, 2);
    const PngImage read = ReadPng(scratch / "a.png");
    EXPECT_EQ(read.width, 3);
    EXPECT_EQ(read.height, 2);
    EXPECT_EQ(read.pixels, pixels);
}

TEST(PngFile, ReadsTheChannelsOfOtherWriters) {
    // A round trip through two swapped channels would go unnoticed. One pixel, 8-bit RGB, 0xFF 0x80 0x01, made by hand.
    constexpr std::array<uint8_t, 72> kFile{
        0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00,
        0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x02, 0x00, 0x00, 0x00, 0x90, 0x77, 0x53, 0xDE, 0x00, 0x00, 0x00,
        0x0F, 0x49, 0x44, 0x41, 0x54, 0x78, 0x01, 0x01, 0x04, 0x00, 0xFB, 0xFF, 0x00, 0xFF, 0x80, 0x01, 0x04, 0x02,
        0x01, 0x81, 0xAB, 0xE3, 0xED, 0xBC, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};
    const ScratchFolder scratch;
    std::ofstream(scratch / "rgb.png", std::ios::binary)
        .write(reinterpret_cast<const char*>(kFile.data()), kFile.size());
    EXPECT_EQ(ReadPng(scratch / "rgb.png").pixels, std::vector<uint32_t>{0xFFFF8001}) << "opaque, red above blue";
}

TEST(PngFile, ReplacesAFileAndLeavesNothingElse) {
    const ScratchFolder scratch;
    WritePng(scratch / "a.png", std::vector<uint32_t>(4, 0xFF000000), 2, 2);
    WritePng(scratch / "a.png", std::vector<uint32_t>(9, 0xFFFFFFFF), 3, 3);
    EXPECT_EQ(ReadPng(scratch / "a.png").width, 3);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(scratch.Path()), {}), 1);
}

TEST(PngFile, DamagedFileIsRefused) {
    const ScratchFolder scratch;
    WritePng(scratch / "a.png", std::vector<uint32_t>(size_t{64} * 64, 0xFF336699), 64, 64);
    std::filesystem::resize_file(scratch / "a.png", std::filesystem::file_size(scratch / "a.png") / 2);
    EXPECT_THROW((void)ReadPng(scratch / "a.png"), std::runtime_error);
    EXPECT_THROW((void)ReadPng(scratch / "missing.png"), std::runtime_error);
}

}  // namespace
}  // namespace captionfx
