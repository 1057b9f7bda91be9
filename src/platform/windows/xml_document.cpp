#include "platform/windows/xml_document.h"

#include <windows.h>
#include <cstdio>
#include <limits>
#include <msxml2.h>
#include <span>
#include <utility>

#include "platform/utf16.h"
#include "platform/windows/com.h"

namespace captionfx {
namespace {

/// MSXML's identifiers differ in their first number alone.
constexpr GUID MsxmlId(unsigned long first) {
    return {first, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
}
constexpr GUID kDomDocument = MsxmlId(0x2933bf90);

}  // namespace

template <>
inline constexpr GUID kInterfaceId<IXMLDOMNode> = MsxmlId(0x2933bf80);
template <>
inline constexpr GUID kInterfaceId<IXMLDOMDocument> = MsxmlId(0x2933bf81);
template <>
inline constexpr GUID kInterfaceId<IXMLDOMElement> = MsxmlId(0x2933bf86);
template <>
inline constexpr GUID kInterfaceId<IXMLDOMDocument2> = MsxmlId(0x2933bf95);

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using OwnedFile = std::unique_ptr<std::FILE, CloseFile>;

/// Keeps a node alive as long as somebody has the handle.
XmlNode Owned(ComPtr<IXMLDOMNode> node) {
    if (!node) return {};
    return {std::make_shared<ComPtr<IXMLDOMNode>>(std::move(node))};
}

const ComPtr<IXMLDOMNode>& Raw(const XmlNode& node) {
    return *static_cast<const ComPtr<IXMLDOMNode>*>(node.Handle.get());
}

/// Memory that grows, as a stream; empty when there is none.
ComPtr<IStream> MemoryStream() {
    ComPtr<IStream> stream;
    constexpr BOOL kFreedWithTheStream = TRUE;
    return Done(CreateStreamOnHGlobal(nullptr, kFreedWithTheStream, stream.GetAddressOf())) ? stream
                                                                                            : ComPtr<IStream>();
}

/// What was written to a memory stream. Its block of memory is longer than that.
std::vector<uint8_t> BytesOf(IStream& stream) {
    STATSTG state{};
    HGLOBAL block = nullptr;
    if (!Done(stream.Stat(&state, STATFLAG_NONAME)) || !Done(GetHGlobalFromStream(&stream, &block))) return {};
    const auto* const bytes = static_cast<const uint8_t*>(GlobalLock(block));
    if (bytes == nullptr) return {};
    const std::vector<uint8_t> copy(bytes, bytes + state.cbSize.QuadPart);
    GlobalUnlock(block);
    return copy;
}

class MsxmlDocument final : public XmlDocument {
public:
    explicit MsxmlDocument(ComPtr<IXMLDOMDocument> document) : document_(std::move(document)) {
        // A title is one file: it is parsed on this thread, checked against nothing, and nothing else is fetched.
        document_->put_async(VARIANT_FALSE);
        document_->put_validateOnParse(VARIANT_FALSE);
        document_->put_resolveExternals(VARIANT_FALSE);
        if (const auto newer = Query<IXMLDOMDocument2>(document_.Get())) {
            ComValue prohibit;
            prohibit.Out()->vt = VT_BOOL;
            prohibit.Out()->boolVal = VARIANT_TRUE;
            newer->setProperty(ComText("ProhibitDTD").Get(), prohibit.Get());
        }
        Declare();
    }

    bool LoadText(std::u16string_view text) override {
        VARIANT_BOOL loaded = VARIANT_FALSE;
        return Done(document_->loadXML(ComText(WideOf(text)).Get(), &loaded)) && IsParsed(loaded);
    }

    /// Read here and not by MSXML, which would take the path for the address of something to fetch.
    bool LoadFile(std::u16string_view path) override {
        const OwnedFile file(_wfopen(WideOf(path).c_str(), L"rb"));
        const ComPtr<IStream> stream = MemoryStream();
        if (!file || !stream) return false;
        std::vector<uint8_t> block(1U << 16U);
        while (const size_t count = std::fread(block.data(), 1, block.size(), file.get())) {
            if (!Done(stream->Write(block.data(), static_cast<ULONG>(count), nullptr))) return false;
        }
        if (std::ferror(file.get()) != 0) return false;
        if (!Done(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr))) return false;
        VARIANT_BOOL loaded = VARIANT_FALSE;
        return Done(document_->load(ComValue(stream.Get()).Get(), &loaded)) && IsParsed(loaded);
    }

    bool SaveFile(std::u16string_view path) override {
        const std::vector<uint8_t> bytes = Save();  // a document that cannot be written leaves an old file alone
        if (bytes.empty()) return false;
        OwnedFile file(_wfopen(WideOf(path).c_str(), L"wb"));
        if (!file) return false;
        const bool isWritten = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
        // A full disk often shows only when the last block leaves the buffer.
        const bool isClosed = std::fclose(file.release()) == 0;
        return isWritten && isClosed;
    }

    std::vector<uint8_t> Save() override {
        const ComPtr<IStream> stream = MemoryStream();
        if (!stream || !Done(document_->save(ComValue(stream.Get()).Get()))) return {};
        return BytesOf(*stream.Get());
    }

    XmlNode Document() override { return Owned(Query<IXMLDOMNode>(document_.Get())); }

    XmlNode NodeOf(void* element) override { return Owned(Query<IXMLDOMElement>(static_cast<IXMLDOMNode*>(element))); }

    XmlNode Child(const XmlNode& parent, const char* name) override {
        ComPtr<IXMLDOMNode> child;
        if (!parent || !Done(Raw(parent)->selectSingleNode(ComText(name).Get(), child.GetAddressOf()))) return {};
        return Owned(std::move(child));
    }

    std::vector<XmlNode> Children(const XmlNode& parent, const char* name) override {
        ComPtr<IXMLDOMNodeList> list;
        LONG length = 0;
        if (!parent || !Done(Raw(parent)->selectNodes(ComText(name).Get(), list.GetAddressOf()))) return {};
        if (!list || !Done(list->get_length(&length))) return {};
        std::vector<XmlNode> children;
        for (LONG i = 0; i < length; ++i) {
            ComPtr<IXMLDOMNode> child;
            if (Done(list->nextNode(child.GetAddressOf())) && child) children.push_back(Owned(std::move(child)));
        }
        return children;
    }

    XmlNode AddChild(const XmlNode& parent, const char* name) override {
        if (!parent) return {};
        ComPtr<IXMLDOMDocument> owner;
        if (!Done(Raw(parent)->get_ownerDocument(owner.GetAddressOf()))) return {};
        if (!owner) owner = document_;  // the parent is a document itself
        ComPtr<IXMLDOMElement> element;
        ComPtr<IXMLDOMNode> child;
        if (!Done(owner->createElement(ComText(name).Get(), element.GetAddressOf()))) return {};
        if (!Done(Raw(parent)->appendChild(element.Get(), child.GetAddressOf()))) return {};
        return Owned(std::move(child));
    }

    std::optional<std::string> Attribute(const XmlNode& node, const char* name) override {
        if (!node) return std::nullopt;
        const auto element = Query<IXMLDOMElement>(Raw(node).Get());
        ComValue value;
        if (!element || !Done(element->getAttribute(ComText(name).Get(), value.Out())) || !value.IsText())
            return std::nullopt;
        return Utf8Of(Utf16Of(value.Text()));
    }

    void SetAttribute(const XmlNode& node, const char* name, const std::string& text) override {
        const auto element = Query<IXMLDOMElement>(Raw(node).Get());
        if (!element || !Done(element->setAttribute(ComText(name).Get(), ComValue(WideOf(text)).Get())))
            throw std::bad_alloc();
    }

private:
    /// The declaration, which also decides what Save writes.
    void Declare() {
        ComPtr<IXMLDOMProcessingInstruction> declaration;
        const ComText target("xml"), text(R"(version="1.0" encoding="UTF-16")");
        if (!Done(document_->createProcessingInstruction(target.Get(), text.Get(), declaration.GetAddressOf()))) return;
        static_cast<void>(Done(document_->appendChild(declaration.Get(), nullptr)));
    }

    /// MSXML tells of a failure in one of two places.
    [[nodiscard]] bool IsParsed(VARIANT_BOOL loaded) const {
        ComPtr<IXMLDOMParseError> error;
        LONG code = 0;
        if (loaded == VARIANT_FALSE || !Done(document_->get_parseError(error.GetAddressOf())) || !error) return false;
        return Done(error->get_errorCode(&code)) && code == 0 && !DeclaresEntity();
    }

    /// For an MSXML that passes ProhibitDTD over: titles have no entities of their own, and it would expand nested ones
    /// when an attribute is read.
    [[nodiscard]] bool DeclaresEntity() const {
        ComPtr<IXMLDOMDocumentType> type;
        if (!Done(document_->get_doctype(type.GetAddressOf())) || !type) return false;
        ComValue text;
        text.Out()->vt = VT_BSTR;
        // The type alone does not tell its text everywhere.
        return !Done(document_->get_xml(&text.Out()->bstrVal)) ||
               text.Text().find(L"<!ENTITY") != std::wstring_view::npos;
    }

    ComPtr<IXMLDOMDocument> document_;
};

}  // namespace

std::unique_ptr<XmlDocument> CreateMsxmlDocument() {
    auto document = CreateComObject<IXMLDOMDocument>(kDomDocument);
    return document ? std::make_unique<MsxmlDocument>(std::move(document)) : nullptr;
}

}  // namespace captionfx
