// Memory for the planes of tiles, kept from frame to frame.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace captionfx {

/// Lends blocks of numbers that are 0 and must be 0 again when they come back. Safe on several threads.
class BandPlanes {
public:
    using Block = std::vector<uint16_t>;

    /// A block that goes back by itself.
    class Loan {
    public:
        Loan(BandPlanes& owner, Block block) : owner_(owner), block_(std::move(block)) {}
        Loan(const Loan&) = delete;
        Loan& operator=(const Loan&) = delete;
        ~Loan() { owner_.TakeBack(std::move(block_)); }

        [[nodiscard]] uint16_t* Numbers() { return block_.data(); }

    private:
        BandPlanes& owner_;
        Block block_;
    };

    [[nodiscard]] Loan Borrow(size_t numbers) {
        Block block;
        {
            const std::lock_guard lock(mutex_);
            if (!free_.empty()) {
                block = std::move(free_.back());
                free_.pop_back();
            }
        }
        if (block.size() < numbers) block.resize(numbers);
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
