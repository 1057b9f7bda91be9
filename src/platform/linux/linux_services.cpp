#include "platform/linux/linux_services.h"

#include "platform/linux/clock.h"
#include "platform/linux/debug_output.h"
#include "platform/linux/font_link.h"
#include "platform/linux/font_registry.h"
#include "platform/linux/module_loader.h"
#include "platform/linux/page_memory.h"
#include "platform/linux/xml_document.h"

namespace captionfx {
namespace {

class Services final : public PlatformServices {
public:
    FontSystem& Fonts() override { return FontRegistry::Instance(); }
    DebugOutput& Debug() override { return debug_; }
    Clock& Time() override { return clock_; }
    PageMemory& Pages() override { return pages_; }
    ModuleLoader& Modules() override { return modules_; }
    std::unique_ptr<FontLink> CreateFontLink() override { return CreateFontconfigLink(); }
    std::unique_ptr<XmlDocument> CreateXmlDocument() override { return CreateLibxmlDocument(); }

private:
    StandardErrorOutput debug_;
    SteadyClock clock_;
    MappedMemory pages_;
    LibraryFolderLoader modules_;
};

}  // namespace

PlatformServices& LinuxServices() {
    static Services& services = *std::make_unique<Services>().release();
    return services;
}

}  // namespace captionfx
