#include "render/coverage_layer.h"

#include <cstring>

namespace captionfx {
namespace {

/// Zero bytes that `row` begins with, of `count`.
int32_t LeadingZeros(const uint8_t* row, int32_t count) {
    int32_t i = 0;
    uint64_t eight = 0;
    for (; i + 8 <= count; i += 8) {
        std::memcpy(&eight, row + i, sizeof eight);
        if (eight != 0) break;
    }
    while (i < count && row[i] == 0) ++i;
    return i;
}

int32_t EndOfContent(const uint8_t* row, int32_t first, int32_t count) {
    uint64_t eight = 0;
    for (; count - 8 >= first; count -= 8) {
        std::memcpy(&eight, row + count - 8, sizeof eight);
        if (eight != 0) break;
    }
    while (count > first && row[count - 1] == 0) --count;
    return count;
}

}  // namespace

void CoverageLayer::FindSpans() {
    spans_.assign(static_cast<size_t>(height_) + 2, {});
    for (int32_t y = 0; y < height_; ++y) {
        const uint8_t* const row = Row(y);
        const int32_t first = LeadingZeros(row, width_);
        if (first < width_) spans_[static_cast<size_t>(y) + 1] = {first, EndOfContent(row, first, width_)};
    }
}

}  // namespace captionfx
