// A parsed XML document as little more than its attributes: libxml2's own tree takes some 240 bytes an attribute, which
// for a long title is more than a processor's cache, and its nodes come from the heap one by one.
#pragma once

#include <cstddef>
#include <memory_resource>
#include <optional>
#include <span>
#include <string_view>

#include "platform/linux/libxml_owned.h"

namespace captionfx {

/// The elements of one text. All lie in one arena and live as long as this object does; so do the texts they point to.
class ParsedXml {
public:
    struct Attribute {
        std::string_view Name, Value;
    };
    /// What has a namespace prefix has no name here, and is no attribute: titles know of neither.
    struct Element {
        std::string_view Name;
        std::span<const Attribute> Attributes;
        Element* FirstChild = nullptr;
        Element* Next = nullptr;  ///< of the same parent

        [[nodiscard]] std::optional<std::string_view> Find(std::string_view name) const;
    };

    ParsedXml() = default;
    ParsedXml(const ParsedXml&) = delete;
    ParsedXml& operator=(const ParsedXml&) = delete;

    /// To be called once. False for what is no well-formed document. `encoding` is that of the text; null leaves it to
    /// the text's declaration. No document that declares entities is taken, and nothing else is read. Memory that runs
    /// out is thrown.
    [[nodiscard]] bool Parse(std::span<const std::byte> text, const char* encoding);

    /// The element whose child is the root.
    [[nodiscard]] Element& Document() { return document_; }

private:
    class Builder;

    LibxmlOwned<xmlDict> names_;  ///< of elements and attributes
    std::pmr::monotonic_buffer_resource arena_;
    Element document_;
};

}  // namespace captionfx
