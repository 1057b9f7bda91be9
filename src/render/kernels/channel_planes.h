// Planes channel by channel: what a tile's pixels are kept as between placing and compositing.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "render/pixel.h"

namespace captionfx {

/// Columns of a tile at most; planes have room for kPixelPadding more. Narrow tiles would cut more letters in two, wide
/// ones would not stay in a core's cache.
inline constexpr int32_t kTileColumns = 512;

/// Which colour channels of a plane are stored, once each: titles are mostly white, black, gray or of a pure colour,
/// and channels that are equal everywhere, or 0 everywhere, need not be worked out three times.
struct StoredColors {
    static constexpr uint8_t kNone = 3;  ///< Stands for a channel that is 0 everywhere.

    uint8_t Count = 0;                               ///< 0 to 3.
    std::array<uint8_t, 3> Of{kNone, kNone, kNone};  ///< Of blue, green and red: which stored channel, or kNone.

    /// The stored channels of a plane's colour, one of those that the plane was laid out for.
    [[nodiscard]] std::array<uint16_t, 3> ValuesOf(uint32_t color) const {
        std::array<uint16_t, 3> values{};
        for (size_t c = 0; c < 3; ++c) {
            if (Of[c] != kNone) values[Of[c]] = static_cast<uint16_t>(ChannelOf(color, kColorShifts[c]));
        }
        return values;
    }
};

/// Finds StoredColors for all that a plane will hold.
class ColorSurvey {
public:
    void Add(uint32_t color) {
        for (size_t c = 0; c < 3; ++c) {
            for (size_t other = 0; other < c; ++other) differs_[c][other] |= At(color, c) != At(color, other);
            isUsed_[c] |= At(color, c) != 0;
        }
    }
    void AddAnyColor() { Add(0x010203); }

    [[nodiscard]] StoredColors Stored() const {
        StoredColors stored;
        for (size_t c = 0; c < 3; ++c) {
            if (!isUsed_[c]) continue;
            for (size_t other = 0; other < c; ++other) {
                if (isUsed_[other] && !differs_[c][other]) stored.Of[c] = stored.Of[other];
            }
            if (stored.Of[c] == StoredColors::kNone) stored.Of[c] = stored.Count++;
        }
        return stored;
    }

private:
    static uint32_t At(uint32_t color, size_t c) { return ChannelOf(color, kColorShifts[c]); }

    bool isUsed_[3] = {};
    bool differs_[3][3] = {};
};

/// Rows of a plane: alpha, then the stored colours, each a block of 16-bit numbers of 0 to 255, multiplied by alpha and
/// none above it.
struct ChannelPlane {
    uint16_t* Alpha;
    std::ptrdiff_t Pitch;         ///< From row to row, in numbers.
    std::ptrdiff_t ChannelPitch;  ///< From a channel to the next.
    StoredColors Colors;

    [[nodiscard]] uint16_t* Color(size_t stored) const {
        return Alpha + static_cast<std::ptrdiff_t>(stored + 1) * ChannelPitch;
    }
    /// The plane without the first `y` rows and `x` columns.
    [[nodiscard]] ChannelPlane From(std::ptrdiff_t y, std::ptrdiff_t x) const {
        return {Alpha + y * Pitch + x, Pitch, ChannelPitch, Colors};
    }

    [[nodiscard]] uint32_t Pixel(std::ptrdiff_t x) const {
        uint32_t pixel = uint32_t{Alpha[x]} << kAlphaShift;
        for (size_t c = 0; c < 3; ++c) {
            if (Colors.Of[c] != StoredColors::kNone) pixel |= uint32_t{Color(Colors.Of[c])[x]} << kColorShifts[c];
        }
        return pixel;
    }
    void SetPixel(std::ptrdiff_t x, uint32_t pixel) const {
        Alpha[x] = static_cast<uint16_t>(AlphaOf(pixel));
        const std::array<uint16_t, 3> values = Colors.ValuesOf(pixel);
        for (size_t stored = 0; stored < Colors.Count; ++stored) Color(stored)[x] = values[stored];
    }
};

/// The planes of a string, all of one pitch.
struct ChannelPlanes {
    ChannelPlane Face, Border, Shadow;

    [[nodiscard]] ChannelPlanes From(std::ptrdiff_t y, std::ptrdiff_t x) const {
        return {Face.From(y, x), Border.From(y, x), Shadow.From(y, x)};
    }
};

}  // namespace captionfx
