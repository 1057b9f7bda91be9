// A cache of things that are costly to make and the same for many: bounded in bytes, safe on several threads.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace captionfx {

/// How long a value may be of use.
enum class CacheUse {
    kLasting,  ///< It will be asked for again.
    kPassing,  ///< It belongs to one moment of a movement, and is kept only once that moment has come back.
};

/// `Key` is plain bytes without padding: it is compared and hashed as such. Values are shared and never change.
template <class Key, class Value>
class SharedCache {
    static_assert(std::is_trivially_copyable_v<Key>);

public:
    /// Holds up to `mostBytes`.
    explicit SharedCache(size_t mostBytes) : mostBytes_(mostBytes) {}

    /// What was used before this moment goes first when there is too much.
    void BeginFrame() {
        const std::lock_guard lock(mutex_);
        ++frame_;
    }

    /// The value of a key, or null.
    [[nodiscard]] std::shared_ptr<const Value> Find(const Key& key) {
        const std::lock_guard lock(mutex_);
        const auto found = entries_.find(key);
        if (found == entries_.end()) return nullptr;
        found->second.LastUse = frame_;
        return found->second.Shared;
    }

    /// Whether a value that Find does not have is worth inserting.
    [[nodiscard]] bool IsWanted(const Key& key, CacheUse use) try {
        if (use == CacheUse::kLasting) return true;
        const std::lock_guard lock(mutex_);
        come_.resize(kMostCome);
        const size_t hash = Hash()(key);
        const auto note = static_cast<uint32_t>(hash >> 32U);
        return std::exchange(come_[hash % kMostCome], note) == note;
    } catch (const std::bad_alloc&) {
        return false;
    }

    /// Keeps a value of `bytes`. Memory that runs out for it is no failure: it is made again then.
    void Insert(const Key& key, std::shared_ptr<const Value> value, size_t bytes) try {
        const std::lock_guard lock(mutex_);
        if (bytes_ + bytes > mostBytes_) MakeRoom();
        if (bytes_ + bytes > mostBytes_) return;  // this frame alone fills it
        if (entries_.try_emplace(key, Entry{std::move(value), bytes, frame_}).second) bytes_ += bytes;
    } catch (const std::bad_alloc&) {
    }

    void Clear() {
        const std::lock_guard lock(mutex_);
        entries_.clear();
        come_.clear();
        bytes_ = 0;
    }

private:
    struct Entry {
        std::shared_ptr<const Value> Shared;
        size_t Bytes;
        uint64_t LastUse;
    };
    static std::string_view BytesOf(const Key& key) { return {reinterpret_cast<const char*>(&key), sizeof key}; }
    struct Hash {
        size_t operator()(const Key& key) const { return std::hash<std::string_view>()(BytesOf(key)); }
    };
    struct Equal {
        bool operator()(const Key& a, const Key& b) const { return BytesOf(a) == BytesOf(b); }
    };

    static constexpr size_t kMostCome = size_t{1} << 15U;

    /// Throws out the longest unused quarter and more, of what this frame has not used.
    void MakeRoom() {
        if (entries_.empty()) return;
        std::vector<uint64_t> uses;
        uses.reserve(entries_.size());
        for (const auto& [key, entry] : entries_) uses.push_back(entry.LastUse);
        const auto quarter = uses.begin() + static_cast<std::ptrdiff_t>(uses.size() / 4);
        std::ranges::nth_element(uses, quarter);
        const uint64_t oldest = std::min(*quarter, frame_ - 1);
        std::erase_if(entries_, [&](const auto& item) {
            if (item.second.LastUse > oldest) return false;
            bytes_ -= item.second.Bytes;
            return true;
        });
    }

    const size_t mostBytes_;
    std::mutex mutex_;
    std::unordered_map<Key, Entry, Hash, Equal> entries_;
    std::vector<uint32_t> come_;  // hashes of passing keys that came, each in the place that it belongs to
    size_t bytes_ = 0;
    uint64_t frame_ = 1;
};

}  // namespace captionfx
