// A title's XML as the system's library holds it, which is how the library's interface hands out and takes in
// keyframes: libxml2 on Linux, MSXML on Windows. Memory that runs out throws std::bad_alloc.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace captionfx {

struct TitleAttribute {
    std::string name, value;
};

/// One element. Copies are of the same element, and keep its document alive.
class TitleNode {
public:
    /// No element.
    TitleNode() = default;
    /// Of the system's node.
    explicit TitleNode(std::shared_ptr<void> handle) : handle_(std::move(handle)) {}

    [[nodiscard]] explicit operator bool() const { return handle_ != nullptr; }
    /// The system's node, for LoadFromNode and SaveToNode.
    [[nodiscard]] void* Handle() const { return handle_.get(); }

    [[nodiscard]] std::string Name() const;
    /// The line of its file, from 1 on; 0 where the system's library does not remember.
    [[nodiscard]] long Line() const;
    /// The elements in it; none where this is none.
    [[nodiscard]] std::vector<TitleNode> Children() const;
    [[nodiscard]] std::vector<TitleAttribute> Attributes() const;
    /// Empty where there is none of that name.
    [[nodiscard]] std::string Attribute(const char* name) const;

    /// Adds an element at the end.
    [[nodiscard]] TitleNode AddChild(const char* name) const;
    void SetAttribute(const char* name, const std::string& value) const;
    /// Adds a copy of an element, of any document, with all that is in it.
    void AddCopy(const TitleNode& original) const;

private:
    std::shared_ptr<void> handle_;
};

/// What a text has that no title may. `place` is "line:column", or empty where the system's library does not tell.
class TitleTextError : public std::runtime_error {
public:
    TitleTextError(std::string place, const std::string& reason)
        : std::runtime_error(reason), place_(std::move(place)) {}

    [[nodiscard]] const std::string& Place() const { return place_; }

private:
    std::string place_;
};

/// The root of a new document.
[[nodiscard]] TitleNode MakeTitleDocument(const char* rootName);

/// The root of a document that is read from bytes, in the encoding that they name. Nothing is fetched, and entities are
/// refused. Throws TitleTextError.
[[nodiscard]] TitleNode ReadTitleDocument(std::string_view bytes);

}  // namespace captionfx
