#include "platform/windows/windows_services.h"

#include "platform/windows/clock.h"
#include "platform/windows/debug_output.h"
#include "platform/windows/font_link.h"
#include "platform/windows/font_system.h"
#include "platform/windows/module_loader.h"
#include "platform/windows/page_memory.h"
#include "platform/windows/xml_document.h"

namespace captionfx {
namespace {

class Services final : public PlatformServices {
public:
    FontSystem& Fonts() override { return fonts_; }
    DebugOutput& Debug() override { return debug_; }
    Clock& Time() override { return clock_; }
    PageMemory& Pages() override { return pages_; }
    ModuleLoader& Modules() override { return modules_; }
    std::unique_ptr<FontLink> CreateFontLink() override { return CreateMLangFontLink(); }
    std::unique_ptr<XmlDocument> CreateXmlDocument() override { return CreateMsxmlDocument(); }

private:
    GdiFontSystem fonts_;
    DebuggerOutput debug_;
    MultimediaClock clock_;
    VirtualMemory pages_;
    DllFolderLoader modules_;
};

}  // namespace

PlatformServices& WindowsServices() {
    static Services& services = *std::make_unique<Services>().release();
    return services;
}

}  // namespace captionfx
