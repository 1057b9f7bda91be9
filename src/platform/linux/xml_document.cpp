#include "platform/linux/xml_document.h"

#include <cstdio>
#include <limits>
#include <new>
#include <span>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include "platform/utf16.h"

namespace captionfx {
namespace {

// A title is one file: nothing is fetched, and the parser's limits on depth and on the length of a name or value stay
// in force.
constexpr int kParseOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_COMPACT;

struct Free {
    void operator()(xmlDoc* document) const noexcept { xmlFreeDoc(document); }
    void operator()(xmlParserCtxt* parser) const noexcept { xmlFreeParserCtxt(parser); }
    void operator()(xmlBuffer* buffer) const noexcept { xmlBufferFree(buffer); }
    void operator()(xmlChar* text) const noexcept { xmlFree(text); }
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
template <class Type>
using Owned = std::unique_ptr<Type, Free>;

/// What libxml2 allocated; null means that memory ran out.
template <class Type>
Owned<Type> Checked(Type* allocated) {
    if (allocated == nullptr) throw std::bad_alloc();
    return Owned<Type>(allocated);
}

const xmlChar* XmlText(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

xmlNode* Raw(const XmlNode& node) {
    return static_cast<xmlNode*>(node.Handle.get());
}

/// A node that is only borrowed: documents and hosts own theirs.
XmlNode Borrowed(void* node) {
    return {std::shared_ptr<void>(std::shared_ptr<void>(), node)};
}

bool IsElement(const xmlNode& node, const char* name) {
    const bool isPlain = node.ns == nullptr || node.ns->prefix == nullptr;
    return node.type == XML_ELEMENT_NODE && isPlain && xmlStrEqual(node.name, XmlText(name)) != 0;
}

/// Keeps libxml2 from printing while it stands: some errors pass by the parser's options. The handler belongs to the
/// thread, and may be the host's.
class Silence {
public:
    Silence() {
        xmlSetStructuredErrorFunc(nullptr, [](void* /*context*/, xmlError* /*error*/) {});
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    ~Silence() { xmlSetStructuredErrorFunc(context_, handler_); }

private:
    void* const context_ = xmlStructuredErrorContext;
    const xmlStructuredErrorFunc handler_ = xmlStructuredError;
};

/// Titles have no entities of their own, and a few nested ones can keep a parser busy for hours.
void RefuseEntity(void* parser, const xmlChar* /*name*/, int /*type*/, const xmlChar* /*publicId*/,
                  const xmlChar* /*systemId*/, xmlChar* /*content*/) {
    xmlStopParser(static_cast<xmlParserCtxt*>(parser));
}

class LibxmlDocument final : public XmlDocument {
public:
    LibxmlDocument() : document_(Checked(xmlNewDoc(XmlText("1.0")))) {}

    bool LoadText(std::u16string_view text) override {
        return Parse(std::as_bytes(std::span(text)), "UTF-16LE", XML_PARSE_IGNORE_ENC);
    }

    bool LoadFile(std::u16string_view path) override {
        const Owned<std::FILE> file(std::fopen(Utf8Of(path).c_str(), "rbe"));
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
        return Parse(std::as_bytes(std::span(bytes)), nullptr, 0);
    }

    bool SaveFile(std::u16string_view path) override {
        const std::vector<uint8_t> bytes = Save();  // a document that cannot be written leaves an old file alone
        if (bytes.empty()) return false;
        Owned<std::FILE> file(std::fopen(Utf8Of(path).c_str(), "wbe"));
        if (!file) return false;
        const bool isWritten = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
        // A full disk often shows only when the last block leaves the buffer.
        const bool isClosed = std::fclose(file.release()) == 0;
        return isWritten && isClosed;
    }

    std::vector<uint8_t> Save() override {
        xmlChar* text = nullptr;
        int size = 0;
        const Silence silence;
        xmlDocDumpMemoryEnc(document_.get(), &text, &size, "UTF-16");
        const Owned<xmlChar> owned(text);
        return owned && size > 0 ? std::vector<uint8_t>(text, text + size) : std::vector<uint8_t>();
    }

    XmlNode Document() override { return Borrowed(document_.get()); }

    XmlNode NodeOf(void* element) override {
        const auto* const node = static_cast<const xmlNode*>(element);
        return Borrowed(node != nullptr && node->type == XML_ELEMENT_NODE ? element : nullptr);
    }

    XmlNode Child(const XmlNode& parent, const char* name) override {
        for (xmlNode* child = FirstChild(parent); child != nullptr; child = child->next) {
            if (IsElement(*child, name)) return Borrowed(child);
        }
        return {};
    }

    std::vector<XmlNode> Children(const XmlNode& parent, const char* name) override {
        std::vector<XmlNode> children;
        for (xmlNode* child = FirstChild(parent); child != nullptr; child = child->next) {
            if (IsElement(*child, name)) children.push_back(Borrowed(child));
        }
        return children;
    }

    XmlNode AddChild(const XmlNode& parent, const char* name) override {
        xmlNode* const to = Raw(parent);
        if (to == nullptr) return {};
        xmlNode* const child = xmlNewDocNode(to->doc, nullptr, XmlText(name), nullptr);
        if (child == nullptr) throw std::bad_alloc();
        return Borrowed(xmlAddChild(to, child));
    }

    std::optional<std::string> Attribute(const XmlNode& node, const char* name) override {
        if (!node) return std::nullopt;
        const xmlAttr* const attribute = xmlHasNsProp(Raw(node), XmlText(name), nullptr);
        if (attribute == nullptr) return std::nullopt;
        const xmlNode* const value = attribute->children;
        if (value == nullptr) return std::string();
        // Nearly always: one text, which needs no copy of libxml2's.
        if (value->type == XML_TEXT_NODE && value->next == nullptr) return TextOf(value->content);
        const Owned<xmlChar> text(xmlNodeListGetString(attribute->doc, value, 1));
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

    static xmlNode* FirstChild(const XmlNode& parent) { return parent ? Raw(parent)->children : nullptr; }

    bool Parse(std::span<const std::byte> text, const char* encoding, int options) {
        if (text.empty() || text.size() > kLongestText) return false;
        const Silence silence;
        const Owned<xmlParserCtxt> parser = Checked(xmlNewParserCtxt());
        parser->sax->entityDecl = &RefuseEntity;
        Owned<xmlDoc> parsed(xmlCtxtReadMemory(parser.get(), reinterpret_cast<const char*>(text.data()),
                                               static_cast<int>(text.size()), nullptr, encoding,
                                               kParseOptions | options));
        if (parser->errNo == XML_ERR_NO_MEMORY) throw std::bad_alloc();
        if (!parsed) return false;
        document_ = std::move(parsed);
        return true;
    }

    Owned<xmlDoc> document_;
};

}  // namespace

std::unique_ptr<XmlDocument> CreateLibxmlDocument() {
    xmlInitParser();  // locks itself; without it, the first two documents of two threads would race
    return std::make_unique<LibxmlDocument>();
}

}  // namespace captionfx
