#pragma once

#include <QtGlobal>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>

namespace vesk::emulator {

// One thread that runs jobs one after another, in the order given. Qt SQL
// lets a connection be used only by the thread that made it, so the store
// makes its connection here and runs every query here; whichever thread asks
// (an HTTP worker, a test) waits for its job's result. Running jobs one at a
// time is also what keeps concurrent tills from interleaving inside one
// business operation.
class DatabaseThread {
public:
    DatabaseThread();
    ~DatabaseThread(); // runs the jobs already given, then joins
    DatabaseThread(const DatabaseThread&) = delete;
    DatabaseThread& operator=(const DatabaseThread&) = delete;

    // Runs `job` on the thread and returns its result, or throws what it
    // threw. Called on the thread itself (from inside a job), it runs `job`
    // at once.
    template <class F>
    std::invoke_result_t<F&> run(F&& job) {
        using Result = std::invoke_result_t<F&>;
        if (isCurrent())
            return job();
        auto task = std::make_shared<std::packaged_task<Result()>>(std::forward<F>(job));
        std::future<Result> result = task->get_future();
        auto released = std::make_shared<Released>();
        // Signals when the job is gone: run and destroyed, or dropped unrun by
        // a stopped thread (the caller then gets a broken promise, not a hang).
        auto signalWhenGone =
            std::shared_ptr<void>(nullptr, [released](void*) { released->signal(); });
        post([task, signalWhenGone = std::move(signalWhenGone)]() mutable {
            (*task)();
            task.reset(); // the job, and this thread's hold on its result, end here
        });
        // The caller reads the result (a thrown exception included) only once the
        // database thread has let go of it: the two never share it at once.
        released->wait();
        return result.get();
    }

    bool isCurrent() const;

    // The jobs run so far and the time they took, for the metrics.
    qint64 jobsRun() const { return jobsRun_.load(std::memory_order_relaxed); }
    qint64 busyNanoseconds() const { return busyNs_.load(std::memory_order_relaxed); }

private:
    // Tells the waiting caller that a job is over and let go of.
    class Released {
    public:
        void signal() {
            const std::lock_guard<std::mutex> lock(mutex_);
            done_ = true;
            doneChanged_.notify_one();
        }
        void wait() {
            std::unique_lock<std::mutex> lock(mutex_);
            doneChanged_.wait(lock, [this] { return done_; });
        }

    private:
        std::mutex mutex_;
        std::condition_variable doneChanged_;
        bool done_ = false;
    };

    void post(std::function<void()> job);
    void loop();

    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> jobs_;
    bool stopping_ = false;
    std::atomic<qint64> jobsRun_{0};
    std::atomic<qint64> busyNs_{0};
    std::thread thread_;
};

} // namespace vesk::emulator
