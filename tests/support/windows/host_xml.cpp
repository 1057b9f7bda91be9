#include "support/host_xml.h"

#include <windows.h>
#include <msxml2.h>
#include <stdexcept>

#include "platform/utf16.h"
#include "platform/windows/com.h"

namespace captionfx {

template <>
inline constexpr GUID kInterfaceId<IXMLDOMDocument>{
    0x2933bf81, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};

namespace test {

struct HostXml::Nodes {
    ComPtr<IXMLDOMDocument> document = CreateComObject<IXMLDOMDocument>(
        {0x2933bf90, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}});
    ComPtr<IXMLDOMElement> element;
    ComPtr<IXMLDOMNode> firstChild;
};

HostXml::HostXml() : nodes_(std::make_shared<Nodes>()) {
    if (!nodes_->document ||
        FAILED(nodes_->document->createElement(ComText("Host").Get(), nodes_->element.GetAddressOf())) ||
        FAILED(nodes_->document->appendChild(nodes_->element.Get(), nullptr)))
        throw std::runtime_error("no MSXML");
}

void* HostXml::Element() const {
    return static_cast<IXMLDOMNode*>(nodes_->element.Get());
}

void* HostXml::Document() const {
    return static_cast<IXMLDOMNode*>(nodes_->document.Get());
}

std::vector<std::string> HostXml::ChildNames() const {
    std::vector<std::string> names;
    ComPtr<IXMLDOMNodeList> children;
    ComPtr<IXMLDOMNode> child;
    nodes_->element->get_childNodes(children.GetAddressOf());
    while (children && children->nextNode(child.GetAddressOf()) == S_OK) {
        ComValue name;
        name.Out()->vt = VT_BSTR;
        child->get_nodeName(&name.Out()->bstrVal);
        names.push_back(Utf8Of(Utf16Of(name.Text())));
        child.Reset();
    }
    return names;
}

void* HostXml::FirstChild() const {
    if (!nodes_->firstChild) nodes_->element->get_firstChild(nodes_->firstChild.GetAddressOf());
    return nodes_->firstChild.Get();
}

}  // namespace test
}  // namespace captionfx
