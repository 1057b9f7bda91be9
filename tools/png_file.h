// Pictures in PNG files. Pixels are those of a frame: 32 bits, blue in the lowest byte, alpha in the highest, not
// multiplied by alpha, rows from the top without padding. Writing and reading give the same words back.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace captionfx {

struct PngImage {
    int32_t width = 0, height = 0;
    std::vector<uint32_t> pixels;
};

/// Writes `width` times `height` pixels. The file appears whole or not at all: it is written under another name in the
/// same folder and then takes its place. Something that is no plain file, such as a pipe, is written to as it stands.
/// Throws std::runtime_error with a one-line reason.
void WritePng(const std::filesystem::path& path, std::span<const uint32_t> pixels, int32_t width, int32_t height);

/// Reads a picture; one without alpha comes out opaque. Throws std::runtime_error with a one-line reason.
[[nodiscard]] PngImage ReadPng(const std::filesystem::path& path);

}  // namespace captionfx
