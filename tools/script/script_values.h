// Values of a title script, each read with an error that says what was expected and what is there.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/argument_values.h"
#include "tools/script/json_tree.h"

namespace captionfx {

/// A word of a script and what it stands for.
template <class Value>
struct ScriptWord {
    std::string_view word;
    Value value;
};

/// Throws the error "expected ..., found ..." of a value.
[[noreturn]] void FailExpected(const JsonValue& value, std::string_view expected);

/// Throws an error of a value, or of its key.
[[noreturn]] void Fail(const JsonValue& value, std::string_view reason);
[[noreturn]] void FailKey(const JsonValue& member, std::string_view reason);

/// The name that a slip of the pen may have meant; empty where none is near.
[[nodiscard]] std::string_view NearestName(std::string_view name, std::span<const std::string_view> names);

/// Throws unless the value is an object with keys from `known` only.
void CheckObject(const JsonValue& value, std::span<const std::string_view> known);

/// The items of an array.
[[nodiscard]] const std::vector<JsonValue>& ArrayOf(const JsonValue& value, std::string_view expected);

/// A number of the range, both ends included; `expected` names it, such as "a number from 0 to 1".
[[nodiscard]] float NumberOf(const JsonValue& value, float low, float high, std::string_view expected);

/// Any number that a document may hold.
[[nodiscard]] float NumberOf(const JsonValue& value);

/// A whole number of 32 bits.
[[nodiscard]] int32_t IntegerOf(const JsonValue& value, std::string_view expected);

[[nodiscard]] bool BooleanOf(const JsonValue& value);

/// A string that is not empty.
[[nodiscard]] const std::string& NameOf(const JsonValue& value, std::string_view expected);

/// "#RRGGBB".
[[nodiscard]] Rgb ColorOf(const JsonValue& value);

/// Two numbers.
[[nodiscard]] Position PairOf(const JsonValue& value, std::string_view expected);

/// What the word stands for; words that are near or all words are named where it is none.
template <class Value>
[[nodiscard]] Value WordOf(const JsonValue& value, std::span<const ScriptWord<Value>> words) {
    std::vector<std::string_view> names;
    for (const auto& [word, meaning] : words) {
        if (value.kind == JsonKind::kString && value.text == word) return meaning;
        names.push_back(word);
    }
    std::string all;
    for (const std::string_view name : names) all += (all.empty() ? "" : ", ") + std::string(name);
    FailExpected(value, "one of " + all);
}

/// The word for a value; empty where there is none.
template <class Value>
[[nodiscard]] std::string_view WordFor(const Value& value, std::span<const ScriptWord<Value>> words) {
    for (const auto& [word, meaning] : words) {
        if (meaning == value) return word;
    }
    return {};
}

}  // namespace captionfx
