#include "platform/linux/parsed_xml.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <vector>

#include <libxml/parser.h>

namespace captionfx {
namespace {

// A title is one file: nothing is fetched, and the parser's limits on depth and on the length of a name or value stay
// in force. Values arrive with the five references that every document may use resolved, and no others are let in.
constexpr int kParseOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NOENT;

/// How libxml2 hands over an attribute.
enum AttributePart { kLocalName, kPrefix, kNamespace, kValue, kValueEnd, kAttributeParts };

const char* Characters(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}

/// Of a local name: the parser's dictionary holds it, with a zero at its end.
std::string_view NameOf(const xmlChar* name) {
    return Characters(name);
}

/// Titles have no entities of their own, and a few nested ones can keep a parser busy for hours.
void RefuseEntity(void* parser, const xmlChar* /*name*/, int /*type*/, const xmlChar* /*publicId*/,
                  const xmlChar* /*systemId*/, xmlChar* /*content*/) {
    xmlStopParser(static_cast<xmlParserCtxt*>(parser));
}

}  // namespace

std::optional<std::string_view> ParsedXml::Element::Find(std::string_view name) const {
    const auto found = std::ranges::find(Attributes, name, &Attribute::Name);
    return found == Attributes.end() ? std::nullopt : std::optional(found->Value);
}

/// Takes the elements from the parser as it meets them.
class ParsedXml::Builder {
public:
    Builder(ParsedXml& document, xmlParserCtxt& parser) : arena_(document.arena_) {
        open_.push_back({.Parent = &document.document_});
        parser._private = this;
        xmlSAXHandler& events = *parser.sax;
        events.entityDecl = &RefuseEntity;
        events.startElementNs = &Start;
        events.endElementNs = &End;
        events.characters = events.ignorableWhitespace = events.cdataBlock = nullptr;
        events.comment = nullptr;
        events.processingInstruction = nullptr;
        events.reference = nullptr;
    }

    [[nodiscard]] bool IsOutOfMemory() const { return isOutOfMemory_; }

private:
    /// An element whose end has not come.
    struct Open {
        Element* Parent = nullptr;
        Element* LastChild = nullptr;
    };

    static Builder& Of(xmlParserCtxt* parser) { return *static_cast<Builder*>(parser->_private); }

    // An exception must not pass through libxml2.
    static void Start(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* /*uri*/,
                      int /*namespaceCount*/, const xmlChar** /*namespaces*/, int attributeCount,
                      int /*defaultedCount*/, const xmlChar** attributes) {
        auto* const parser = static_cast<xmlParserCtxt*>(context);
        Builder& builder = Of(parser);
        try {
            const size_t parts = static_cast<size_t>(attributeCount) * kAttributeParts;
            builder.Add(prefix == nullptr ? NameOf(name) : std::string_view(), {attributes, parts});
        } catch (const std::bad_alloc&) {
            builder.isOutOfMemory_ = true;
            xmlStopParser(parser);
        }
    }

    static void End(void* context, const xmlChar* /*name*/, const xmlChar* /*prefix*/, const xmlChar* /*uri*/) {
        Of(static_cast<xmlParserCtxt*>(context)).open_.pop_back();
    }

    void Add(std::string_view name, std::span<const xmlChar*> parts) {
        auto* const element = New<Element>(1);
        element->Name = name;
        element->Attributes = Copy(parts);
        Open& parent = open_.back();
        (parent.LastChild == nullptr ? parent.Parent->FirstChild : parent.LastChild->Next) = element;
        parent.LastChild = element;
        open_.push_back({.Parent = element});
    }

    std::span<const Attribute> Copy(std::span<const xmlChar*> parts) {
        auto* const copies = New<Attribute>(parts.size() / kAttributeParts);
        size_t count = 0;
        for (; !parts.empty(); parts = parts.subspan(kAttributeParts)) {
            if (parts[kPrefix] != nullptr) continue;
            // The value may stand in the text itself, where no zero ends it.
            copies[count++] = {.Name = NameOf(parts[kLocalName]),
                               .Value = Copy({Characters(parts[kValue]), Characters(parts[kValueEnd])})};
        }
        return {copies, count};
    }

    std::string_view Copy(std::string_view text) {
        char* const copy = New<char>(text.size());
        text.copy(copy, text.size());
        return {copy, text.size()};
    }

    template <class Type>
    Type* New(size_t count) {
        auto* const first = static_cast<Type*>(arena_.allocate(count * sizeof(Type), alignof(Type)));
        std::uninitialized_value_construct_n(first, count);
        return first;
    }

    std::pmr::monotonic_buffer_resource& arena_;
    std::vector<Open> open_;
    bool isOutOfMemory_ = false;
};

bool ParsedXml::Parse(std::span<const std::byte> text, const char* encoding) {
    if (text.empty() || text.size() > std::numeric_limits<int>::max()) return false;
    const LibxmlSilence silence;
    const LibxmlOwned<xmlParserCtxt> parser = LibxmlChecked(xmlNewParserCtxt());
    xmlDictReference(parser->dict);
    names_.reset(parser->dict);
    const Builder builder(*this, *parser);
    const int options = kParseOptions | (encoding == nullptr ? 0 : XML_PARSE_IGNORE_ENC);
    const LibxmlOwned<xmlDoc> parsed(xmlCtxtReadMemory(parser.get(), reinterpret_cast<const char*>(text.data()),
                                                       static_cast<int>(text.size()), nullptr, encoding, options));
    if (parser->errNo == XML_ERR_NO_MEMORY || builder.IsOutOfMemory()) throw std::bad_alloc();
    return parsed && parser->errNo != XML_ERR_USER_STOP;
}

}  // namespace captionfx
