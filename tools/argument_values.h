// Values as they stand on the command line. Each function reads its whole text or gives nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace captionfx {

struct FrameSize {
    int32_t width, height;
};

struct Position {
    float x, y;
};

/// From `time` on, in seconds, the effect holds; between two of the same name its progress runs from one to the other.
struct Keyframe {
    float time;
    std::string effect;
    float progress;

    bool operator==(const Keyframe&) const = default;
};

/// A moment of a title: seconds, or a part of the whole.
struct Moment {
    float value;
    bool isPercent = false;

    bool operator==(const Moment&) const = default;
};

struct Rgb {
    uint8_t red, green, blue;

    bool operator==(const Rgb&) const = default;
};

/// A finite number.
[[nodiscard]] std::optional<float> ParseNumber(std::string_view text);

/// A font size that the library takes, document units: above 0, up to 1638.
[[nodiscard]] std::optional<float> ParseFontSize(std::string_view text);

/// "1280x720"; each side 1 to 16384.
[[nodiscard]] std::optional<FrameSize> ParseFrameSize(std::string_view text);

/// The same with both sides from kLeast to kMost.
template <int32_t kLeast, int32_t kMost>
[[nodiscard]] std::optional<FrameSize> ParseSizeBetween(std::string_view text) {
    const auto isFit = [](int32_t side) { return side >= kLeast && side <= kMost; };
    const std::optional<FrameSize> size = ParseFrameSize(text);
    return size && isFit(size->width) && isFit(size->height) ? size : std::nullopt;
}

/// "X,Y", two finite numbers.
[[nodiscard]] std::optional<Position> ParsePosition(std::string_view text);

/// "RRGGBB", six hexadecimal digits; a leading # is allowed.
[[nodiscard]] std::optional<Rgb> ParseColor(std::string_view text);

/// Font name, 1 to 31 UTF-16 units, from UTF-8.
[[nodiscard]] std::optional<std::u16string> ParseFontName(std::string_view text);

/// An effect of the list, by its own name or the readable one; the name that the library knows.
[[nodiscard]] std::optional<std::string> ParseEffectName(std::string_view text);

/// "TIME:EFFECT:PROGRESS", such as "0.5:fade:1" or "0.5:PATH_FADE:1".
[[nodiscard]] std::optional<Keyframe> ParseKeyframe(std::string_view text);

/// Frames a second, such as 25 or 30000/1001: above 0, up to 1000.
[[nodiscard]] std::optional<float> ParseFrameRate(std::string_view text);

/// "0,25%,1s": at least one moment, seconds with or without an s.
[[nodiscard]] std::optional<std::vector<Moment>> ParseMoments(std::string_view text);

/// Text of a title from UTF-8. A line end, also one spelled \n, becomes CR LF, which begins a paragraph in the library;
/// \\ is one backslash, any other backslash stands for itself.
[[nodiscard]] std::optional<std::u16string> ParseText(std::string_view text);

}  // namespace captionfx
