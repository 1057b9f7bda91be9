// XML documents by MSXML. Nodes of hosts are IXMLDOMNode*.
#pragma once

#include <memory>

#include "platform/xml_document.h"

namespace captionfx {

/// An empty document; null where MSXML cannot be had, as on a thread without COM. Throws std::bad_alloc.
[[nodiscard]] std::unique_ptr<XmlDocument> CreateMsxmlDocument();

}  // namespace captionfx
