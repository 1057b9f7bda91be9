// A coverage mask: one byte a pixel, 0 to 255, and how large the pictures made of it may become.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace captionfx {

struct CoverageMask {
    std::vector<uint8_t> Bytes;  ///< Rows of Width bytes.
    int32_t Width = 0, Height = 0;

    [[nodiscard]] const uint8_t* Row(int32_t y) const {
        return Bytes.data() + static_cast<size_t>(y) * static_cast<size_t>(Width);
    }
    [[nodiscard]] uint8_t* Row(int32_t y) { return Bytes.data() + static_cast<size_t>(y) * static_cast<size_t>(Width); }
};

// No picture of one character may be larger: sizes come from hosts and files, and nothing that can be seen needs more.
inline constexpr int64_t kMaxLayerSide = 65536;
inline constexpr int64_t kMaxLayerPixels = int64_t{1} << 26;

[[nodiscard]] constexpr bool IsLayerSize(int64_t width, int64_t height) {
    return width > 0 && height > 0 && width <= kMaxLayerSide && height <= kMaxLayerSide &&
           width * height <= kMaxLayerPixels;
}

/// A mask of zeros; nothing for a size that no picture may have.
[[nodiscard]] inline std::optional<CoverageMask> MakeMask(int64_t width, int64_t height) {
    if (!IsLayerSize(width, height)) return std::nullopt;
    return CoverageMask{std::vector<uint8_t>(static_cast<size_t>(width * height)), static_cast<int32_t>(width),
                        static_cast<int32_t>(height)};
}

}  // namespace captionfx
