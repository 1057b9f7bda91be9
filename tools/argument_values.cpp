#include "tools/argument_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <system_error>

#include "tools/script/effect_names.h"
#include "tools/text_encoding.h"

namespace captionfx {
namespace {

template <class Number, class... Format>
std::optional<Number> ParseWhole(std::string_view text, Format... format) {
    Number value{};
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value, format...);
    if (error != std::errc{} || rest != end) return std::nullopt;
    return value;
}

std::optional<int32_t> ParseFrameSide(std::string_view text) {
    constexpr int32_t kLargestSide = 16384;
    const auto side = ParseWhole<int32_t>(text);
    return side && *side >= 1 && *side <= kLargestSide ? side : std::nullopt;
}

}  // namespace

std::optional<float> ParseNumber(std::string_view text) {
    const auto number = ParseWhole<float>(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<float> ParseFontSize(std::string_view text) {
    constexpr float kLargestSize = 1638.0F;
    const auto size = ParseNumber(text);
    return size && *size > 0.0F && *size <= kLargestSize ? size : std::nullopt;
}

std::optional<FrameSize> ParseFrameSize(std::string_view text) {
    const size_t cross = text.find('x');
    if (cross == std::string_view::npos) return std::nullopt;
    const auto width = ParseFrameSide(text.substr(0, cross));
    const auto height = ParseFrameSide(text.substr(cross + 1));
    if (!width || !height) return std::nullopt;
    return FrameSize{*width, *height};
}

std::optional<Position> ParsePosition(std::string_view text) {
    const size_t comma = text.find(',');
    if (comma == std::string_view::npos) return std::nullopt;
    const auto x = ParseNumber(text.substr(0, comma));
    const auto y = ParseNumber(text.substr(comma + 1));
    if (!x || !y) return std::nullopt;
    return Position{*x, *y};
}

std::optional<Rgb> ParseColor(std::string_view text) {
    constexpr size_t kDigits = 6;
    constexpr int kHexadecimal = 16;
    if (text.starts_with('#')) text.remove_prefix(1);
    const auto value = ParseWhole<uint32_t>(text, kHexadecimal);
    if (text.size() != kDigits || !value) return std::nullopt;
    return Rgb{static_cast<uint8_t>(*value >> 16), static_cast<uint8_t>(*value >> 8), static_cast<uint8_t>(*value)};
}

std::optional<std::u16string> ParseFontName(std::string_view text) {
    constexpr size_t kLongestName = 31;
    auto name = Utf16FromUtf8(text);
    return name && !name->empty() && name->size() <= kLongestName ? name : std::nullopt;
}

std::optional<std::string> ParseEffectName(std::string_view text) {
    return EffectOfName(text);
}

std::optional<Keyframe> ParseKeyframe(std::string_view text) {
    const size_t first = text.find(':'), last = text.rfind(':');
    if (first == std::string_view::npos || first == last) return std::nullopt;
    const auto time = ParseNumber(text.substr(0, first));
    const auto effect = ParseEffectName(text.substr(first + 1, last - first - 1));
    const auto progress = ParseNumber(text.substr(last + 1));
    if (!time || !effect || !progress) return std::nullopt;
    return Keyframe{*time, *effect, *progress};
}

std::optional<float> ParseFrameRate(std::string_view text) {
    constexpr float kHighestRate = 1000.0F;
    const size_t slash = text.find('/');
    auto rate = ParseNumber(text.substr(0, slash));
    if (slash != std::string_view::npos) {
        const auto divisor = ParseNumber(text.substr(slash + 1));
        rate = rate && divisor && *divisor > 0.0F ? std::optional(*rate / *divisor) : std::nullopt;
    }
    return rate && *rate > 0.0F && *rate <= kHighestRate ? rate : std::nullopt;
}

std::optional<std::vector<Moment>> ParseMoments(std::string_view text) {
    std::vector<Moment> moments;
    for (size_t end = 0; end != std::string_view::npos; text.remove_prefix(std::min(end + 1, text.size()))) {
        end = text.find(',');
        std::string_view item = text.substr(0, end);
        const bool isPercent = item.ends_with('%');
        if (isPercent || item.ends_with('s')) item.remove_suffix(1);
        const auto value = ParseNumber(item);
        if (!value) return std::nullopt;
        moments.push_back({*value, isPercent});
    }
    return moments;
}

std::optional<std::u16string> ParseText(std::string_view text) {
    constexpr std::string_view kParagraph = "\r\n";
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        const std::string_view rest = text.substr(i);
        if (rest.starts_with("\\n") || rest.starts_with(kParagraph)) {
            plain += kParagraph;
            ++i;
        } else if (rest.starts_with("\\\\")) {
            plain += '\\';
            ++i;
        } else if (rest.front() == '\n') {
            plain += kParagraph;
        } else {
            plain += rest.front();
        }
    }
    return Utf16FromUtf8(plain);
}

}  // namespace captionfx
