#include "support/plain_platform.h"

#include "render/image_utility.h"

namespace captionfx::test {
namespace {

ImageUtilityOps* GetPlain() {
    return &PlainImageUtility();
}

struct PlainModule final : Module {
    [[nodiscard]] void* Find(const char* name) const override {
        return std::string_view(name) == "GetImageUtility" ? reinterpret_cast<void*>(&GetPlain) : nullptr;
    }
};

}  // namespace

std::unique_ptr<Module> RoadPlatform::LoadBesideLibrary(std::string_view /*stem*/) {
    return isPlain_ ? std::make_unique<PlainModule>() : nullptr;
}

}  // namespace captionfx::test
