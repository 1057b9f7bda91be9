// Title files by MSXML. Whether the values of a title make sense is for the library to find; it does not tell where one
// does not.
#include "tools/title_file.h"

#include <windows.h>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <msxml2.h>
#include <new>
#include <oleauto.h>
#include <optional>
#include <stdexcept>
#include <string_view>

#include <wrl/client.h>

#include "tools/file_stream.h"
#include "tools/text_encoding.h"

namespace captionfx {
namespace {

using Microsoft::WRL::ComPtr;
using Node = ComPtr<IXMLDOMNode>;

constexpr GUID MsxmlId(unsigned long first) {
    return {first, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
}

struct FreeText {
    void operator()(OLECHAR* text) const noexcept { SysFreeString(text); }
};
using OwnedText = std::unique_ptr<OLECHAR, FreeText>;

OwnedText ComText(std::string_view text) {
    const std::u16string wide = Utf16FromUtf8(text).value_or(u"?");
    OwnedText owned(SysAllocStringLen(reinterpret_cast<const OLECHAR*>(wide.data()), static_cast<UINT>(wide.size())));
    if (!owned) throw std::bad_alloc();
    return owned;
}

std::string Utf8Of(const OwnedText& text) {
    if (!text) return "";
    return Utf8FromUtf16({reinterpret_cast<const char16_t*>(text.get()), SysStringLen(text.get())});
}

[[noreturn]] void Fail(const std::filesystem::path& path, const std::string& place, const std::string& reason) {
    throw std::runtime_error(path.string() + (place.empty() ? "" : ":" + place) + ": " + reason);
}

void Check(HRESULT result) {
    if (FAILED(result)) throw std::bad_alloc();
}

ComPtr<IXMLDOMDocument> NewDocument() {
    ComPtr<IXMLDOMDocument> document;
    void* created = nullptr;
    if (FAILED(CoCreateInstance(MsxmlId(0x2933bf90), nullptr, CLSCTX_INPROC_SERVER, MsxmlId(0x2933bf81), &created)))
        throw std::runtime_error("MSXML, which reads titles, cannot be had");
    document.Attach(static_cast<IXMLDOMDocument*>(created));
    document->put_async(VARIANT_FALSE);
    document->put_validateOnParse(VARIANT_FALSE);
    document->put_resolveExternals(VARIANT_FALSE);
    return document;
}

/// The first node under `parent` that a path such as "StringList/MetaString" leads to; empty if there is none.
Node NodeAt(IXMLDOMNode& parent, std::string_view path) {
    Node node;
    parent.selectSingleNode(ComText(path).get(), node.GetAddressOf());
    return node;
}

std::vector<Node> NodesAt(IXMLDOMNode& parent, std::string_view path) {
    ComPtr<IXMLDOMNodeList> list;
    std::vector<Node> nodes;
    if (FAILED(parent.selectNodes(ComText(path).get(), list.GetAddressOf()))) return nodes;
    for (Node node; list->nextNode(node.GetAddressOf()) == S_OK; node.Reset()) nodes.push_back(node);
    return nodes;
}

std::string AttributeOf(IXMLDOMNode& node, std::string_view name) {
    const Node attribute = NodeAt(node, "@" + std::string(name));
    BSTR text = nullptr;
    if (attribute) attribute->get_text(&text);
    return Utf8Of(OwnedText(text));
}

void AddElement(IXMLDOMDocument& document, IXMLDOMNode& parent, std::string_view name,
                const std::vector<std::pair<const char*, std::string>>& attributes) {
    ComPtr<IXMLDOMElement> element;
    Check(document.createElement(ComText(name).get(), element.GetAddressOf()));
    for (const auto& [key, value] : attributes) {
        const OwnedText text = ComText(value);
        VARIANT variant{};
        variant.vt = VT_BSTR;
        variant.bstrVal = text.get();
        Check(element->setAttribute(ComText(key).get(), variant));
    }
    Check(parent.appendChild(element.Get(), nullptr));
}

ComPtr<IXMLDOMElement> RootOf(IXMLDOMDocument& document) {
    ComPtr<IXMLDOMElement> root;
    document.get_documentElement(root.GetAddressOf());
    return root;
}

float NumberOf(const std::string& text) {
    float value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return std::isfinite(value) ? value : 0;
}

/// The face name inside a font record: 32 UTF-16 units from byte 28 on, as hexadecimal digits, lower byte first.
std::string FaceNameOf(std::string_view logFont) {
    constexpr size_t kNameAt = 2UL * 28, kDigits = 4, kEnd = kNameAt + kDigits * 32;
    constexpr int kHexadecimal = 16;
    std::u16string name;
    for (size_t at = kNameAt; at + kDigits <= std::min(logFont.size(), kEnd); at += kDigits) {
        const std::string unit{logFont[at + 2], logFont[at + 3], logFont[at], logFont[at + 1]};
        const auto value = static_cast<char16_t>(std::strtoul(unit.c_str(), nullptr, kHexadecimal));
        if (value == u'\0') break;
        name += value;
    }
    return Utf8FromUtf16(name);
}

FileString FileStringOf(IXMLDOMNode& node) {
    FileString string;
    for (const Node& key : NodesAt(node, "PathList/MetaPath")) {
        string.keys.push_back({.time = NumberOf(AttributeOf(*key.Get(), "KeyFrame")),
                               .effect = AttributeOf(*key.Get(), "PathID"),
                               .progress = NumberOf(AttributeOf(*key.Get(), "PathProgress"))});
    }
    std::ranges::stable_sort(string.keys, {}, &Keyframe::time);
    std::vector<std::string> names;
    for (const Node& font : NodesAt(node, "FontList/MetaFont"))
        names.push_back(FaceNameOf(AttributeOf(*font.Get(), "LogFont")));
    for (const Node& character : NodesAt(node, "CharList/MetaCharacter")) {
        const auto index = static_cast<size_t>(std::atoi(AttributeOf(*character.Get(), "FontIndex").c_str()));
        string.faceNames.push_back(index < names.size() ? names[index] : "");
    }
    return string;
}

std::string Decimal(float value) {
    std::array<char, 64> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end};
}

/// The bytes of a file in a COM array, which MSXML reads in the encoding that they declare.
VARIANT BytesOf(const std::filesystem::path& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) Fail(path, "", "is a folder, not a title");
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(OpenForReading(path), &std::fclose);
    if (!file) Fail(path, "", "cannot be opened: " + std::generic_category().message(errno));
    const auto size = std::filesystem::file_size(path);
    if (size == 0) Fail(path, "", "is empty");
    VARIANT bytes{};
    bytes.parray = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(size));
    if (bytes.parray == nullptr) throw std::bad_alloc();
    bytes.vt = VT_ARRAY | VT_UI1;
    if (std::fread(bytes.parray->pvData, 1, size, file.get()) != size) {
        VariantClear(&bytes);
        Fail(path, "", "cannot be read");
    }
    return bytes;
}

[[noreturn]] void FailToParse(const std::filesystem::path& path, IXMLDOMDocument& document) {
    ComPtr<IXMLDOMParseError> error;
    Check(document.get_parseError(error.GetAddressOf()));
    LONG line = 0, column = 0;
    BSTR reason = nullptr;
    error->get_line(&line);
    error->get_linepos(&column);
    error->get_reason(&reason);
    std::string text = Utf8Of(OwnedText(reason));
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    Fail(path, std::to_string(line) + ":" + std::to_string(column), text.empty() ? "is no XML" : text);
}

IXMLDOMDocument& Raw(const std::shared_ptr<void>& document) {
    return *static_cast<IXMLDOMDocument*>(document.get());
}

}  // namespace

TitleFile::TitleFile(const std::filesystem::path& path) : path_(path) {
    const ComPtr<IXMLDOMDocument> document = NewDocument();
    VARIANT bytes = BytesOf(path);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    document->load(bytes, &loaded);
    VariantClear(&bytes);
    if (loaded == VARIANT_FALSE) FailToParse(path, *document.Get());
    if (!NodeAt(*document.Get(), "CCaptionFx")) Fail(path, "1", "is no title: its root is not CCaptionFx");
    document_ = {document.Get(), [document](void* /*same*/) {}};
}

void TitleFile::LoadInto(IKVT_CaptionFx& title) const {
    const int32_t status = title.LoadFromNode(static_cast<IXMLDOMNode*>(RootOf(Raw(document_)).Get()));
    const auto count = static_cast<int32_t>(NodesAt(Raw(document_), "CCaptionFx/StringList/MetaString").size());
    if (status != kTitleOk || title.GetStringCount() != count) Fail(path_, "", "the library refuses this title");
}

std::vector<FileString> TitleFile::Strings() const {
    std::vector<FileString> strings;
    for (const Node& node : NodesAt(Raw(document_), "CCaptionFx/StringList/MetaString"))
        strings.push_back(FileStringOf(*node.Get()));
    return strings;
}

void SetKeyframes(IKVT_CaptionFx& title, const std::vector<Keyframe>& keys) {
    const ComPtr<IXMLDOMDocument> document = NewDocument();
    AddElement(*document.Get(), *document.Get(), "CCaptionFx", {});
    const ComPtr<IXMLDOMElement> root = RootOf(*document.Get());
    if (title.SaveToNode(static_cast<IXMLDOMNode*>(root.Get())) != kTitleOk) throw std::bad_alloc();
    const Node list = NodeAt(*root.Get(), "StringList/MetaString/PathList");
    if (!list) throw std::bad_alloc();
    for (const Keyframe& key : keys) {
        AddElement(*document.Get(), *list.Get(), "MetaPath",
                   {{"KeyFrame", Decimal(key.time)}, {"PathID", key.effect}, {"PathProgress", Decimal(key.progress)}});
    }
    if (title.LoadFromNode(static_cast<IXMLDOMNode*>(root.Get())) != kTitleOk || title.GetStringCount() == 0)
        throw std::bad_alloc();
}

}  // namespace captionfx
