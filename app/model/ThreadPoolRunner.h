// Work on threads of a pool, with the results delivered by the main thread's event loop.
#pragma once

#include "model/BackgroundRunner.h"

#include <QObject>
#include <QThreadPool>

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

    bool event(QEvent* event) override;

private:
    struct Job {
        std::function<void()> work;
        std::function<void()> done;
    };
    void workOnNext();
    void deliver();

    // Jobs change threads under this mutex of our own and not inside Qt, so that tools that watch
    // threads can follow them.
    std::mutex m_mutex;
    std::deque<Job> m_waiting;
    std::vector<std::function<void()>> m_finished;
    QThreadPool m_pool;
};

} // namespace quillmark
