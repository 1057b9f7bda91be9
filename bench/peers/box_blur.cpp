// Columns are summed for a whole row at a time, which the compiler does with vectors; rows are blurred as the columns
// of the transposed picture.
#include "peers/box_blur.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace captionfx::peers {
namespace {

struct Plane {
    size_t width, height;
    std::vector<uint8_t> bytes;

    Plane(size_t planeWidth, size_t planeHeight)
        : width(planeWidth), height(planeHeight), bytes(planeWidth * planeHeight) {}
    uint8_t* Row(size_t y) { return bytes.data() + y * width; }
    [[nodiscard]] const uint8_t* Row(size_t y) const { return bytes.data() + y * width; }
};

/// One box of `radius` pixels to each side, down all columns.
void BlurColumns(const Plane& in, Plane& out, size_t radius) {
    const auto factor = static_cast<uint32_t>(65536 / (2 * radius + 1));
    std::vector<uint32_t> sums(in.width, 32768 / factor);  // half a unit, to round
    const auto addRow = [&](size_t y) {
        const uint8_t* const row = in.Row(y);
        for (size_t x = 0; x < in.width; ++x) sums[x] += row[x];
    };
    for (size_t y = 0; y < std::min(radius, in.height); ++y) addRow(y);
    for (size_t y = 0; y < in.height; ++y) {
        if (y + radius < in.height) addRow(y + radius);
        uint8_t* const result = out.Row(y);
        for (size_t x = 0; x < in.width; ++x) result[x] = static_cast<uint8_t>(sums[x] * factor >> 16U);
        if (y < radius) continue;
        const uint8_t* const gone = in.Row(y - radius);
        for (size_t x = 0; x < in.width; ++x) sums[x] -= gone[x];
    }
}

Plane Transposed(const Plane& plane) {
    constexpr size_t kSquare = 32;
    Plane turned(plane.height, plane.width);
    for (size_t top = 0; top < plane.height; top += kSquare) {
        for (size_t left = 0; left < plane.width; left += kSquare) {
            for (size_t y = top; y < std::min(top + kSquare, plane.height); ++y) {
                for (size_t x = left; x < std::min(left + kSquare, plane.width); ++x) {
                    turned.Row(x)[y] = plane.Row(y)[x];
                }
            }
        }
    }
    return turned;
}

}  // namespace

void BlurCoverage(uint8_t* bytes, int32_t width, int32_t height, ptrdiff_t stride, double sigmaPx) {
    // Three boxes of width w have a variance of (w * w - 1) / 4. Whole widths: the radii differ by at most one.
    const double radius = (std::sqrt(4 * sigmaPx * sigmaPx + 1) - 1) / 2;
    const auto total = static_cast<size_t>(std::lround(radius * 3));
    Plane plane(static_cast<size_t>(width), static_cast<size_t>(height));
    for (size_t y = 0; y < plane.height; ++y) {
        std::copy_n(bytes + static_cast<ptrdiff_t>(y) * stride, plane.width, plane.Row(y));
    }
    for (int axis = 0; axis < 2; ++axis) {
        Plane other(plane.width, plane.height);
        for (const size_t share : {(total + 2) / 3, (total + 1) / 3, total / 3}) {
            if (share == 0) continue;
            BlurColumns(plane, other, share);
            std::swap(plane, other);
        }
        plane = Transposed(plane);
    }
    for (size_t y = 0; y < plane.height; ++y) {
        std::copy_n(plane.Row(y), plane.width, bytes + static_cast<ptrdiff_t>(y) * stride);
    }
}

}  // namespace captionfx::peers
