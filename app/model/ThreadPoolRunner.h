// Work on threads of a pool, with the results delivered by the main thread's event loop.
#pragma once

#include "model/BackgroundRunner.h"

#include <QObject>
#include <QThreadPool>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <vector>

namespace quillmark {

/// Lives on the main thread.
class ThreadPoolRunner final : public QObject, public BackgroundRunner {
    Q_OBJECT
public:
    ThreadPoolRunner();
    /// Waits for the work that has begun; what has not is dropped, and so are results that were not
    /// delivered.
    ~ThreadPoolRunner() override;

    void run(std::function<void()> work, std::function<void()> done) override;
    void runToEnd(std::function<void()> work, std::function<void()> done) override;

    /// Before the program ends: waits for all that must not be lost, and delivers it. Other work
    /// that has not begun is dropped.
    void finish();
    /// Whether a thread is still at work. It would hold up the destructor.
    [[nodiscard]] bool isWorking() const { return m_pool.activeThreadCount() > 0; }

Q_SIGNALS:
    /// By a thread of the pool, for the main thread.
    void jobFinished();

private:
    struct Job {
        std::function<void()> work;
        std::function<void()> done;
    };
    using Jobs = std::deque<Job>;
    void start(Job job, Jobs& waiting, QThreadPool& pool);
    void workOnNext(Jobs& waiting);
    void deliver();

    // Jobs change threads under this mutex of our own and not inside Qt, so that tools that watch
    // threads can follow them.
    std::mutex m_mutex;
    Jobs m_waiting;
    Jobs m_waitingToEnd;
    std::vector<std::function<void()>> m_finished;
    std::condition_variable m_hasFinished;
    int m_owed{}; // deliveries of work that must not be lost; only for the main thread
    QThreadPool m_pool;
    /// For what must not be lost: it never waits behind reading, which may take long or never end.
    QThreadPool m_poolToEnd;
};

} // namespace quillmark
