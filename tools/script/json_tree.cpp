#include "tools/script/json_tree.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

#include <nlohmann/json.hpp>

namespace captionfx {
namespace {

using Json = nlohmann::json;

/// Walks over a text and keeps count of how far the parser, which copies it, has come.
class ReadingPoint {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    ReadingPoint(const char* at, size_t& count) : at_(at), count_(&count) {}

    reference operator*() const { return *at_; }
    ReadingPoint& operator++() {
        ++at_;
        ++*count_;
        return *this;
    }
    bool operator==(const ReadingPoint& other) const { return at_ == other.at_; }

private:
    const char* at_;
    size_t* count_;
};

/// Moves on through a text and counts lines and columns.
class PlaceCounter {
public:
    explicit PlaceCounter(std::string_view text) : text_(text) {}

    /// Offsets must not fall.
    TextPlace At(size_t offset) {
        for (; offset_ < std::min(offset, text_.size()); ++offset_) {
            if (text_[offset_] == '\n') {
                place_ = {.line = place_.line + 1, .column = 1};
            } else if ((static_cast<unsigned char>(text_[offset_]) & 0xC0U) != 0x80U) {
                ++place_.column;
            }
        }
        return place_;
    }

private:
    std::string_view text_;
    size_t offset_ = 0;
    TextPlace place_;
};

/// What the parser expects, in the words of people who write scripts: a comma is forgotten more often than a bracket.
std::string ReadableExpectation(std::string_view expected) {
    if (expected == "; expected string literal") return "; expected a key in double quotes";
    if (expected == "; expected '}'") return "; expected ',' or '}'";
    if (expected == "; expected ']'") return "; expected ',' or ']'";
    return std::string(expected);
}

/// "[json...] parse error at line 1, column 2: syntax error ...; last read: 'x'; expected ..." without what the place
/// tells already.
std::string ReasonOf(std::string_view message) {
    message.remove_prefix(std::min(message.find("] ") + 2, message.size()));
    if (message.starts_with("parse error at")) message.remove_prefix(message.find(": ") + 2);
    const size_t read = message.find("; last read: "), expected = message.rfind("; expected ");
    std::string reason(message.substr(0, std::min(read, expected)));
    if (expected != std::string_view::npos) reason += ReadableExpectation(message.substr(expected));
    return reason;
}

/// Builds the tree from the parser's events. A token begins at the first byte behind the token before it that is
/// neither space nor a separator: the parser is never more than one such byte ahead.
class TreeBuilder final : public nlohmann::json_sax<Json> {
public:
    TreeBuilder(std::string_view text, const size_t& read) : text_(text), read_(read), places_(text) {}

    JsonValue TakeDocument() { return std::move(document_); }

    bool null() override { return Add({}); }
    bool boolean(bool value) override { return AddNumber(JsonKind::kBoolean, value ? 1 : 0); }
    bool number_integer(number_integer_t value) override {
        return AddNumber(JsonKind::kNumber, static_cast<double>(value));
    }
    bool number_unsigned(number_unsigned_t value) override {
        return AddNumber(JsonKind::kNumber, static_cast<double>(value));
    }
    bool number_float(number_float_t value, const string_t& /*digits*/) override {
        return AddNumber(JsonKind::kNumber, value);
    }
    bool string(string_t& value) override {
        JsonValue node;
        node.kind = JsonKind::kString;
        node.text = std::move(value);
        return Add(std::move(node));
    }
    bool binary(binary_t& /*value*/) override { return false; }  // JSON text has none
    bool start_object(size_t /*size*/) override { return Open(JsonKind::kObject); }
    bool start_array(size_t /*size*/) override { return Open(JsonKind::kArray); }
    bool end_object() override { return Close(); }
    bool end_array() override { return Close(); }

    bool key(string_t& value) override {
        keyPlace_ = NextPlace();
        key_ = std::move(value);
        if (FindMember(*open_.back(), key_) != nullptr)
            throw PlacedError(keyPlace_, open_.back()->path, "the key '" + key_ + "' is there twice");
        return true;
    }

    bool parse_error(size_t position, const std::string& /*token*/, const Json::exception& error) override {
        throw PlacedError(places_.At(position == 0 ? 0 : position - 1), "", ReasonOf(error.what()));
    }

private:
    /// Of the token that the parser has just read.
    TextPlace NextPlace() {
        const size_t start = std::min(text_.find_first_not_of(" \t\r\n,:", end_), text_.size());
        end_ = read_;
        return places_.At(start);
    }

    bool AddNumber(JsonKind kind, double number) {
        JsonValue node;
        node.kind = kind;
        node.number = number;
        return Add(std::move(node));
    }

    bool Add(JsonValue node) {
        node.place = NextPlace();
        if (open_.empty()) {
            document_ = std::move(node);
            return true;
        }
        JsonValue& parent = *open_.back();
        if (parent.kind == JsonKind::kObject) {
            node.path = parent.path + (parent.path.empty() ? "" : ".") + key_;
            node.key = std::move(key_);
            node.keyPlace = keyPlace_;
        } else {
            node.path = parent.path + "[" + std::to_string(parent.items.size()) + "]";
        }
        parent.items.push_back(std::move(node));
        return true;
    }

    bool Open(JsonKind kind) {
        constexpr size_t kDeepest = 32;
        JsonValue node;
        node.kind = kind;
        Add(std::move(node));
        open_.push_back(open_.empty() ? &document_ : &open_.back()->items.back());
        if (open_.size() > kDeepest) throw PlacedError(open_.back()->place, "", "values are nested too deep");
        return true;
    }

    bool Close() {
        end_ = read_;
        open_.pop_back();
        return true;
    }

    std::string_view text_;
    const size_t& read_;
    PlaceCounter places_;
    size_t end_ = 0;  // of the last token, or of the one byte behind a number
    JsonValue document_;
    std::vector<JsonValue*> open_;  // from the document inward; only the last one grows
    std::string key_;
    TextPlace keyPlace_;
};

}  // namespace

PlacedError::PlacedError(TextPlace place, std::string_view path, std::string_view reason)
    : std::runtime_error(std::to_string(place.line) + ":" + std::to_string(place.column) + ": " + std::string(path) +
                         (path.empty() ? "" : ": ") + std::string(reason)) {}

JsonValue ParseJson(std::string_view text) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    size_t read = 0, unused = 0;
    TreeBuilder builder(text, read);
    Json::sax_parse(ReadingPoint(text.data(), read), ReadingPoint(text.data() + text.size(), unused), &builder);
    return builder.TakeDocument();
}

const JsonValue* FindMember(const JsonValue& object, std::string_view key) {
    const auto found = std::ranges::find(object.items, key, &JsonValue::key);
    return object.kind == JsonKind::kObject && found != object.items.end() ? &*found : nullptr;
}

}  // namespace captionfx
