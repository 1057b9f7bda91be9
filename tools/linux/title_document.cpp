#include "tools/title_document.h"

#include <limits>
#include <new>

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

namespace captionfx {
namespace {

const xmlChar* XmlText(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

const char* Text(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}

xmlNode* Raw(const TitleNode& node) {
    return static_cast<xmlNode*>(node.Handle());
}

template <class Type>
Type* Checked(Type* allocated) {
    if (allocated == nullptr) throw std::bad_alloc();
    return allocated;
}

/// A text of libxml2's that is freed; empty for none.
std::string Taken(xmlChar* text) {
    const std::unique_ptr<xmlChar, decltype(xmlFree)> owned(text, xmlFree);
    return text == nullptr ? "" : Text(text);
}

/// Where and why a text is no title. Nothing is printed while it stands. The handler is one of the whole thread, which
/// may be that of a program with XML of its own: it gets its handler back.
struct FirstError {
    std::string place, reason = "is no XML";

    FirstError() { xmlSetStructuredErrorFunc(this, &Keep); }
    FirstError(const FirstError&) = delete;
    FirstError& operator=(const FirstError&) = delete;
    ~FirstError() { xmlSetStructuredErrorFunc(formerContext_, formerHandler_); }

    /// The first of libxml2's errors: the others follow from it.
    static void Keep(void* self, xmlError* error) {
        auto& first = *static_cast<FirstError*>(self);
        if (!first.place.empty() || error->message == nullptr) return;
        first.place = std::to_string(error->line) + ":" + std::to_string(error->int2);
        first.reason = error->message;
        while (first.reason.ends_with('\n')) first.reason.pop_back();
    }

private:
    void* const formerContext_ = xmlStructuredErrorContext;
    const xmlStructuredErrorFunc formerHandler_ = xmlStructuredError;
};

/// The library refuses entities, which can keep a parser busy for hours.
void RefuseEntity(void* context, const xmlChar* /*name*/, int /*type*/, const xmlChar* /*publicId*/,
                  const xmlChar* /*systemId*/, xmlChar* /*content*/) {
    auto* const parser = static_cast<xmlParserCtxt*>(context);
    auto& error = *static_cast<FirstError*>(parser->_private);
    error.place = std::to_string(xmlSAX2GetLineNumber(parser)) + ":" + std::to_string(xmlSAX2GetColumnNumber(parser));
    error.reason = "declares an entity, which no title may";
    xmlStopParser(parser);
}

}  // namespace

std::string TitleNode::Name() const {
    return Text(Raw(*this)->name);
}

long TitleNode::Line() const {
    return xmlGetLineNo(Raw(*this));
}

std::vector<TitleNode> TitleNode::Children() const {
    std::vector<TitleNode> children;
    for (xmlNode* child = handle_ ? Raw(*this)->children : nullptr; child != nullptr; child = child->next) {
        if (child->type == XML_ELEMENT_NODE) children.emplace_back(std::shared_ptr<void>(handle_, child));
    }
    return children;
}

std::vector<TitleAttribute> TitleNode::Attributes() const {
    std::vector<TitleAttribute> attributes;
    for (const xmlAttr* attribute = Raw(*this)->properties; attribute != nullptr; attribute = attribute->next) {
        const char* const name = Text(attribute->name);
        attributes.push_back({name, Attribute(name)});
    }
    return attributes;
}

std::string TitleNode::Attribute(const char* name) const {
    return Taken(xmlGetNoNsProp(Raw(*this), XmlText(name)));
}

TitleNode TitleNode::AddChild(const char* name) const {
    return TitleNode({handle_, Checked(xmlNewChild(Raw(*this), nullptr, XmlText(name), nullptr))});
}

void TitleNode::SetAttribute(const char* name, const std::string& value) const {
    Checked(xmlSetProp(Raw(*this), XmlText(name), XmlText(value.c_str())));
}

void TitleNode::AddCopy(const TitleNode& original) const {
    xmlNode* const copy = Checked(xmlDocCopyNode(Raw(original), Raw(*this)->doc, 1));
    Checked(xmlAddChild(Raw(*this), copy));
}

TitleNode MakeTitleDocument(const char* rootName) {
    const std::shared_ptr<xmlDoc> document(Checked(xmlNewDoc(nullptr)), &xmlFreeDoc);
    xmlNode* const root = Checked(xmlNewDocNode(document.get(), nullptr, XmlText(rootName), nullptr));
    xmlDocSetRootElement(document.get(), root);
    return TitleNode({document, root});
}

TitleNode ReadTitleDocument(std::string_view bytes) {
    if (bytes.size() > std::numeric_limits<int>::max()) throw TitleTextError("", "is too large for a title");
    FirstError error;
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(Checked(xmlNewParserCtxt()),
                                                                              &xmlFreeParserCtxt);
    parser->_private = &error;
    parser->sax->entityDecl = &RefuseEntity;
    xmlDoc* const read = xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                                           XML_PARSE_NONET | XML_PARSE_BIG_LINES);
    if (read == nullptr) throw TitleTextError(error.place, error.reason);
    const std::shared_ptr<xmlDoc> document(read, &xmlFreeDoc);
    return TitleNode({document, xmlDocGetRootElement(document.get())});
}

}  // namespace captionfx
