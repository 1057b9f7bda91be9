// Random pixels and layers for the loops that vectors run.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <random>
#include <vector>

#include "render/kernels/coverage_placement.h"
#include "render/pixel.h"

namespace captionfx::test {

/// Rows of random pixels, among them many that are clear, opaque or extreme.
class RandomRows {
public:
    uint32_t Pixel(bool isPlanePixel) {
        const uint32_t alpha = Byte();
        if (isPlanePixel && alpha == 0) return 0;
        return Byte() | Byte() << 8U | Byte() << 16U | alpha << 24U;
    }
    uint32_t Byte() {
        constexpr uint32_t kExtreme[] = {0, 0, 0, 1, 127, 128, 254, 255, 255, 255};
        const auto number = static_cast<uint32_t>(random_());
        return number % 3 == 0 ? number >> 24U : kExtreme[number / 3 % std::size(kExtreme)];
    }
    std::vector<uint32_t> Row(size_t count, bool isPlane) {
        // Now and then a row of one kind, so that what is passed over as a whole is tried too.
        const bool isClear = Byte() == 1, isOpaque = Byte() == 254;
        std::vector<uint32_t> row(count);
        for (uint32_t& pixel : row) {
            pixel = isClear ? 0 : Pixel(isPlane);
            if (isOpaque) pixel |= 0xFF000000U;
        }
        return row;
    }
    CoveragePlacement Placement() {
        if (Byte() == 1) return {0, 0, 0, kWholeSample, std::max(1U, Byte()), Pixel(false) & kColorMask};
        const auto fraction = [&] { return static_cast<float>(random_() % 1001) / 1000; };
        const float fx = fraction(), fy = fraction();
        const auto weight = [](float product) { return static_cast<uint32_t>(static_cast<double>(product) * 65356.0); };
        return {.W00 = weight(fx * fy),
                .W10 = weight((1 - fx) * fy),
                .W01 = weight(fx * (1 - fy)),
                .W11 = weight((1 - fx) * (1 - fy)),
                .Alpha = std::max(1U, Byte()),
                .Color = Pixel(false) & kColorMask};
    }

private:
    std::mt19937 random_{7};
};

/// A layer with rows that are empty, full, or hold something in the middle.
inline CoverageLayer RandomCoverage(RandomRows& random, int32_t width, int32_t height) {
    CoverageLayer layer(width, height);
    for (int32_t y = 0; y < height; ++y) {
        const auto first = static_cast<int32_t>(random.Byte()) % (width + 1),
                   end = static_cast<int32_t>(random.Byte()) % (width + 1);
        for (int32_t x = first; x < end; ++x) layer.Row(y)[x] = static_cast<uint8_t>(random.Byte());
    }
    layer.FindSpans();
    return layer;
}

}  // namespace captionfx::test
