// What a bounded cache keeps and what it lets go.
#include "render/shared_cache.h"

#include <gtest/gtest.h>

namespace captionfx::test {
namespace {

struct SharedCacheTest : testing::Test {
    static constexpr size_t kMost = 100, kEach = 10;

    void Insert(int key, CacheUse use = CacheUse::kLasting) {
        if (cache.IsWanted(key, use)) cache.Insert(key, std::make_shared<int>(key), kEach);
    }
    int CountOf(int first, int end) {
        int count = 0;
        for (int key = first; key < end; ++key) {
            if (const auto value = cache.Find(key)) {
                EXPECT_EQ(*value, key);
                ++count;
            }
        }
        return count;
    }

    SharedCache<int, int> cache{kMost};
};

TEST_F(SharedCacheTest, WhatAFrameUsesStaysAndTheOldestGoes) {
    for (int key = 0; key < 10; ++key) {
        cache.BeginFrame();
        Insert(key);
    }
    EXPECT_EQ(CountOf(5, 10), 5) << "used in this frame";
    Insert(10);
    EXPECT_EQ(CountOf(5, 11), 6);
    EXPECT_EQ(cache.Find(0), nullptr);
    EXPECT_NE(cache.Find(4), nullptr) << "only about a quarter goes at once";
}

TEST_F(SharedCacheTest, AFrameThatFillsItAloneIsBoundedToo) {
    for (int key = 0; key < 50; ++key) Insert(key);
    EXPECT_EQ(CountOf(0, 50), static_cast<int>(kMost / kEach));
    cache.BeginFrame();
    Insert(50);
    EXPECT_NE(cache.Find(50), nullptr) << "the next frame has room";
    cache.Clear();
    EXPECT_EQ(CountOf(0, 51), 0);
}

TEST_F(SharedCacheTest, APassingValueIsKeptWhenItComesBack) {
    Insert(7, CacheUse::kPassing);
    EXPECT_EQ(cache.Find(7), nullptr);
    Insert(7, CacheUse::kPassing);
    EXPECT_NE(cache.Find(7), nullptr);
}

}  // namespace
}  // namespace captionfx::test
