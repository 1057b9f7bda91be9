#include "tools/scaled_picture.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace captionfx {
namespace {

/// A pixel of the original under one of the result, and how much of it is covered.
struct Covered {
    int64_t index, weight;
};

/// What pixel `at` of `to` covers of a row of `from`. Lengths count in parts of a pixel, of which an original pixel has
/// `to` and one of the result `from`: so all edges are whole numbers, and the weights of a pixel add up to `from`.
std::vector<Covered> CoveredBy(int64_t at, int64_t from, int64_t to) {
    std::vector<Covered> covered;
    const int64_t begin = at * from, end = begin + from;
    for (int64_t index = begin / to; index * to < end; ++index)
        covered.push_back({index, std::min(end, (index + 1) * to) - std::max(begin, index * to)});
    return covered;
}

std::vector<std::vector<Covered>> CoverAll(int32_t from, int32_t to) {
    std::vector<std::vector<Covered>> all;
    all.reserve(static_cast<size_t>(to));
    for (int32_t at = 0; at < to; ++at) all.push_back(CoveredBy(at, from, to));
    return all;
}

}  // namespace

std::vector<uint32_t> ScaledPicture(std::span<const uint32_t> pixels, FrameSize from, FrameSize to) {
    const auto columns = CoverAll(from.width, to.width), rows = CoverAll(from.height, to.height);
    const int64_t whole = int64_t{from.width} * from.height;
    std::vector<uint32_t> result;
    result.reserve(rows.size() * columns.size());
    for (const auto& row : rows) {
        for (const auto& column : columns) {
            std::array<int64_t, 3> sums{};
            for (const auto& [y, height] : row) {
                for (const auto& [x, width] : column) {
                    const uint32_t pixel = pixels[static_cast<size_t>(y * from.width + x)];
                    for (size_t channel = 0; channel < sums.size(); ++channel)
                        sums[channel] += height * width * (pixel >> (8 * channel) & 0xFFU);
                }
            }
            uint32_t mean = 0xFF000000;
            for (size_t channel = 0; channel < sums.size(); ++channel)
                mean |= static_cast<uint32_t>((sums[channel] + whole / 2) / whole) << (8 * channel);
            result.push_back(mean);
        }
    }
    return result;
}

}  // namespace captionfx
