// Memory for the planes of bands, kept from frame to frame.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace captionfx {

/// Lends blocks of pixels that are 0 and must be 0 again when they come back. Safe on several threads.
class BandPlanes {
public:
    using Block = std::vector<uint32_t>;

    /// A block that goes back by itself.
    class Loan {
    public:
        Loan(BandPlanes& owner, Block block) : owner_(owner), block_(std::move(block)) {}
        Loan(const Loan&) = delete;
        Loan& operator=(const Loan&) = delete;
        ~Loan() { owner_.TakeBack(std::move(block_)); }

        [[nodiscard]] uint32_t* Pixels() { return block_.data(); }

    private:
        BandPlanes& owner_;
        Block block_;
    };

    [[nodiscard]] Loan Borrow(size_t pixels) {
        Block block;
        {
            const std::lock_guard lock(mutex_);
            if (!free_.empty()) {
                block = std::move(free_.back());
                free_.pop_back();
            }
        }
        block.resize(pixels);
        return {*this, std::move(block)};
    }

    void Clear() {
        const std::lock_guard lock(mutex_);
        free_.clear();
    }

private:
    /// Memory that is short for the list costs the block only.
    void TakeBack(Block block) noexcept try {
        const std::lock_guard lock(mutex_);
        free_.push_back(std::move(block));
    } catch (const std::bad_alloc&) {
    }

    std::mutex mutex_;
    std::vector<Block> free_;
};

}  // namespace captionfx
