// A byte string as a program of calls to the worker pool: what is submitted is done once, and can be waited for once.
#include <atomic>
#include <cstdlib>
#include <thread>
#include <vector>

#include "fuzz/input_reader.h"
#include "render/thread_pool.h"

namespace {

using captionfx::CThreadPool;
using captionfx::kNoTimeout;

class Silence final : public captionfx::DebugOutput {
public:
    void Write(std::string_view /*message*/) override {}
};

/// A job: how long it takes, and how often it ran.
struct Work {
    int32_t Yields;
    std::atomic<int32_t> Runs{0};

    static int32_t Do(void* argument) {
        Work& work = *static_cast<Work*>(argument);
        for (int32_t i = 0; i < work.Yields; ++i) std::this_thread::yield();
        return ++work.Runs;
    }
};

void Demand(bool holds) {
    if (!holds) std::abort();
}

struct Pending {
    uint32_t Id;
    Work* Argument;
};

void WaitFor(CThreadPool& pool, const Pending& job) {
    int32_t result = 0;
    Demand(pool.WaitForJob(job.Id, kNoTimeout, &result) == kTitleOk);
    Demand(result == 1 && job.Argument->Runs == 1);
    Demand(pool.WaitForJob(job.Id, 0, &result) == kTitleFailure);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    captionfx::fuzz::InputReader in(data, size);
    Silence silence;
    std::vector<std::unique_ptr<Work>> works;  // outlive the pool
    std::vector<Pending> pending;
    CThreadPool pool(silence, 2);
    for (int calls = 0; calls < 60 && !in.AtEnd(); ++calls) {
        int32_t result = 0;
        switch (in.UpTo(6)) {
            case 0:
            case 1: {
                works.push_back(std::make_unique<Work>());
                works.back()->Yields = in.UpTo(20);
                pending.push_back({0, works.back().get()});
                Demand(pool.Submit(Work::Do, works.back().get(), &pending.back().Id, in.UpTo(5) - 2) == kTitleOk);
                break;
            }
            case 2: {
                if (pending.empty()) break;
                const auto job = pending.begin() + in.UpTo(static_cast<int32_t>(pending.size()));
                WaitFor(pool, *job);
                pending.erase(job);
                break;
            }
            case 3:
                Demand(pool.SetThreadLimit(static_cast<uint32_t>(in.UpTo(5))) == kTitleOk);
                break;
            case 4:
                pool.ClearIdleThreads();
                break;
            default:
                Demand(pool.WaitForJob(1000000, 0, &result) == kTitleFailure);
                break;
        }
    }
    // Half of the programs end with jobs running and waiting.
    if (in.UpTo(2) == 0) {
        for (const Pending& job : pending) WaitFor(pool, job);
    }
    return 0;
}
