// Films read back, by other roads than those that wrote them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace captionfx {

struct DecodedFilm {
    int32_t width = 0, height = 0;
    std::vector<std::vector<uint32_t>> frames;  ///< Blue in the lowest byte, straight alpha.
    std::vector<double> seconds;                ///< Of the frames.
    std::string colors;                         ///< "range primaries transfer matrix", libav's names.
    std::string soundBytes;
};

/// By libav; YUV is converted as its tags say. Throws std::runtime_error.
[[nodiscard]] DecodedFilm DecodeFilm(const std::filesystem::path& file);

/// By libwebp, since libav reads no animated WebP. The times are those at which frames begin.
[[nodiscard]] DecodedFilm DecodeWebp(const std::filesystem::path& file);

}  // namespace captionfx
