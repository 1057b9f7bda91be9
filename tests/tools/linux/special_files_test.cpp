// Links and pipes stay what they are.
#include <array>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/tools/scratch_folder.h"
#include "tools/png_file.h"

namespace captionfx {
namespace {

TEST(PngFile, LinkStaysALink) {
    const ScratchFolder scratch;
    const std::vector<uint32_t> pixel{0xFF123456};
    WritePng(scratch / "real.png", std::vector<uint32_t>(4, 0), 2, 2);
    std::filesystem::create_symlink("real.png", scratch / "link.png");
    WritePng(scratch / "link.png", pixel, 1, 1);
    EXPECT_TRUE(std::filesystem::is_symlink(scratch / "link.png"));
    EXPECT_EQ(ReadPng(scratch / "real.png").pixels, pixel);
}

TEST(PngFile, PipeIsWrittenToAndNotReplaced) {
    // What holds for a pipe holds for /dev/null, and a file renamed over that by a privileged user ruins the machine.
    const ScratchFolder scratch;
    const std::filesystem::path pipe = scratch / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDWR);  // both ends, or opening would wait for the other side
    ASSERT_GE(reader, 0);
    WritePng(pipe, std::vector<uint32_t>(4, 0), 2, 2);
    std::array<char, 4> start{};
    EXPECT_EQ(read(reader, start.data(), start.size()), 4);
    close(reader);
    EXPECT_EQ(std::string_view(start.data() + 1, 3), "PNG");
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

}  // namespace
}  // namespace captionfx
