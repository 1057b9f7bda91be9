// CThreadPool, the worker pool of a title: threads made on demand up to a limit, kept idle between frames.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>

#include "host/caption_fx.h"
#include "platform/debug_output.h"

namespace captionfx {

// Results of WaitForJob besides kTitleOk and the failures of caption_fx.h.
inline constexpr int32_t kJobTimedOut = static_cast<int32_t>(0xE0000102U);
inline constexpr int32_t kJobAborted = static_cast<int32_t>(0x80004004U);

/// The result of a job that the pool's end cancelled; no job may return it.
inline constexpr int32_t kJobCancelled = static_cast<int32_t>(0x8FFFFFFFU);

inline constexpr uint32_t kNoTimeout = 0xFFFFFFFFU;  // milliseconds

/// A gate that one thread opens and one passes, once for each opening.
class AutoResetEvent {
public:
    void Signal();
    void Wait();
    /// False when `timeout` has passed first.
    [[nodiscard]] bool WaitFor(std::chrono::milliseconds timeout);

private:
    std::mutex mutex_;
    std::condition_variable opened_;
    bool isOpen_ = false;
};

/// Jobs are submitted and waited for by one thread. A worker is never ended by force: one that does not end in its time
/// is named in the debug output and left to itself, with all that it may still touch of the pool.
class CThreadPool {
public:
    using JobFunction = int32_t (*)(void* argument);

    CThreadPool(DebugOutput& output, uint32_t processorCount);
    CThreadPool(const CThreadPool&) = delete;
    CThreadPool& operator=(const CThreadPool&) = delete;
    /// Cancels what runs and waits, and ends the workers.
    ~CThreadPool();

    /// Starts a job: on an idle worker, on a new one, or, at the limit, when a worker comes free, the newest waiting
    /// job first. `argument` must live until the job was waited for. `priority` is kept with the job; threads of the
    /// C++ library have none to set. Returns 0 or kTitleInvalidArgument for a null function or id.
    int32_t Submit(JobFunction function, void* argument, uint32_t* id, int32_t priority);

    /// Waits for a job and forgets it: each can be waited for once. Returns 0 with the job's result; kTitleFailure for
    /// an id that no job has; kJobTimedOut, the job left as it is; kJobAborted for a cancelled job;
    /// kTitleInvalidArgument for a null result.
    int32_t WaitForJob(uint32_t id, uint32_t timeoutMs, int32_t* result);

    /// The largest number of workers, 0 for no limit. Workers above it end: idle ones now, busy ones after their job.
    /// Returns 0.
    int32_t SetThreadLimit(uint32_t limit);

    /// Ends all idle workers and waits up to a second for each.
    void ClearIdleThreads();

    /// How many workers there are.
    [[nodiscard]] uint32_t ThreadCount() const;

private:
    struct JobRecord;
    struct WorkerRecord;
    struct State;

    void Report(const char* format, WorkerRecord& worker);
    void EndWorker(WorkerRecord& worker, std::chrono::milliseconds patience, const char* format);

    DebugOutput& output_;
    std::shared_ptr<State> state_;  // shared with the workers, of which one may outlive the pool
};

}  // namespace captionfx
