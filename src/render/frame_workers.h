// The work of a frame on several threads: one batch of independent tasks at a time.
#pragma once

#include <algorithm>
#include <functional>

#include "render/rect.h"
#include "render/thread_pool.h"

namespace captionfx {

inline constexpr int32_t kBandRows = 24;  // few enough for a core's cache, enough for a task to be worth its wait

/// Shares tasks between the calling thread and the workers of a pool. Workers take the next task as they come free, so
/// that a batch costs one job a worker, however many tasks it has. With one thread all tasks run here, in order.
class FrameWorkers {
public:
    FrameWorkers(CThreadPool& pool, int32_t threads) : pool_(pool), threads_(std::max(threads, 1)) {}

    [[nodiscard]] bool AreSeveral() const { return threads_ > 1; }

    /// Runs task(0) to task(count - 1), each once, and returns when all are done. What a task throws is thrown here.
    void Run(int32_t count, const std::function<void(int32_t)>& task) const;

    /// Runs `task` for bands of rows that make up `rect`; on one thread, all in one.
    template <class Task>
    void RunBands(const TitleRect& rect, Task task) const {
        if (IsEmpty(rect)) return;
        if (!AreSeveral()) return task(rect);
        ForBands(rect, [&](const TitleRect& band, int32_t /*index*/) { task(band); });
    }

    /// Runs task(band, its index) for the bands of kBandRows that make up `rect`, the last one with what is left.
    template <class Task>
    void ForBands(const TitleRect& rect, Task task) const {
        if (IsEmpty(rect)) return;
        const int32_t bands = (rect.bottom - rect.top + kBandRows - 1) / kBandRows;
        Run(bands, [&](int32_t band) {
            const int32_t top = rect.top + band * kBandRows;
            task(TitleRect{rect.left, top, rect.right, std::min(top + kBandRows, rect.bottom)}, band);
        });
    }

private:
    CThreadPool& pool_;
    int32_t threads_;
};

}  // namespace captionfx
