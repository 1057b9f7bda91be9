// The two functions that the library exports.
#include <memory>

#include "host/title_object.h"

IKVT_CaptionFx* GetTitleHost() noexcept {
    using captionfx::CCaptionFx;
    std::allocator<CCaptionFx> allocator;
    CCaptionFx* storage = nullptr;
    try {
        storage = allocator.allocate(1);
        return std::construct_at(storage, captionfx::SystemServices());
    } catch (...) {
        if (storage != nullptr) allocator.deallocate(storage, 1);
        return nullptr;
    }
}

int32_t ReleaseTitleHost(IKVT_CaptionFx* host) noexcept {
    if (host != nullptr) host->Destroy(1);
    return kTitleOk;
}
