// Modules beside the library: a host may put an image utility of its own there.
#pragma once

#include <memory>
#include <string_view>

namespace captionfx {

/// A loaded module; unloaded with this object, after which its functions must not be called.
class Module {
public:
    virtual ~Module() = default;

    /// The address of an exported function, or null.
    [[nodiscard]] virtual void* Find(const char* name) const = 0;
};

class ModuleLoader {
public:
    virtual ~ModuleLoader() = default;

    /// Loads the module `stem` (without the system's prefix and suffix) from the folder that holds this library, and
    /// from nowhere else: a search path would let others put code into the host. Null if it is not there.
    [[nodiscard]] virtual std::unique_ptr<Module> LoadBesideLibrary(std::string_view stem) = 0;
};

}  // namespace captionfx
