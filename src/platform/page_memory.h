// Page-granular memory, for blocks as large as several frames: zeroed when new, and given back to the system at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace captionfx {

class PageMemory {
public:
    virtual ~PageMemory() = default;

    /// A zeroed block of at least `bytes`, page-aligned; null when it cannot be had.
    [[nodiscard]] virtual void* Reserve(size_t bytes) noexcept = 0;

    /// Gives a block of Reserve back; `bytes` as it was asked for.
    virtual void Release(void* block, size_t bytes) noexcept = 0;
};

/// Owns one block of a PageMemory, which must outlive it.
class PageBlock {
public:
    PageBlock() = default;
    PageBlock(PageMemory& memory, size_t bytes) : memory_(&memory), block_(memory.Reserve(bytes)), bytes_(bytes) {}
    PageBlock(PageBlock&& other) noexcept { swap(other); }
    PageBlock& operator=(PageBlock&& other) noexcept {
        PageBlock taken(std::move(other));
        swap(taken);
        return *this;
    }
    ~PageBlock() {
        if (block_ != nullptr) memory_->Release(block_, bytes_);
    }

    explicit operator bool() const { return block_ != nullptr; }
    [[nodiscard]] uint8_t* data() const { return static_cast<uint8_t*>(block_); }

private:
    void swap(PageBlock& other) noexcept {
        std::swap(memory_, other.memory_);
        std::swap(block_, other.block_);
        std::swap(bytes_, other.bytes_);
    }

    PageMemory* memory_ = nullptr;
    void* block_ = nullptr;
    size_t bytes_ = 0;
};

}  // namespace captionfx
