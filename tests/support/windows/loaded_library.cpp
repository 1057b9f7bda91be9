#include "support/loaded_library.h"

#include <windows.h>

namespace captionfx::test {

LoadedLibrary::LoadedLibrary(const std::string& folder, const std::string& name)
    : handle_(LoadLibraryA((folder + "/" + name + ".dll").c_str())) {}

LoadedLibrary::~LoadedLibrary() {
    if (handle_ != nullptr) FreeLibrary(static_cast<HMODULE>(handle_));
}

void* LoadedLibrary::Address(const char* name) const {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

}  // namespace captionfx::test
