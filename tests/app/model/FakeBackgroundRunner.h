// A runner that does nothing until a test says so, and everything on the test's own thread.
#pragma once

#include "model/BackgroundRunner.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace quillmark::test {

class FakeBackgroundRunner final : public BackgroundRunner {
public:
    void run(std::function<void()> work, std::function<void()> done) override
    {
        m_waiting.push_back({std::move(work), std::move(done)});
    }
    void runToEnd(std::function<void()> work, std::function<void()> done) override
    {
        ++workToEnd;
        run(std::move(work), std::move(done));
    }

    [[nodiscard]] std::size_t waiting() const { return m_waiting.size(); }

    /// Does the work at this place among what waits, and delivers its result.
    void runOne(std::size_t place = 0)
    {
        Job job = std::move(m_waiting.at(place));
        m_waiting.erase(m_waiting.begin() + static_cast<std::ptrdiff_t>(place));
        job.work();
        job.done();
    }
    /// The same for everything, first come, first served, what is added meanwhile included.
    void runAll()
    {
        while (!m_waiting.empty())
            runOne();
    }

    int workToEnd{}; // how often there was work that the program must not end without

private:
    struct Job {
        std::function<void()> work;
        std::function<void()> done;
    };
    std::vector<Job> m_waiting;
};

} // namespace quillmark::test
