// DLLs in the folder of this library.
#pragma once

#include "platform/module_loader.h"

namespace captionfx {

class DllFolderLoader final : public ModuleLoader {
public:
    std::unique_ptr<Module> LoadBesideLibrary(std::string_view stem) override;
};

}  // namespace captionfx
