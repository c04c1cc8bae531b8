#include "model/ThreadPoolRunner.h"

#include <algorithm>
#include <utility>

namespace quillmark {
namespace {

/// Somebody who drops a document during the scans of a start should not wait for all of them, on
/// however small a computer.
constexpr int fewestThreads = 4;

} // namespace

ThreadPoolRunner::ThreadPoolRunner()
{
    for (QThreadPool* const pool : {&m_pool, &m_poolToEnd})
        pool->setMaxThreadCount(std::max(fewestThreads, pool->maxThreadCount()));
    connect(this, &ThreadPoolRunner::jobFinished, this, &ThreadPoolRunner::deliver,
            Qt::QueuedConnection);
}

ThreadPoolRunner::~ThreadPoolRunner()
{
    for (QThreadPool* const pool : {&m_pool, &m_poolToEnd}) {
        pool->clear();
        pool->waitForDone();
    }
    // Behind the last that the threads did here, also for those who cannot see the pool's own wait.
    const std::lock_guard lock(m_mutex);
}

void ThreadPoolRunner::run(std::function<void()> work, std::function<void()> done)
{
    start({std::move(work), std::move(done)}, m_waiting, m_pool);
}

void ThreadPoolRunner::runToEnd(std::function<void()> work, std::function<void()> done)
{
    ++m_owed;
    start(
        {
            .work = std::move(work),
            .done =
                [this, done = std::move(done)] {
                    --m_owed;
                    done();
                },
        },
        m_waitingToEnd, m_poolToEnd);
}

void ThreadPoolRunner::start(Job job, Jobs& waiting, QThreadPool& pool)
{
    {
        const std::lock_guard lock(m_mutex);
        waiting.push_back(std::move(job));
    }
    pool.start([this, &waiting] { workOnNext(waiting); });
}

void ThreadPoolRunner::workOnNext(Jobs& waiting)
{
    Job job;
    {
        const std::lock_guard lock(m_mutex);
        if (waiting.empty()) return; // dropped
        job = std::move(waiting.front());
        waiting.pop_front();
    }
    job.work();
    job.work = nullptr; // what it holds is not needed until the main thread has time
    const std::lock_guard lock(m_mutex);
    m_finished.push_back(std::move(job.done));
    m_hasFinished.notify_one();
    Q_EMIT jobFinished();
}

void ThreadPoolRunner::finish()
{
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.clear();
    }
    while (m_owed > 0) {
        {
            std::unique_lock lock(m_mutex);
            m_hasFinished.wait(lock, [this] { return !m_finished.empty(); });
        }
        deliver();
    }
}

void ThreadPoolRunner::deliver()
{
    std::vector<std::function<void()>> finished;
    {
        const std::lock_guard lock(m_mutex);
        finished.swap(m_finished);
    }
    for (const std::function<void()>& done : finished)
        done();
}

} // namespace quillmark
