#include "WorkerPool.h"

#include <algorithm>

namespace vesk::emulator {

WorkerPool::WorkerPool(size_t ready, size_t limit)
    : limit_(limit) {
    const std::lock_guard<std::mutex> lock(mutex_);
    while (threads_.size() < std::min(ready, limit_))
        threads_.emplace_back([this] { work(); });
}

WorkerPool::~WorkerPool() {
    shutdown();
}

void WorkerPool::enqueue(std::function<void()> job) {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        jobs_.push_back(std::move(job));
        if (jobs_.size() > idle_ && threads_.size() < limit_ && !shuttingDown_)
            threads_.emplace_back([this] { work(); });
    }
    wake_.notify_one();
}

void WorkerPool::shutdown() {
    std::vector<std::thread> threads;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        shuttingDown_ = true;
        threads.swap(threads_);
    }
    wake_.notify_all();
    for (std::thread& thread : threads)
        thread.join();
}

size_t WorkerPool::workers() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return threads_.size();
}

void WorkerPool::work() {
    for (;;) {
        std::function<void()> job;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            ++idle_;
            wake_.wait(lock, [this] { return !jobs_.empty() || shuttingDown_; });
            --idle_;
            if (jobs_.empty())
                return; // shutting down, nothing left to do
            job = std::move(jobs_.front());
            jobs_.pop_front();
        }
        job();
    }
}

} // namespace vesk::emulator
