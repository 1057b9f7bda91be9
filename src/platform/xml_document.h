// XML documents, as far as titles need them: elements and their attributes. All texts are UTF-8 without control
// characters, unless an operation says otherwise.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace captionfx {

/// An element, or the document as the parent of its root. What it points to is the back end's; it lives as long as its
/// document, and it may be empty.
struct XmlNode {
    std::shared_ptr<void> Handle;

    explicit operator bool() const { return Handle != nullptr; }
};

/// A document in memory: it is loaded, to be read, or built by AddChild, to be saved. What can fail says whether it was
/// done; memory that runs out is thrown. An empty node has no children and no attributes.
class XmlDocument {
public:
    virtual ~XmlDocument() = default;

    /// Parses a text, whatever encoding it declares. Nothing else is read, and a document that declares entities is
    /// refused.
    [[nodiscard]] virtual bool LoadText(std::u16string_view text) = 0;

    /// Parses a file in the encoding that it declares or that its byte-order mark tells.
    [[nodiscard]] virtual bool LoadFile(std::u16string_view path) = 0;

    /// Writes the document to a file, as Save gives it.
    [[nodiscard]] virtual bool SaveFile(std::u16string_view path) = 0;

    /// The document's bytes: UTF-16, lower byte first, with byte-order mark and declaration. Empty when it failed.
    [[nodiscard]] virtual std::vector<uint8_t> Save() = 0;

    /// The node whose child is the root.
    [[nodiscard]] virtual XmlNode Document() = 0;

    /// A host's own element as a node; empty for what is not an element.
    [[nodiscard]] virtual XmlNode NodeOf(void* element) = 0;

    /// The first child element of that name.
    [[nodiscard]] virtual XmlNode Child(const XmlNode& parent, const char* name) = 0;

    /// All child elements of that name, in document order.
    [[nodiscard]] virtual std::vector<XmlNode> Children(const XmlNode& parent, const char* name) = 0;

    /// Appends a new element; under the document, it becomes the root. Empty when it could not be added.
    virtual XmlNode AddChild(const XmlNode& parent, const char* name) = 0;

    [[nodiscard]] virtual std::optional<std::string> Attribute(const XmlNode& node, const char* name) = 0;

    /// Sets an attribute of a node that is not empty.
    virtual void SetAttribute(const XmlNode& node, const char* name, const std::string& text) = 0;
};

}  // namespace captionfx
