#include "platform/linux/module_loader.h"

#include <dlfcn.h>
#include <filesystem>
#include <string>

namespace captionfx {
namespace {

class SharedObject final : public Module {
public:
    explicit SharedObject(void* handle) : handle_(handle) {}
    SharedObject(const SharedObject&) = delete;
    SharedObject& operator=(const SharedObject&) = delete;
    ~SharedObject() override { dlclose(handle_); }

    void* Find(const char* name) const override { return dlsym(handle_, name); }

private:
    void* handle_;
};

/// The folder of the file that holds this very code; empty when the system does not tell.
std::filesystem::path LibraryFolder() {
    static const char anchor = 0;
    Dl_info info{};
    if (dladdr(&anchor, &info) == 0 || info.dli_fname == nullptr) return {};
    std::error_code error;
    return std::filesystem::absolute(info.dli_fname, error).parent_path();
}

}  // namespace

std::unique_ptr<Module> LibraryFolderLoader::LoadBesideLibrary(std::string_view stem) {
    const std::filesystem::path folder = LibraryFolder();
    if (folder.empty()) return nullptr;
    const std::filesystem::path file = folder / ("lib" + std::string(stem) + ".so");
    void* const handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);  // a path with a slash is never searched for
    return handle == nullptr ? nullptr : std::make_unique<SharedObject>(handle);
}

}  // namespace captionfx
