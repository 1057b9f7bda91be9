#include "render/thread_pool.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace captionfx {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kPatienceWithIdle{1000};
constexpr milliseconds kPatienceWithBusy{100};
constexpr const char* kClearReport = "[picture||Title] ::Clear() TerminateThread %d (0x%08X)\n";
constexpr const char* kEndReport = "[picture||Title] ::~CThreadPool() TerminateThread %d (0x%08X)\n";

template <class List, class Item>
bool Take(List& list, const Item& item) {
    const auto found = std::ranges::find(list, item);
    if (found == list.end()) return false;
    list.erase(found);
    return true;
}

}  // namespace

void AutoResetEvent::Signal() {
    // Notified under the lock: once the waiter is through, the event may be gone.
    const std::lock_guard lock(mutex_);
    isOpen_ = true;
    opened_.notify_one();
}

void AutoResetEvent::Wait() {
    std::unique_lock lock(mutex_);
    opened_.wait(lock, [this] { return isOpen_; });
    isOpen_ = false;
}

bool AutoResetEvent::WaitFor(milliseconds timeout) {
    std::unique_lock lock(mutex_);
    const bool opened = opened_.wait_for(lock, timeout, [this] { return isOpen_; });
    if (opened) isOpen_ = false;
    return opened;
}

struct CThreadPool::JobRecord {
    uint32_t Id;
    JobFunction Function;
    void* Argument;
    int32_t Priority;
    AutoResetEvent Done;
    int32_t Result = 0;  // guarded by the pool's lock

    void Finish(int32_t result) {
        if (Result != kJobCancelled) Result = result;
        Done.Signal();
    }
};

struct CThreadPool::WorkerRecord {
    enum class Phase : uint32_t { kEnded, kWaiting, kWorking };

    std::thread Thread;
    AutoResetEvent Wake;
    AutoResetEvent Ended;
    // Guarded by the pool's lock.
    Phase State = Phase::kWaiting;
    bool IsRetiring = false;
    std::shared_ptr<JobRecord> Job;
};

/// All that workers touch. One lock guards it; it is never held while a job runs or somebody waits.
struct CThreadPool::State {
    using Workers = std::vector<std::shared_ptr<WorkerRecord>>;
    using Jobs = std::vector<std::shared_ptr<JobRecord>>;

    std::mutex Mutex;
    bool IsShutDown = false;
    Workers Idle, Busy, Retired;
    Jobs Running;  // finished ones too, until they are waited for
    Jobs Waiting;  // the newest last, and that starts first
    uint32_t NextJobId = 0;
    uint32_t ThreadCount = 0;
    uint32_t ThreadLimit = 0;

    void Give(const std::shared_ptr<WorkerRecord>& worker, const std::shared_ptr<JobRecord>& job) {
        Running.push_back(job);
        worker->Job = job;
        worker->Wake.Signal();
    }

    /// The job of `id`, running or waiting, or null.
    [[nodiscard]] std::shared_ptr<JobRecord> Find(uint32_t id) const {
        for (const Jobs* list : {&Running, &Waiting}) {
            const auto found = std::ranges::find(*list, id, [](const auto& job) { return job->Id; });
            if (found != list->end()) return *found;
        }
        return nullptr;
    }

    /// Gives a job to an idle worker, to a new one, or leaves it waiting. False when there is no worker and none can be
    /// made; the job is then among the running ones. `self` owns this.
    bool Start(const std::shared_ptr<JobRecord>& job, const std::shared_ptr<State>& self) {
        ReserveFor(1);
        if (!Idle.empty()) {
            Busy.push_back(Idle.back());
            Idle.pop_back();
            Give(Busy.back(), job);
            return true;
        }
        if (ThreadCount < ThreadLimit) {
            const auto worker = std::make_shared<WorkerRecord>();
            try {
                worker->Thread = std::thread(WorkerLoop, self, worker);
                ++ThreadCount;
                Busy.push_back(worker);
                Give(worker, job);
                return true;
            } catch (const std::system_error&) {
                // No more threads to be had: those there are will come to it.
            }
        }
        (ThreadCount > 0 ? Waiting : Running).push_back(job);
        return ThreadCount > 0;
    }

    /// After a job: the next one, or rest, or the end for a worker that was sent home. Decided under one lock, so that
    /// no worker is sent home and counted off after it went to rest. True when it goes on.
    bool FinishJob(const std::shared_ptr<WorkerRecord>& worker, int32_t result) {
        const std::lock_guard lock(Mutex);
        if (const std::shared_ptr<JobRecord> done = std::exchange(worker->Job, nullptr)) done->Finish(result);
        if (worker->IsRetiring) {
            RetireWorker(worker);
        } else {
            RecycleWorker(worker);
        }
        return !worker->IsRetiring;
    }

    /// True when the worker is to go on with what it was given.
    bool Resume(WorkerRecord& worker) {
        const std::lock_guard lock(Mutex);
        worker.State = IsShutDown ? WorkerRecord::Phase::kEnded : WorkerRecord::Phase::kWorking;
        return !IsShutDown;
    }

    static void WorkerLoop(const std::shared_ptr<State>& pool, const std::shared_ptr<WorkerRecord>& worker) {
        for (bool goesOn = true; goesOn;) {
            worker->Wake.Wait();
            if (!pool->Resume(*worker)) break;
            const std::shared_ptr<JobRecord> job = pool->JobOf(*worker);
            goesOn = pool->FinishJob(worker, job ? job->Function(job->Argument) : 0);
        }
        worker->Ended.Signal();
    }

private:
    /// Makes room for one more worker and job in every list: workers move between them and have nobody to tell when
    /// memory runs out.
    void ReserveFor(size_t more) {
        for (Workers* list : {&Idle, &Busy, &Retired}) {
            list->reserve(Idle.size() + Busy.size() + Retired.size() + more);
        }
        for (Jobs* list : {&Running, &Waiting}) list->reserve(Running.size() + Waiting.size() + more);
    }
    std::shared_ptr<JobRecord> JobOf(const WorkerRecord& worker) {
        const std::lock_guard lock(Mutex);
        return worker.Job;
    }
    void RecycleWorker(const std::shared_ptr<WorkerRecord>& worker) {
        worker->State = WorkerRecord::Phase::kWaiting;
        if (!Waiting.empty()) {
            Give(worker, Waiting.back());
            Waiting.pop_back();
        } else if (Take(Busy, worker)) {
            Idle.push_back(worker);
        }
    }
    void RetireWorker(const std::shared_ptr<WorkerRecord>& worker) {
        if (Take(Busy, worker) || Take(Idle, worker)) Retired.push_back(worker);
        worker->State = WorkerRecord::Phase::kEnded;
    }
};

CThreadPool::CThreadPool(DebugOutput& output, uint32_t processorCount)
    : output_(output), state_(std::make_shared<State>()) {
    state_->ThreadLimit = processorCount;
}

CThreadPool::~CThreadPool() {
    State::Workers busy, idle, retired;
    {
        const std::lock_guard lock(state_->Mutex);
        state_->IsShutDown = true;
        for (const auto& job : state_->Running) {
            job->Result = kJobCancelled;
            job->Done.Signal();
        }
        state_->Running.clear();
        state_->Waiting.clear();
        busy = std::exchange(state_->Busy, {});
        idle = std::exchange(state_->Idle, {});
        retired = std::exchange(state_->Retired, {});
        for (const State::Workers* list : {&busy, &idle}) {
            for (const auto& worker : *list) worker->Wake.Signal();
        }
    }
    for (const auto& worker : busy) EndWorker(*worker, kPatienceWithBusy, kEndReport);
    for (const auto& worker : idle) EndWorker(*worker, kPatienceWithIdle, kEndReport);
    for (const auto& worker : retired) EndWorker(*worker, kPatienceWithIdle, kEndReport);
}

int32_t CThreadPool::Submit(JobFunction function, void* argument, uint32_t* id, int32_t priority) {
    if (function == nullptr || id == nullptr) return kTitleInvalidArgument;
    const auto job = std::make_shared<JobRecord>();
    job->Function = function;
    job->Argument = argument;
    job->Priority = priority;

    {
        const std::lock_guard lock(state_->Mutex);
        job->Id = *id = state_->NextJobId++;
        if (state_->Start(job, state_)) return kTitleOk;
    }
    // Not a single thread can be had: the job is done here and now.
    job->Finish(function(argument));
    return kTitleOk;
}

int32_t CThreadPool::WaitForJob(uint32_t id, uint32_t timeoutMs, int32_t* result) {
    if (result == nullptr) return kTitleInvalidArgument;
    std::shared_ptr<JobRecord> job;
    {
        const std::lock_guard lock(state_->Mutex);
        job = state_->Find(id);
    }
    if (!job) return kTitleFailure;
    if (timeoutMs == kNoTimeout) {
        job->Done.Wait();
    } else if (!job->Done.WaitFor(milliseconds(timeoutMs))) {
        return kJobTimedOut;
    }
    const std::lock_guard lock(state_->Mutex);
    *result = job->Result;
    if (job->Result == kJobCancelled) return kJobAborted;
    return Take(state_->Running, job) ? kTitleOk : kTitleFailure;
}

int32_t CThreadPool::SetThreadLimit(uint32_t limit) {
    if (limit == 0) limit = std::numeric_limits<uint32_t>::max();
    const std::lock_guard lock(state_->Mutex);
    while (state_->ThreadCount > limit && !state_->Idle.empty()) {
        const auto worker = state_->Idle.back();
        state_->Idle.pop_back();
        state_->Busy.push_back(worker);
        worker->IsRetiring = true;
        worker->Wake.Signal();
        --state_->ThreadCount;
    }
    for (const auto& worker : state_->Busy) {
        if (state_->ThreadCount <= limit) break;
        if (worker->IsRetiring) continue;
        worker->IsRetiring = true;
        --state_->ThreadCount;
    }
    state_->ThreadLimit = limit;
    return kTitleOk;
}

void CThreadPool::ClearIdleThreads() {
    State::Workers ending;
    {
        const std::lock_guard lock(state_->Mutex);
        for (const auto& worker : state_->Idle) {
            worker->IsRetiring = true;
            worker->Wake.Signal();
            --state_->ThreadCount;
        }
        ending = std::exchange(state_->Idle, {});
        ending.insert(ending.end(), state_->Retired.begin(), state_->Retired.end());
        state_->Retired.clear();
    }
    for (const auto& worker : ending) EndWorker(*worker, kPatienceWithIdle, kClearReport);
}

uint32_t CThreadPool::ThreadCount() const {
    const std::lock_guard lock(state_->Mutex);
    return state_->ThreadCount;
}

void CThreadPool::EndWorker(WorkerRecord& worker, milliseconds patience, const char* format) {
    if (worker.Ended.WaitFor(patience)) {
        worker.Thread.join();
    } else {
        Report(format, worker);
        worker.Thread.detach();
    }
}

void CThreadPool::Report(const char* format, WorkerRecord& worker) {
    std::array<char, 128> line{};
    const auto id = static_cast<int32_t>(std::hash<std::thread::id>()(worker.Thread.get_id()));
    const auto handle = static_cast<uint32_t>(worker.Thread.native_handle());
    std::snprintf(line.data(), line.size(), format, id, handle);
    output_.Write(line.data());
}

}  // namespace captionfx
