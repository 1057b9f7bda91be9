// The system's platform with a choice of how frames are drawn.
#pragma once

#include <memory>
#include <string_view>

#include "platform/services.h"

namespace captionfx::test {

/// With `isPlain` a title finds a module of image operations, the plain ones of the library, so that its frames take
/// the plain road: layers of pixels, whole planes, loops over single pixels.
class RoadPlatform final : public PlatformServices, public ModuleLoader {
public:
    explicit RoadPlatform(bool isPlain) : isPlain_(isPlain) {}

    FontSystem& Fonts() override { return SystemServices().Fonts(); }
    DebugOutput& Debug() override { return SystemServices().Debug(); }
    Clock& Time() override { return SystemServices().Time(); }
    PageMemory& Pages() override { return SystemServices().Pages(); }
    ModuleLoader& Modules() override { return *this; }
    std::unique_ptr<FontLink> CreateFontLink() override { return SystemServices().CreateFontLink(); }
    std::unique_ptr<XmlDocument> CreateXmlDocument() override { return SystemServices().CreateXmlDocument(); }

    std::unique_ptr<Module> LoadBesideLibrary(std::string_view stem) override;

private:
    bool isPlain_;
};

}  // namespace captionfx::test
