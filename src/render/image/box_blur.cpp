#include "render/image/box_blur.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <vector>

namespace KVTImageUtility {
namespace {

constexpr size_t kChannels = 4;  // blue, green, red, alpha
constexpr size_t kAlpha = 3;

/// What a blur needs to know of its images; pitches in bytes.
struct BlurPlanes {
    uint8_t* Destination;
    const uint8_t* Source;
    int32_t Width, Height, DestinationPitch, SourcePitch, Radius;

    [[nodiscard]] const uint8_t* SourceRow(int32_t y) const { return Source + std::ptrdiff_t{y} * SourcePitch; }
    [[nodiscard]] uint8_t* DestinationRow(int32_t y) const {
        return Destination + std::ptrdiff_t{y} * DestinationPitch;
    }
};

/// Sums of the four channels, in plain form.
struct PlainChannels {
    std::array<uint32_t, kChannels> Sums{};

    static PlainChannels Of(const uint8_t* pixel) { return {{pixel[0], pixel[1], pixel[2], pixel[3]}}; }
    PlainChannels& operator+=(const PlainChannels& other) {
        for (size_t c = 0; c < kChannels; ++c) Sums[c] += other.Sums[c];
        return *this;
    }
    PlainChannels& operator-=(const PlainChannels& other) {
        for (size_t c = 0; c < kChannels; ++c) Sums[c] -= other.Sums[c];
        return *this;
    }
    [[nodiscard]] uint32_t operator[](size_t c) const { return Sums[c]; }
};

/// The same in one vector of 16 bytes.
struct VectorChannels {
    using Lanes [[gnu::vector_size(16)]] = uint32_t;
    Lanes Sums{};

    static VectorChannels Of(const uint8_t* pixel) { return {Lanes{pixel[0], pixel[1], pixel[2], pixel[3]}}; }
    VectorChannels& operator+=(const VectorChannels& other) {
        Sums += other.Sums;
        return *this;
    }
    VectorChannels& operator-=(const VectorChannels& other) {
        Sums -= other.Sums;
        return *this;
    }
    [[nodiscard]] uint32_t operator[](size_t c) const { return Sums[c]; }
};

/// Sums over a window: the channels of its pixels that have alpha, and their number.
template <class Channels>
struct Window {
    Channels Sums{};
    uint32_t Count = 0;
};

/// The sums of each column over the rows of the present window.
template <class Channels>
struct Columns {
    explicit Columns(int32_t width) : Sums(static_cast<size_t>(width)), Counts(static_cast<size_t>(width)) {}

    // A row comes into the window, or goes out of it. Transparent pixels take no part.
    void EnterRow(const uint8_t* row) {
        for (size_t x = 0; x < Counts.size(); ++x, row += kChannels) {
            if (row[kAlpha] == 0) continue;
            Sums[x] += Channels::Of(row);
            ++Counts[x];
        }
    }
    void LeaveRow(const uint8_t* row) {
        for (size_t x = 0; x < Counts.size(); ++x, row += kChannels) {
            if (row[kAlpha] == 0) continue;
            Sums[x] -= Channels::Of(row);
            --Counts[x];
        }
    }

    // A column comes into the window of a row, or goes out of it; one beyond the image does nothing.
    void EnterColumn(Window<Channels>& window, int64_t x) const {
        if (!Takes(x)) return;
        window.Sums += Sums[static_cast<size_t>(x)];
        window.Count += Counts[static_cast<size_t>(x)];
    }
    void LeaveColumn(Window<Channels>& window, int64_t x) const {
        if (!Takes(x)) return;
        window.Sums -= Sums[static_cast<size_t>(x)];
        window.Count -= Counts[static_cast<size_t>(x)];
    }

    std::vector<Channels> Sums;
    std::vector<uint32_t> Counts;

private:
    [[nodiscard]] bool Takes(int64_t x) const {
        return x >= 0 && static_cast<size_t>(x) < Counts.size() && Counts[static_cast<size_t>(x)] != 0;
    }
};

/// How many of the positions [at - radius, at + radius] lie within [0, size).
uint32_t WindowLength(int32_t at, int32_t radius, int32_t size) {
    return static_cast<uint32_t>(std::min(at + radius, size - 1) - std::max(at - radius, 0) + 1);
}

/// Writes one row from the column sums of its window.
template <class Channels>
void WriteRow(const Columns<Channels>& columns, const BlurPlanes& planes, int32_t y) {
    Window<Channels> window;
    for (int32_t x = 0; x < planes.Radius; ++x) columns.EnterColumn(window, x);
    const uint32_t windowRows = WindowLength(y, planes.Radius, planes.Height);
    uint8_t* out = planes.DestinationRow(y);
    for (int32_t x = 0; x < planes.Width; ++x, out += kChannels) {
        columns.EnterColumn(window, int64_t{x} + planes.Radius);
        columns.LeaveColumn(window, int64_t{x} - planes.Radius - 1);
        if (window.Count == 0) continue;
        const uint32_t area = windowRows * WindowLength(x, planes.Radius, planes.Width);
        for (size_t c = 0; c < kAlpha; ++c) out[c] = static_cast<uint8_t>(window.Sums[c] / window.Count);
        out[kAlpha] = static_cast<uint8_t>(window.Sums[kAlpha] / area);
    }
}

template <class Channels>
void Blur(const BlurPlanes& planes) {
    Columns<Channels> columns(planes.Width);
    for (int32_t y = 0; y < planes.Radius; ++y) columns.EnterRow(planes.SourceRow(y));
    for (int32_t y = 0; y < planes.Height; ++y) {
        if (y + planes.Radius < planes.Height) columns.EnterRow(planes.SourceRow(y + planes.Radius));
        if (y - planes.Radius > 0) columns.LeaveRow(planes.SourceRow(y - planes.Radius - 1));
        WriteRow(columns, planes, y);
    }
}

}  // namespace

int32_t BoxBlurPlane(uint32_t level, uint8_t* destination, const uint8_t* source, int32_t width, int32_t height,
                     int32_t destinationPitch, int32_t sourcePitch, int32_t radius) {
    if (destination == nullptr || source == nullptr || width <= 0 || height <= 0 || radius < 1) return 0;
    const int32_t smaller = std::min(width, height);
    if (smaller <= int64_t{radius} * 2) radius = (smaller - 1) >> 1;

    const BlurPlanes planes{destination, source, width, height, destinationPitch, sourcePitch, radius};
    for (int32_t y = 0; y < height; ++y) {
        std::memset(planes.DestinationRow(y), 0, static_cast<size_t>(width) * kChannels);
    }
    constexpr uint32_t kVectorLevel = 3;
    if (level < kVectorLevel) {
        Blur<PlainChannels>(planes);
    } else {
        Blur<VectorChannels>(planes);
    }
    return 0;
}

}  // namespace KVTImageUtility
