// A JSON document in which every value knows where it stands, so that a fault of meaning can be shown as exactly as one
// of syntax.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace captionfx {

/// Both from 1; columns are characters, not bytes.
struct TextPlace {
    int32_t line = 1, column = 1;
};

enum class JsonKind { kNull, kBoolean, kNumber, kString, kArray, kObject };

struct JsonValue {
    JsonKind kind = JsonKind::kNull;
    TextPlace place;
    std::string path;              ///< Such as "strings[2].face.color"; empty for the document.
    double number = 0;             ///< Of a number; of a boolean 0 or 1.
    std::string text;              ///< Of a string, UTF-8.
    std::vector<JsonValue> items;  ///< Of an array, or the members of an object in the order of the file.
    std::string key;               ///< Of a member; unique in its object.
    TextPlace keyPlace;
};

/// A fault in a document: "12:5: strings[2].face: expected a colour". The reader of the file puts its name in front.
class PlacedError : public std::runtime_error {
public:
    PlacedError(TextPlace place, std::string_view path, std::string_view reason);
};

/// Reads a document, UTF-8 with or without a byte-order mark. Throws PlacedError for what is not JSON, for a key that
/// an object has twice, and for values nested more than 32 deep.
[[nodiscard]] JsonValue ParseJson(std::string_view text);

/// The member of an object; null where it has none.
[[nodiscard]] const JsonValue* FindMember(const JsonValue& object, std::string_view key);

}  // namespace captionfx
