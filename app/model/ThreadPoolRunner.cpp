#include "model/ThreadPoolRunner.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <utility>

namespace quillmark {
namespace {

/// Somebody who drops a document during the scans of a start should not wait for all of them, on
/// however small a computer.
constexpr int fewestThreads = 4;

constexpr QEvent::Type jobFinished = QEvent::User;

} // namespace

ThreadPoolRunner::ThreadPoolRunner()
{
    m_pool.setMaxThreadCount(std::max(fewestThreads, m_pool.maxThreadCount()));
}

ThreadPoolRunner::~ThreadPoolRunner()
{
    m_pool.clear();
    m_pool.waitForDone();
}

void ThreadPoolRunner::run(std::function<void()> work, std::function<void()> done)
{
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back({std::move(work), std::move(done)});
    }
    m_pool.start([this] { workOnNext(); });
}

void ThreadPoolRunner::workOnNext()
{
    Job job;
    {
        const std::lock_guard lock(m_mutex);
        job = std::move(m_waiting.front());
        m_waiting.pop_front();
    }
    job.work();
    job.work = nullptr; // what it holds is not needed until the main thread has time
    {
        const std::lock_guard lock(m_mutex);
        m_finished.push_back(std::move(job.done));
    }
    QCoreApplication::postEvent(this, new QEvent(jobFinished));
}

bool ThreadPoolRunner::event(QEvent* event)
{
    if (event->type() != jobFinished) return QObject::event(event);
    deliver();
    return true;
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
