#include "render/coverage_layer.h"

#include <bit>
#include <cstring>

namespace captionfx {
namespace {

constexpr int32_t kWordBytes = 8;
static_assert(CoverageLayer::kPadding >= kWordBytes, "words may reach into the zeros around a row");

/// Eight bytes as a number, the first in its lowest bits.
uint64_t WordAt(const uint8_t* bytes) {
    uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

ColumnSpan SpanOf(const uint8_t* row, int32_t width) {
    int32_t first = 0;
    while (first < width && WordAt(row + first) == 0) first += kWordBytes;
    if (first >= width) return {};
    first += std::countr_zero(WordAt(row + first)) / 8;
    int32_t end = width;
    while (WordAt(row + end - kWordBytes) == 0) end -= kWordBytes;
    return {first, end - std::countl_zero(WordAt(row + end - kWordBytes)) / 8};
}

}  // namespace

void CoverageLayer::FindSpans() {
    spans_.assign(static_cast<size_t>(height_) + 2, {});
    for (int32_t y = 0; y < height_; ++y) spans_[static_cast<size_t>(y) + 1] = SpanOf(Row(y), width_);
}

}  // namespace captionfx
