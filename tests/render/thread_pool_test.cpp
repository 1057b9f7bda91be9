// The worker pool by its stated cases, and batches shared between threads.
#include "render/thread_pool.h"

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "render/frame_workers.h"
#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

/// A job that waits to be let go, and notes when it started.
struct Held {
    std::atomic<int>* Order = nullptr;
    AutoResetEvent Go;
    std::atomic<int> StartedAs{-1};

    static int32_t Run(void* held) {
        Held& self = *static_cast<Held*>(held);
        self.StartedAs = (*self.Order)++;
        self.Go.Wait();
        return 7;
    }
    void AwaitStart() const {
        while (StartedAs < 0) std::this_thread::yield();
    }
};

int32_t Return42(void*) {
    return 42;
}

struct ThreadPoolTest : testing::Test {
    FakePlatform platform;
    std::atomic<int> order{0};
};

TEST_F(ThreadPoolTest, WaitingJobsStartNewestFirst) {
    CThreadPool pool(platform, 8);
    EXPECT_EQ(pool.SetThreadLimit(2), kTitleOk);
    Held held[5];
    uint32_t ids[5];
    int32_t result = 0;
    for (size_t i = 0; i < 5; ++i) {
        held[i].Order = &order;
        pool.Submit(Held::Run, &held[i], &ids[i], 0);
        if (i < 2) held[i].AwaitStart();
    }
    EXPECT_EQ(pool.ThreadCount(), 2U);
    EXPECT_EQ(pool.WaitForJob(ids[2], 0, &result), kJobTimedOut);
    for (const size_t next : {0U, 4U, 3U, 2U}) {  // each end lets one more start: 5, 4, 3
        held[next].Go.Signal();
        EXPECT_EQ(pool.WaitForJob(ids[next], kNoTimeout, &result), kTitleOk);
        EXPECT_EQ(result, 7);
    }
    EXPECT_EQ(held[4].StartedAs, 2);
    EXPECT_EQ(held[3].StartedAs, 3);
    EXPECT_EQ(held[2].StartedAs, 4);
    held[1].Go.Signal();
    EXPECT_EQ(pool.WaitForJob(ids[1], kNoTimeout, &result), kTitleOk);
}

TEST_F(ThreadPoolTest, LimitsSendWorkersHome) {
    CThreadPool pool(platform, 1);
    pool.SetThreadLimit(0);  // none
    Held held[4];
    uint32_t ids[4];
    int32_t result = 0;
    for (size_t i = 0; i < 4; ++i) {
        held[i].Order = &order;
        pool.Submit(Held::Run, &held[i], &ids[i], 0);
        held[i].AwaitStart();
    }
    EXPECT_EQ(pool.ThreadCount(), 4U);
    held[0].Go.Signal();
    pool.WaitForJob(ids[0], kNoTimeout, &result);
    pool.SetThreadLimit(1);  // one is idle, three are busy
    EXPECT_EQ(pool.ThreadCount(), 1U);
    for (size_t i = 1; i < 4; ++i) {
        held[i].Go.Signal();
        EXPECT_EQ(pool.WaitForJob(ids[i], kNoTimeout, &result), kTitleOk)
            << "a retiring worker's job is done all the same";
        EXPECT_EQ(result, 7);
    }
    pool.ClearIdleThreads();
    uint32_t id = 0;
    EXPECT_EQ(pool.Submit(nullptr, nullptr, &id, 0), kTitleInvalidArgument);
    EXPECT_EQ(pool.Submit(Return42, nullptr, nullptr, 0), kTitleInvalidArgument);
    for (int i = 0; i < 2; ++i) {  // by a new worker, and by the same when it is idle
        pool.Submit(Return42, nullptr, &id, 0);
        EXPECT_EQ(pool.WaitForJob(id, kNoTimeout, nullptr), kTitleInvalidArgument);
        EXPECT_EQ(pool.WaitForJob(id, kNoTimeout, &result), kTitleOk);
        EXPECT_EQ(result, 42);
    }
    EXPECT_EQ(pool.WaitForJob(id, kNoTimeout, &result), kTitleFailure) << "once";
    EXPECT_TRUE(platform.Messages.empty());
}

TEST_F(ThreadPoolTest, ItsEndCancelsJobs) {
    Held held[3];
    for (Held& job : held) job.Order = &order;
    uint32_t ids[3];
    auto pool = std::make_unique<CThreadPool>(platform, 2);
    for (size_t i = 0; i < 3; ++i) pool->Submit(Held::Run, &held[i], &ids[i], 0);
    held[0].AwaitStart();
    held[1].AwaitStart();
    std::thread letGo([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        held[0].Go.Signal();
        held[1].Go.Signal();
    });
    pool.reset();
    letGo.join();
    EXPECT_EQ(held[2].StartedAs, -1) << "what waited never ran";
    EXPECT_TRUE(platform.Messages.empty()) << "both ended in their time";
}

TEST_F(ThreadPoolTest, AWorkerThatDoesNotEndIsNamedAndLeft) {
    // Lives on with its worker, which may end after the test.
    static Held* const stuck = std::make_unique<Held>().release();
    static std::atomic<int> ownOrder{0};
    stuck->Order = &ownOrder;
    uint32_t id = 0;
    {
        CThreadPool pool(platform, 1);
        pool.Submit(Held::Run, stuck, &id, 0);
        stuck->AwaitStart();
    }
    ASSERT_EQ(platform.Messages.size(), 1U);
    EXPECT_EQ(platform.Messages[0].find("[picture||Title] ::~CThreadPool() TerminateThread "), 0U);
    EXPECT_TRUE(platform.Messages[0].ends_with(")\n"));
    stuck->Go.Signal();
}

TEST_F(ThreadPoolTest, BatchesRunEachTaskOnce) {
    CThreadPool pool(platform, 8);
    for (const int32_t threads : {1, 2, 8}) {
        const FrameWorkers workers(pool, threads);
        for (const int32_t count : {0, 1, 2, 7, 1000}) {
            std::vector<std::atomic<int>> runs(static_cast<size_t>(count));
            workers.Run(count, [&](int32_t i) { ++runs[static_cast<size_t>(i)]; });
            for (const std::atomic<int>& n : runs) ASSERT_EQ(n, 1);
        }
        std::vector<std::atomic<int>> rows(100);
        workers.RunBands({0, 3, 5, 97}, [&](const TitleRect& band) {
            for (int32_t y = band.top; y < band.bottom; ++y) ++rows[static_cast<size_t>(y)];
        });
        for (size_t y = 0; y < rows.size(); ++y) ASSERT_EQ(rows[y], y >= 3 && y < 97 ? 1 : 0) << y;
        EXPECT_THROW(workers.Run(50,
                                 [](int32_t i) {
                                     if (i == 30) throw std::bad_alloc();
                                 }),
                     std::bad_alloc);
    }
    EXPECT_LE(pool.ThreadCount(), 7U);
}

}  // namespace
}  // namespace captionfx::test
