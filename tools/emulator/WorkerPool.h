#pragma once

#include <httplib.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace vesk::emulator {

// The workers of the HTTP server. cpp-httplib serves a connection on one
// worker for as long as the connection stays open, so a fixed pool smaller
// than the tills that keep their connections would leave the others waiting
// in the queue. This pool starts `ready` workers, then makes one whenever a
// connection comes and none is free, up to `limit`, and keeps it for the next
// ones. Workers are made by the thread that makes the pool and enqueues (the
// server's accept loop) and inherit its signal mask.
class WorkerPool : public httplib::TaskQueue {
public:
    WorkerPool(size_t ready, size_t limit);
    ~WorkerPool() override;
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    void enqueue(std::function<void()> job) override;
    // Lets the queued jobs run, then joins every worker.
    void shutdown() override;

    size_t workers() const;

private:
    void work();

    mutable std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> jobs_;
    std::vector<std::thread> threads_;
    size_t idle_ = 0;
    const size_t limit_;
    bool shuttingDown_ = false;
};

} // namespace vesk::emulator
