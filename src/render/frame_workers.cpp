#include "render/frame_workers.h"

#include <atomic>
#include <exception>
#include <new>
#include <vector>

namespace captionfx {
namespace {

/// What the threads of one batch share.
struct Batch {
    const std::function<void(int32_t)>& Task;
    int32_t Count;
    std::atomic<int32_t> Next{0};
    std::atomic<bool> HasFailed{false};
    std::exception_ptr Failure{};  // of the first that failed

    /// Takes tasks until none is left.
    void Work() noexcept {
        for (int32_t i = Next++; i < Count && !HasFailed; i = Next++) {
            try {
                Task(i);
            } catch (...) {
                if (!HasFailed.exchange(true)) Failure = std::current_exception();
            }
        }
    }

    static int32_t WorkOn(void* batch) {
        static_cast<Batch*>(batch)->Work();
        return kTitleOk;
    }
};

/// Submits one worker's share and notes its id. False when memory runs out: those there are do the work.
bool SubmitTo(CThreadPool& pool, Batch& batch, std::vector<uint32_t>& jobs) try {
    uint32_t id = 0;
    pool.Submit(Batch::WorkOn, &batch, &id, 0);
    jobs.push_back(id);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

}  // namespace

void FrameWorkers::Run(int32_t count, const std::function<void(int32_t)>& task) const {
    if (!AreSeveral() || count < 2) {
        for (int32_t i = 0; i < count; ++i) task(i);
        return;
    }
    Batch batch{task, count};
    std::vector<uint32_t> jobs;
    const auto helpers = static_cast<size_t>(std::min(threads_, count)) - 1;
    jobs.reserve(helpers);
    while (jobs.size() < helpers && SubmitTo(pool_, batch, jobs)) {
    }
    batch.Work();
    for (const uint32_t id : jobs) {
        int32_t result = 0;
        pool_.WaitForJob(id, kNoTimeout, &result);
    }
    if (batch.Failure) std::rethrow_exception(batch.Failure);
}

}  // namespace captionfx
