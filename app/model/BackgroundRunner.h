// The seam between the model and other threads. The real one is ThreadPoolRunner.h; tests have a
// fake that works when they say so.
#pragma once

#include <functional>

namespace quillmark {

class BackgroundRunner {
public:
    virtual ~BackgroundRunner() = default;

    /// Calls `work` on some other thread and, when that has returned, `done` on the main thread,
    /// never from inside this call. Several pieces of work may run at once and end in any order.
    /// `work` lets no exception out. Called on the main thread.
    virtual void run(std::function<void()> work, std::function<void()> done) = 0;
};

} // namespace quillmark
