#include "support/loaded_library.h"

#include <dlfcn.h>

namespace captionfx::test {

// It stays loaded: what Fontconfig keeps for the process would be a leak without Fontconfig.
LoadedLibrary::LoadedLibrary(const std::string& folder, const std::string& name)
    : handle_(dlopen((folder + "/lib" + name + ".so").c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE)) {}

LoadedLibrary::~LoadedLibrary() {
    if (handle_ != nullptr) dlclose(handle_);
}

void* LoadedLibrary::Address(const char* name) const {
    return dlsym(handle_, name);
}

}  // namespace captionfx::test
