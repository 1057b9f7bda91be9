// The image operations that a title works with: those of a host's module where there is one, else the built-in ones.
#pragma once

#include <memory>

#include "platform/module_loader.h"
#include "render/image_utility_ops.h"

namespace captionfx {

/// The built-in operations; without state, shared by all titles and threads.
[[nodiscard]] ImageUtilityOps& BuiltInImageUtility();

/// The same bytes from the plain row loops.
[[nodiscard]] ImageUtilityOps& PlainImageUtility();

/// Holds the operations of one title.
class ImageUtility {
public:
    /// Looks for a host's module beside the library, and serves without one.
    explicit ImageUtility(ModuleLoader& modules);
    ImageUtility(const ImageUtility&) = delete;
    ImageUtility& operator=(const ImageUtility&) = delete;
    ~ImageUtility();

    [[nodiscard]] ImageUtilityOps& Ops() const { return *ops_; }

private:
    std::unique_ptr<Module> module_;
    ImageUtilityOps* ops_;
};

}  // namespace captionfx
