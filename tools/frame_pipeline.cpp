#include "tools/frame_pipeline.h"

#include <condition_variable>
#include <deque>
#include <future>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>

#include "tools/memory_tuning.h"

namespace captionfx {
namespace {

/// A frame on its way. Its `drawn` carries what the painter threw.
struct Task {
    Frame frame;
    std::promise<void> drawn;
};

/// Frames that wait for a painter. They stay the caller's.
class TaskQueue {
public:
    void Push(Task& task) {
        {
            const std::lock_guard lock(mutex_);
            tasks_.push_back(&task);
        }
        isThere_.notify_one();
    }

    /// Waits for a task; null once `stop` is asked for.
    Task* Pop(const std::stop_token& stop) {
        std::unique_lock lock(mutex_);
        if (!isThere_.wait(lock, stop, [this] { return !tasks_.empty(); }) || stop.stop_requested()) return nullptr;
        Task* const task = tasks_.front();
        tasks_.pop_front();
        return task;
    }

private:
    std::mutex mutex_;
    std::condition_variable_any isThere_;
    std::deque<Task*> tasks_;
};

void DrawTasks(const std::stop_token& stop, FramePainter& painter, TaskQueue& queue) {
    while (Task* const task = queue.Pop(stop)) {
        try {
            painter.Draw(task->frame.seconds, task->frame.pixels);
            task->drawn.set_value();
        } catch (...) {
            task->drawn.set_exception(std::current_exception());
        }
    }
}

void DrawOnThreads(std::vector<FramePainter>& painters, size_t pixelsOfFrame, const std::function<bool(Frame&)>& fill,
                   const std::function<void(const Frame&)>& deliver) {
    KeepFreedMemory();
    // The threads come last, so that they end first, whatever is thrown here.
    std::vector<Task> ring(2 * painters.size());
    for (Task& task : ring) task.frame.pixels.resize(pixelsOfFrame);
    TaskQueue queue;
    std::vector<std::jthread> threads;
    threads.reserve(painters.size());
    for (FramePainter& painter : painters)
        threads.emplace_back([&](const std::stop_token& stop) { DrawTasks(stop, painter, queue); });

    size_t filled = 0;
    bool hasMore = true;
    for (size_t delivered = 0; hasMore || delivered < filled; ++delivered) {
        while (hasMore && filled - delivered < ring.size()) {
            Task& task = ring[filled % ring.size()];
            hasMore = fill(task.frame);
            if (!hasMore) break;
            task.drawn = {};
            queue.Push(task);
            ++filled;
        }
        if (delivered == filled) break;
        Task& oldest = ring[delivered % ring.size()];
        oldest.drawn.get_future().get();
        deliver(oldest.frame);
    }
}

}  // namespace

void DrawInOrder(std::vector<FramePainter>& painters, size_t pixelsOfFrame, const std::function<bool(Frame&)>& fill,
                 const std::function<void(const Frame&)>& deliver) {
    if (painters.size() > 1) return DrawOnThreads(painters, pixelsOfFrame, fill, deliver);
    Frame frame;
    frame.pixels.resize(pixelsOfFrame);
    while (fill(frame)) {
        painters.front().Draw(frame.seconds, frame.pixels);
        deliver(frame);
    }
}

}  // namespace captionfx
