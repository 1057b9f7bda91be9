#include "tools/script/script_values.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numeric>

namespace captionfx {
namespace {

constexpr float kLargest = 1e9F;

/// "3.5" for 3.5, without trailing zeros.
std::string Shown(double number) {
    constexpr size_t kLongest = 32;
    char text[kLongest];
    return {text, static_cast<size_t>(std::snprintf(text, sizeof text, "%g", number))};
}

std::string Described(const JsonValue& value) {
    switch (value.kind) {
        case JsonKind::kNull:
            return "null";
        case JsonKind::kBoolean:
            return value.number != 0 ? "true" : "false";
        case JsonKind::kNumber:
            return Shown(value.number);
        case JsonKind::kString:
            return "'" + value.text + "'";
        case JsonKind::kArray:
            return "an array of " + std::to_string(value.items.size());
        case JsonKind::kObject:
            return "an object";
    }
    std::abort();  // all kinds are told
}

/// How many letters must be changed, added or taken away to make one word of the other.
size_t Distance(std::string_view a, std::string_view b) {
    std::vector<size_t> row(b.size() + 1);  // distances of the part of `a` so far to each beginning of `b`
    std::iota(row.begin(), row.end(), size_t{0});
    for (const char letter : a) {
        size_t diagonal = row[0]++;
        for (size_t i = 0; i < b.size(); ++i) {
            const size_t changed = diagonal + (letter == b[i] ? 0 : 1);
            diagonal = row[i + 1];
            row[i + 1] = std::min({changed, row[i] + 1, row[i + 1] + 1});
        }
    }
    return row.back();
}

}  // namespace

void Fail(const JsonValue& value, std::string_view reason) {
    throw PlacedError(value.place, value.path, reason);
}

void FailKey(const JsonValue& member, std::string_view reason) {
    throw PlacedError(member.keyPlace, member.path, reason);
}

void FailExpected(const JsonValue& value, std::string_view expected) {
    Fail(value, "expected " + std::string(expected) + ", found " + Described(value));
}

std::string_view NearestName(std::string_view name, std::span<const std::string_view> names) {
    std::string_view nearest;
    size_t least = 1 + std::max<size_t>(2, name.size() / 3);
    for (const std::string_view candidate : names) {
        const size_t distance = Distance(name, candidate);
        if (distance >= least) continue;
        least = distance;
        nearest = candidate;
    }
    return nearest;
}

void CheckObject(const JsonValue& value, std::span<const std::string_view> known) {
    if (value.kind != JsonKind::kObject) FailExpected(value, "an object");
    for (const JsonValue& member : value.items) {
        if (std::ranges::find(known, member.key) != known.end()) continue;
        const std::string_view nearest = NearestName(member.key, known);
        FailKey(member, nearest.empty() ? "this key is not known here"
                                        : "this key is not known here; is '" + std::string(nearest) + "' meant?");
    }
}

const std::vector<JsonValue>& ArrayOf(const JsonValue& value, std::string_view expected) {
    if (value.kind != JsonKind::kArray) FailExpected(value, expected);
    return value.items;
}

float NumberOf(const JsonValue& value, float low, float high, std::string_view expected) {
    const bool isInside = value.kind == JsonKind::kNumber && value.number >= static_cast<double>(low) &&
                          value.number <= static_cast<double>(high);
    if (!isInside) FailExpected(value, expected);
    return static_cast<float>(value.number);
}

float NumberOf(const JsonValue& value) {
    return NumberOf(value, -kLargest, kLargest, "a number");
}

int32_t IntegerOf(const JsonValue& value, std::string_view expected) {
    constexpr double kLow = std::numeric_limits<int32_t>::min(), kHigh = std::numeric_limits<int32_t>::max();
    const bool isWhole = value.kind == JsonKind::kNumber && value.number >= kLow && value.number <= kHigh &&
                         value.number == std::trunc(value.number);
    if (!isWhole) FailExpected(value, expected);
    return static_cast<int32_t>(value.number);
}

bool BooleanOf(const JsonValue& value) {
    if (value.kind != JsonKind::kBoolean) FailExpected(value, "true or false");
    return value.number != 0;
}

const std::string& NameOf(const JsonValue& value, std::string_view expected) {
    if (value.kind != JsonKind::kString || value.text.empty()) FailExpected(value, expected);
    return value.text;
}

Rgb ColorOf(const JsonValue& value) {
    const bool isMarked = value.kind == JsonKind::kString && value.text.starts_with('#');
    const std::optional<Rgb> color = isMarked ? ParseColor(value.text) : std::nullopt;
    if (!color) FailExpected(value, "a colour #RRGGBB, such as \"#FFCC00\"");
    return *color;
}

Position PairOf(const JsonValue& value, std::string_view expected) {
    if (value.kind != JsonKind::kArray || value.items.size() != 2) FailExpected(value, expected);
    return {NumberOf(value.items[0]), NumberOf(value.items[1])};
}

}  // namespace captionfx
