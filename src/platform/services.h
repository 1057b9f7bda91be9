// What a title object is given of its platform. Tests hand in a platform of their own.
#pragma once

#include <memory>

#include "platform/clock.h"
#include "platform/debug_output.h"
#include "platform/font_link.h"
#include "platform/font_system.h"
#include "platform/module_loader.h"
#include "platform/page_memory.h"
#include "platform/xml_document.h"

namespace captionfx {

class PlatformServices {
public:
    virtual ~PlatformServices() = default;

    virtual FontSystem& Fonts() = 0;
    virtual DebugOutput& Debug() = 0;
    virtual Clock& Time() = 0;
    virtual PageMemory& Pages() = 0;
    virtual ModuleLoader& Modules() = 0;

    /// A new session of font linking; null where the service cannot be had.
    [[nodiscard]] virtual std::unique_ptr<FontLink> CreateFontLink() = 0;

    /// An empty XML document; null where the service cannot be had.
    [[nodiscard]] virtual std::unique_ptr<XmlDocument> CreateXmlDocument() = 0;
};

/// The services of the system that this library was built for; one for the process.
PlatformServices& SystemServices();

}  // namespace captionfx
