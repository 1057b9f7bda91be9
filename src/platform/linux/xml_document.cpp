#include "platform/linux/xml_document.h"

#include <cstdio>
#include <limits>
#include <new>
#include <span>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include "platform/linux/libxml_owned.h"
#include "platform/linux/parsed_xml.h"
#include "platform/utf16.h"

namespace captionfx {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using OwnedFile = std::unique_ptr<std::FILE, CloseFile>;

const xmlChar* XmlText(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

xmlNode* Raw(const XmlNode& node) {
    return static_cast<xmlNode*>(node.Handle.get());
}

ParsedXml::Element* Parsed(const XmlNode& node) {
    return static_cast<ParsedXml::Element*>(node.Handle.get());
}

/// A node that is only borrowed: documents and hosts own theirs.
XmlNode Borrowed(void* node) {
    return {std::shared_ptr<void>(std::shared_ptr<void>(), node)};
}

bool IsElement(const xmlNode& node, const char* name) {
    const bool isPlain = node.ns == nullptr || node.ns->prefix == nullptr;
    return node.type == XML_ELEMENT_NODE && isPlain && xmlStrEqual(node.name, XmlText(name)) != 0;
}

class LibxmlDocument final : public XmlDocument {
public:
    LibxmlDocument() : document_(LibxmlChecked(xmlNewDoc(XmlText("1.0")))) {}

    bool LoadText(std::u16string_view text) override { return Parse(std::as_bytes(std::span(text)), "UTF-16LE"); }

    bool LoadFile(std::u16string_view path) override {
        const OwnedFile file(std::fopen(Utf8Of(path).c_str(), "rbe"));
        if (!file) return false;
        std::vector<uint8_t> bytes;
        constexpr size_t kBlock = 1U << 16U;
        for (size_t size = 0;;) {
            bytes.resize(size + kBlock);
            const size_t count = std::fread(bytes.data() + size, 1, kBlock, file.get());
            size += count;
            bytes.resize(size);
            if (count < kBlock || size > kLongestText) break;
        }
        if (std::ferror(file.get()) != 0) return false;  // a folder opens, but cannot be read
        return Parse(std::as_bytes(std::span(bytes)), nullptr);
    }

    bool SaveFile(std::u16string_view path) override {
        const std::vector<uint8_t> bytes = Save();  // a document that cannot be written leaves an old file alone
        if (bytes.empty()) return false;
        OwnedFile file(std::fopen(Utf8Of(path).c_str(), "wbe"));
        if (!file) return false;
        const bool isWritten = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
        // A full disk often shows only when the last block leaves the buffer.
        const bool isClosed = std::fclose(file.release()) == 0;
        return isWritten && isClosed;
    }

    std::vector<uint8_t> Save() override {
        if (parsed_) return {};
        xmlChar* text = nullptr;
        int size = 0;
        const LibxmlSilence silence;
        xmlDocDumpMemoryEnc(document_.get(), &text, &size, "UTF-16");
        const LibxmlOwned<xmlChar> owned(text);
        return owned && size > 0 ? std::vector<uint8_t>(text, text + size) : std::vector<uint8_t>();
    }

    XmlNode Document() override { return parsed_ ? Borrowed(&parsed_->Document()) : Borrowed(document_.get()); }

    XmlNode NodeOf(void* element) override {
        const auto* const node = static_cast<const xmlNode*>(element);
        return Borrowed(node != nullptr && node->type == XML_ELEMENT_NODE ? element : nullptr);
    }

    XmlNode Child(const XmlNode& parent, const char* name) override {
        XmlNode first;
        ForEachChild(parent, name, [&](void* child) {
            first = Borrowed(child);
            return false;
        });
        return first;
    }

    std::vector<XmlNode> Children(const XmlNode& parent, const char* name) override {
        std::vector<XmlNode> children;
        ForEachChild(parent, name, [&](void* child) {
            children.push_back(Borrowed(child));
            return true;
        });
        return children;
    }

    XmlNode AddChild(const XmlNode& parent, const char* name) override {
        xmlNode* const to = Raw(parent);
        if (to == nullptr || parsed_) return {};
        xmlNode* const child = xmlNewDocNode(to->doc, nullptr, XmlText(name), nullptr);
        if (child == nullptr) throw std::bad_alloc();
        return Borrowed(xmlAddChild(to, child));
    }

    std::optional<std::string> Attribute(const XmlNode& node, const char* name) override {
        if (!node) return std::nullopt;
        if (parsed_) {
            const auto value = Parsed(node)->Find(name);
            return value ? std::optional<std::string>(*value) : std::nullopt;
        }
        const xmlAttr* const attribute = xmlHasNsProp(Raw(node), XmlText(name), nullptr);
        if (attribute == nullptr) return std::nullopt;
        const xmlNode* const value = attribute->children;
        if (value == nullptr) return std::string();
        const LibxmlOwned<xmlChar> text(xmlNodeListGetString(attribute->doc, value, 1));
        return TextOf(text.get());
    }

    void SetAttribute(const XmlNode& node, const char* name, const std::string& text) override {
        if (xmlSetProp(Raw(node), XmlText(name), XmlText(text.c_str())) == nullptr) throw std::bad_alloc();
    }

private:
    static constexpr size_t kLongestText = std::numeric_limits<int>::max();  // bytes that libxml2 can count

    static std::string TextOf(const xmlChar* text) {
        return text == nullptr ? std::string() : std::string(reinterpret_cast<const char*>(text));
    }

    /// Until `use` returns false.
    template <class Use>
    void ForEachChild(const XmlNode& parent, const char* name, Use use) const {
        if (!parent) return;
        if (parsed_) {
            for (ParsedXml::Element* child = Parsed(parent)->FirstChild; child != nullptr; child = child->Next) {
                if (child->Name == name && !use(child)) return;
            }
        } else {
            for (xmlNode* child = Raw(parent)->children; child != nullptr; child = child->next) {
                if (IsElement(*child, name) && !use(child)) return;
            }
        }
    }

    bool Parse(std::span<const std::byte> text, const char* encoding) {
        auto parsed = std::make_unique<ParsedXml>();
        if (!parsed->Parse(text, encoding)) return false;
        parsed_ = std::move(parsed);
        return true;
    }

    std::unique_ptr<ParsedXml> parsed_;  ///< What was loaded; no document is built then.
    LibxmlOwned<xmlDoc> document_;
};

}  // namespace

std::unique_ptr<XmlDocument> CreateLibxmlDocument() {
    xmlInitParser();  // locks itself; without it, the first two documents of two threads would race
    return std::make_unique<LibxmlDocument>();
}

}  // namespace captionfx
