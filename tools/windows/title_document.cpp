#include "tools/title_document.h"

#include <windows.h>
#include <limits>
#include <msxml2.h>
#include <new>
#include <objbase.h>
#include <oleauto.h>

#include <wrl/client.h>

#include "tools/windows/wide_text.h"

namespace captionfx {
namespace {

using Microsoft::WRL::ComPtr;

// Two identifiers that MinGW's library lacks, or has of another version under that name.
constexpr GUID MsxmlId(unsigned long first) {
    return {first, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
}
constexpr GUID kDomDocument = MsxmlId(0x2933bf90), kDomDocument2 = MsxmlId(0x2933bf95);

/// For calls that fail only where memory runs out.
void Check(HRESULT result) {
    if (FAILED(result)) throw std::bad_alloc();
}

struct FreeText {
    void operator()(OLECHAR* text) const noexcept { SysFreeString(text); }
};
using ComText = std::unique_ptr<OLECHAR, FreeText>;

ComText MakeText(std::string_view text) {
    const std::wstring wide = WideFromUtf8(text);
    ComText made(SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size())));
    if (!made) throw std::bad_alloc();
    return made;
}

std::string Utf8FromCom(const ComText& text) {
    return Utf8FromWide({text.get(), SysStringLen(text.get())});
}

/// The text that a property of a COM object holds.
template <class Object>
std::string TextOf(Object& object, HRESULT (__stdcall Object::*get)(BSTR*)) {
    BSTR text = nullptr;
    Check((object.*get)(&text));
    return Utf8FromCom(ComText(text));
}

struct Value : VARIANT {
    Value() { VariantInit(this); }
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;
    ~Value() { VariantClear(this); }
};

TitleNode Owned(ComPtr<IXMLDOMNode> node) {
    return TitleNode(std::shared_ptr<IXMLDOMNode>(node.Detach(), [](IXMLDOMNode* owned) { owned->Release(); }));
}

IXMLDOMNode* Raw(const TitleNode& node) {
    return static_cast<IXMLDOMNode*>(node.Handle());
}

template <class Interface>
ComPtr<Interface> Query(IUnknown* object, const IID& id) {
    ComPtr<Interface> other;
    Check(object->QueryInterface(id, reinterpret_cast<void**>(other.GetAddressOf())));
    return other;
}

ComPtr<IXMLDOMElement> ElementOf(const TitleNode& node) {
    return Query<IXMLDOMElement>(Raw(node), IID_IXMLDOMElement);
}

/// Parses on this thread, checks against nothing and fetches nothing.
ComPtr<IXMLDOMDocument> MakeDocument() {
    ComPtr<IXMLDOMDocument> document;
    Check(CoCreateInstance(kDomDocument, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument,
                           reinterpret_cast<void**>(document.GetAddressOf())));
    Check(document->put_async(VARIANT_FALSE));
    Check(document->put_validateOnParse(VARIANT_FALSE));
    Check(document->put_resolveExternals(VARIANT_FALSE));
    ComPtr<IXMLDOMDocument2> newer;
    if (SUCCEEDED(document->QueryInterface(kDomDocument2, reinterpret_cast<void**>(newer.GetAddressOf())))) {
        Value yes;
        yes.vt = VT_BOOL;
        yes.boolVal = VARIANT_TRUE;
        newer->setProperty(MakeText("ProhibitDTD").get(), yes);
    }
    return document;
}

ComPtr<IStream> StreamOf(std::string_view bytes) {
    ComPtr<IStream> stream;
    constexpr BOOL kFreedWithTheStream = TRUE;
    Check(CreateStreamOnHGlobal(nullptr, kFreedWithTheStream, stream.GetAddressOf()));
    Check(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr));
    Check(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
    return stream;
}

[[noreturn]] void FailForParseError(IXMLDOMDocument& document) {
    ComPtr<IXMLDOMParseError> error;
    Check(document.get_parseError(error.GetAddressOf()));
    LONG line = 0, column = 0;
    error->get_line(&line);
    error->get_linepos(&column);
    BSTR text = nullptr;
    error->get_reason(&text);
    std::string reason = Utf8FromCom(ComText(text));
    while (!reason.empty() && (reason.back() == '\n' || reason.back() == '\r')) reason.pop_back();
    throw TitleTextError(line > 0 ? std::to_string(line) + ":" + std::to_string(column) : "",
                         reason.empty() ? "is no XML" : reason);
}

}  // namespace

std::string TitleNode::Name() const {
    return TextOf(*Raw(*this), &IXMLDOMNode::get_nodeName);
}

long TitleNode::Line() const {
    return 0;
}

std::vector<TitleNode> TitleNode::Children() const {
    std::vector<TitleNode> children;
    if (!handle_) return children;
    ComPtr<IXMLDOMNode> child;
    Check(Raw(*this)->get_firstChild(child.GetAddressOf()));
    while (child) {
        DOMNodeType type = NODE_INVALID;
        Check(child->get_nodeType(&type));
        if (type == NODE_ELEMENT) children.push_back(Owned(child));
        ComPtr<IXMLDOMNode> next;
        Check(child->get_nextSibling(next.GetAddressOf()));
        child = next;
    }
    return children;
}

std::vector<TitleAttribute> TitleNode::Attributes() const {
    ComPtr<IXMLDOMNamedNodeMap> map;
    Check(Raw(*this)->get_attributes(map.GetAddressOf()));
    std::vector<TitleAttribute> attributes;
    LONG count = 0;
    Check(map->get_length(&count));
    for (LONG i = 0; i < count; ++i) {
        ComPtr<IXMLDOMNode> attribute;
        Check(map->get_item(i, attribute.GetAddressOf()));
        attributes.push_back(
            {TextOf(*attribute.Get(), &IXMLDOMNode::get_nodeName), TextOf(*attribute.Get(), &IXMLDOMNode::get_text)});
    }
    return attributes;
}

std::string TitleNode::Attribute(const char* name) const {
    Value value;
    Check(ElementOf(*this)->getAttribute(MakeText(name).get(), &value));
    return value.vt == VT_BSTR ? Utf8FromWide({value.bstrVal, SysStringLen(value.bstrVal)}) : "";
}

TitleNode TitleNode::AddChild(const char* name) const {
    ComPtr<IXMLDOMDocument> document;
    Check(Raw(*this)->get_ownerDocument(document.GetAddressOf()));
    ComPtr<IXMLDOMElement> element;
    Check(document->createElement(MakeText(name).get(), element.GetAddressOf()));
    ComPtr<IXMLDOMNode> child;
    Check(Raw(*this)->appendChild(element.Get(), child.GetAddressOf()));
    return Owned(child);
}

void TitleNode::SetAttribute(const char* name, const std::string& value) const {
    Value text;
    text.vt = VT_BSTR;
    text.bstrVal = MakeText(value).release();
    Check(ElementOf(*this)->setAttribute(MakeText(name).get(), text));
}

void TitleNode::AddCopy(const TitleNode& original) const {
    constexpr VARIANT_BOOL kWithAllInIt = VARIANT_TRUE;
    ComPtr<IXMLDOMNode> copy;
    Check(Raw(original)->cloneNode(kWithAllInIt, copy.GetAddressOf()));
    Check(Raw(*this)->appendChild(copy.Get(), nullptr));
}

TitleNode MakeTitleDocument(const char* rootName) {
    const ComPtr<IXMLDOMDocument> document = MakeDocument();
    ComPtr<IXMLDOMElement> element;
    Check(document->createElement(MakeText(rootName).get(), element.GetAddressOf()));
    ComPtr<IXMLDOMNode> root;
    Check(document->appendChild(element.Get(), root.GetAddressOf()));
    return Owned(root);
}

TitleNode ReadTitleDocument(std::string_view bytes) {
    if (bytes.size() > std::numeric_limits<ULONG>::max()) throw TitleTextError("", "is too large for a title");
    const ComPtr<IXMLDOMDocument> document = MakeDocument();
    const ComPtr<IStream> stream = StreamOf(bytes);
    Value source;
    source.vt = VT_UNKNOWN;
    source.punkVal = ComPtr<IUnknown>(stream).Detach();
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    const HRESULT result = document->load(source, &isLoaded);
    if (result == E_OUTOFMEMORY) throw std::bad_alloc();
    ComPtr<IXMLDOMElement> root;
    if (FAILED(result) || isLoaded == VARIANT_FALSE || document->get_documentElement(root.GetAddressOf()) != S_OK)
        FailForParseError(*document.Get());
    ComPtr<IXMLDOMDocumentType> type;
    if (document->get_doctype(type.GetAddressOf()) == S_OK)
        throw TitleTextError("", "declares a document type, which no title may");
    return Owned(Query<IXMLDOMNode>(root.Get(), IID_IXMLDOMNode));
}

}  // namespace captionfx
