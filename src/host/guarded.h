// The wall between the library and its hosts: nothing is thrown through it.
#pragma once

#include <cstdint>
#include <new>

#include "host/caption_fx.h"

namespace captionfx {

/// The result of `operation`, or the status that stands for what it threw.
template <class Operation>
[[nodiscard]] int32_t Guarded(Operation operation) noexcept {
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        return kTitleOutOfMemory;
    } catch (...) {
        return kTitleFailure;
    }
}

}  // namespace captionfx
