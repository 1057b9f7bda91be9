// A shared library that a program loads while it runs.
#pragma once

#include <string>

namespace captionfx::test {

class LoadedLibrary {
public:
    /// `name` is without the prefix and the suffix that the system gives to its libraries.
    LoadedLibrary(const std::string& folder, const std::string& name);
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;
    ~LoadedLibrary();

    [[nodiscard]] bool IsLoaded() const { return handle_ != nullptr; }

    template <class Function>
    [[nodiscard]] Function* Find(const char* name) const {
        return reinterpret_cast<Function*>(Address(name));
    }

private:
    [[nodiscard]] void* Address(const char* name) const;

    void* handle_;
};

}  // namespace captionfx::test
