// What libxml2 allocates, and its errors.
#pragma once

#include <memory>
#include <new>

#include <libxml/parser.h>
#include <libxml/tree.h>

namespace captionfx {

struct LibxmlFree {
    void operator()(xmlDict* names) const noexcept { xmlDictFree(names); }
    void operator()(xmlDoc* document) const noexcept { xmlFreeDoc(document); }
    void operator()(xmlParserCtxt* parser) const noexcept { xmlFreeParserCtxt(parser); }
    void operator()(xmlChar* text) const noexcept { xmlFree(text); }
};
template <class Type>
using LibxmlOwned = std::unique_ptr<Type, LibxmlFree>;

/// What libxml2 allocated; null means that memory ran out.
template <class Type>
LibxmlOwned<Type> LibxmlChecked(Type* allocated) {
    if (allocated == nullptr) throw std::bad_alloc();
    return LibxmlOwned<Type>(allocated);
}

/// Keeps libxml2 from printing while it stands: some errors pass by the parser's options. The handler belongs to the
/// thread, and may be the host's.
class LibxmlSilence {
public:
    LibxmlSilence() {
        xmlSetStructuredErrorFunc(nullptr, [](void* /*context*/, xmlError* /*error*/) {});
    }
    LibxmlSilence(const LibxmlSilence&) = delete;
    LibxmlSilence& operator=(const LibxmlSilence&) = delete;
    ~LibxmlSilence() { xmlSetStructuredErrorFunc(context_, handler_); }

private:
    void* const context_ = xmlStructuredErrorContext;
    const xmlStructuredErrorFunc handler_ = xmlStructuredError;
};

}  // namespace captionfx
