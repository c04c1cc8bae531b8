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

    /// The same for work that leaves something behind, such as a file. The program waits for it,
    /// and for `done`, when it is to end; for work that only reads it does not.
    virtual void runToEnd(std::function<void()> work, std::function<void()> done) = 0;
};

} // namespace quillmark
