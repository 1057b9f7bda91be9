// Blocks that may be missing: what cannot be allocated is null, and whoever needs it draws nothing.
#pragma once

#include <cstddef>
#include <memory>
#include <new>

namespace sgl {

/// `count` zeroed elements, or null.
template <class T>
[[nodiscard]] std::unique_ptr<T[]> TryMakeArray(size_t count) noexcept {
    try {
        return std::make_unique<T[]>(count);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace sgl
