#include "platform/windows/module_loader.h"

#include <windows.h>
#include <filesystem>
#include <string>

#include "platform/windows/wide_text.h"

namespace captionfx {
namespace {

class LoadedDll final : public Module {
public:
    explicit LoadedDll(HMODULE handle) : handle_(handle) {}
    LoadedDll(const LoadedDll&) = delete;
    LoadedDll& operator=(const LoadedDll&) = delete;
    ~LoadedDll() override { FreeLibrary(handle_); }

    void* Find(const char* name) const override { return reinterpret_cast<void*>(GetProcAddress(handle_, name)); }

private:
    HMODULE handle_;
};

/// The folder of the file that holds this very code; empty when the system does not tell.
std::filesystem::path LibraryFolder() {
    static const wchar_t anchor = 0;
    constexpr DWORD kByAddress = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    HMODULE self = nullptr;
    if (GetModuleHandleExW(kByAddress, &anchor, &self) == 0) return {};
    constexpr size_t kLongestPath = 1U << 15U;
    std::wstring path(kLongestPath, L'\0');
    const DWORD length = GetModuleFileNameW(self, path.data(), kLongestPath);
    if (length == 0 || length == kLongestPath) return {};
    path.resize(length);
    return std::filesystem::path(path).parent_path();
}

}  // namespace

std::unique_ptr<Module> DllFolderLoader::LoadBesideLibrary(std::string_view stem) {
    const std::filesystem::path folder = LibraryFolder();
    if (folder.empty()) return nullptr;
    const std::filesystem::path file = folder / (WideOf(stem) + L".dll");
    // What the module needs itself may lie beside it or in the system's folder, and nowhere else either.
    HMODULE const handle =
        LoadLibraryExW(file.c_str(), nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    return handle == nullptr ? nullptr : std::make_unique<LoadedDll>(handle);
}

}  // namespace captionfx
