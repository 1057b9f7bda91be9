// XML documents by libxml2. Nodes of hosts are xmlNodePtr.
#pragma once

#include <memory>

#include "platform/xml_document.h"

namespace captionfx {

/// An empty document. Throws std::bad_alloc.
[[nodiscard]] std::unique_ptr<XmlDocument> CreateLibxmlDocument();

}  // namespace captionfx
