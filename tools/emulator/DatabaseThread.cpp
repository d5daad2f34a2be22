#include "DatabaseThread.h"

#include <chrono>

namespace vesk::emulator {

DatabaseThread::DatabaseThread()
    : thread_([this] { loop(); }) {}

DatabaseThread::~DatabaseThread() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

bool DatabaseThread::isCurrent() const {
    return std::this_thread::get_id() == thread_.get_id();
}

void DatabaseThread::post(std::function<void()> job) {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        jobs_.push_back(std::move(job));
    }
    wake_.notify_one();
}

void DatabaseThread::loop() {
    for (;;) {
        std::function<void()> job;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            wake_.wait(lock, [this] { return stopping_ || !jobs_.empty(); });
            if (jobs_.empty())
                return; // stopping, and nothing left to do
            job = std::move(jobs_.front());
            jobs_.pop_front();
        }
        const auto started = std::chrono::steady_clock::now();
        job(); // a packaged_task: whatever it throws goes to the waiting caller
        busyNs_.fetch_add(std::chrono::duration_cast<std::chrono::nanoseconds>(
                              std::chrono::steady_clock::now() - started)
                              .count(),
                          std::memory_order_relaxed);
        jobsRun_.fetch_add(1, std::memory_order_relaxed);
    }
}

} // namespace vesk::emulator
