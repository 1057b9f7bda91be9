// Pictures by stb_image, where libpng is not to be had.
#include "tools/png_file.h"

#include <cassert>
#include <cerrno>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>

#include "tools/file_stream.h"
#include "tools/output_file.h"

#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#define STBI_NO_STDIO
#include <stb/stb_image.h>
#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

namespace captionfx {
namespace {

namespace fs = std::filesystem;

constexpr int kChannels = 4;

[[noreturn]] void Fail(const char* what, const fs::path& path, const std::string& reason) {
    throw std::runtime_error(std::string(what) + " '" + path.string() + "': " + reason);
}

/// Red and blue change places: stb_image has red in the lowest byte.
uint32_t Swapped(uint32_t pixel) {
    return (pixel & 0xFF00FF00U) | (pixel & 0xFFU) << 16U | (pixel >> 16U & 0xFFU);
}

std::vector<uint8_t> BytesOf(const fs::path& path) {
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(OpenForReading(path), &std::fclose);
    if (!file) Fail("cannot read", path, std::generic_category().message(errno));
    std::vector<uint8_t> bytes, block(1U << 16U);
    while (const size_t count = std::fread(block.data(), 1, block.size(), file.get()))
        bytes.insert(bytes.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(count));
    return bytes;
}

}  // namespace

void WritePng(const fs::path& path, std::span<const uint32_t> pixels, int32_t width, int32_t height) {
    assert(width > 0 && height > 0);
    assert(pixels.size() == static_cast<size_t>(width) * static_cast<size_t>(height));

    std::vector<uint32_t> swapped;
    swapped.reserve(pixels.size());
    for (const uint32_t pixel : pixels) swapped.push_back(Swapped(pixel));
    OutputFile file(path);
    const auto write = [](void* to, void* bytes, int size) {
        static_cast<OutputFile*>(to)->Write(bytes, static_cast<size_t>(size));
    };
    if (stbi_write_png_to_func(write, &file, width, height, kChannels, swapped.data(), width * kChannels) == 0)
        Fail("cannot write", path, "not enough memory");
    file.Finish();
}

PngImage ReadPng(const fs::path& path) {
    const std::vector<uint8_t> bytes = BytesOf(path);
    if (bytes.size() > std::numeric_limits<int>::max()) Fail("cannot read", path, "too large");
    PngImage result;
    int channelsOfFile = 0;
    const std::unique_ptr<stbi_uc, decltype(&stbi_image_free)> decoded(
        stbi_load_from_memory(bytes.data(), static_cast<int>(bytes.size()), &result.width, &result.height,
                              &channelsOfFile, kChannels),
        [](void* pixels) { stbi_image_free(pixels); });
    if (!decoded) Fail("cannot read", path, stbi_failure_reason());
    const size_t count = static_cast<size_t>(result.width) * static_cast<size_t>(result.height);
    result.pixels.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        const stbi_uc* const pixel = decoded.get() + i * kChannels;
        result.pixels.push_back(uint32_t{pixel[3]} << 24U | uint32_t{pixel[0]} << 16U | uint32_t{pixel[1]} << 8U |
                                uint32_t{pixel[2]});
    }
    return result;
}

}  // namespace captionfx
