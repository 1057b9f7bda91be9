#include "support/host_xml.h"

#include <libxml/tree.h>

namespace captionfx::test {

struct HostXml::Nodes {
    std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document{xmlNewDoc(nullptr), &xmlFreeDoc};
    xmlNode* element = xmlNewDocNode(document.get(), nullptr, reinterpret_cast<const xmlChar*>("Host"), nullptr);
};

HostXml::HostXml() : nodes_(std::make_shared<Nodes>()) {
    xmlDocSetRootElement(nodes_->document.get(), nodes_->element);
}

void* HostXml::Element() const {
    return nodes_->element;
}

void* HostXml::Document() const {
    return nodes_->document.get();
}

std::vector<std::string> HostXml::ChildNames() const {
    std::vector<std::string> names;
    for (const xmlNode* child = nodes_->element->children; child != nullptr; child = child->next)
        names.emplace_back(reinterpret_cast<const char*>(child->name));
    return names;
}

void* HostXml::FirstChild() const {
    return nodes_->element->children;
}

}  // namespace captionfx::test
