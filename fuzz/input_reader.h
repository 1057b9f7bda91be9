// A byte string read as a program: small numbers, floats of every kind, pieces of text.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>

namespace captionfx::fuzz {

class InputReader {
public:
    InputReader(const uint8_t* data, size_t size) : bytes_(data, size) {}

    [[nodiscard]] bool AtEnd() const { return bytes_.empty(); }

    /// The next byte, 0 behind the end.
    uint8_t Byte() {
        if (bytes_.empty()) return 0;
        const uint8_t byte = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return byte;
    }

    /// 0 to n - 1.
    int32_t UpTo(int32_t n) { return Byte() % n; }

    /// Mostly a small index, now and then one far off.
    int32_t Index() {
        constexpr std::array<int32_t, 4> kFar = {-1, 1000, std::numeric_limits<int32_t>::max(),
                                                 std::numeric_limits<int32_t>::min()};
        const uint8_t byte = Byte();
        return byte < 250 ? byte % 24 : kFar[byte % 4U];
    }

    /// A length in pixels or document units; one in eight is any float at all.
    float Length() {
        const uint8_t byte = Byte();
        if (byte >= 32) return static_cast<float>(byte - 64) * 0.75F;
        uint32_t bits = 0;
        for (int i = 0; i < 4; ++i) bits = bits << 8U | Byte();
        return std::bit_cast<float>(bits);
    }

    /// Up to eight code units: letters, breaks, ideographs, surrogate halves.
    std::u16string Text() {
        constexpr std::u16string_view kUnits = u"ab \r\n\r\nw\u4e00\xD83D\xDE00\u00e9\x0001";
        std::u16string text;
        for (int32_t n = UpTo(9); n > 0; --n)
            text += kUnits[static_cast<size_t>(UpTo(static_cast<int32_t>(kUnits.size())))];
        return text;
    }

private:
    std::span<const uint8_t> bytes_;
};

}  // namespace captionfx::fuzz
