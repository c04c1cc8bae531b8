#include "library/Parallel.h"

#include "files/ProcessMemory.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include <sched.h>

namespace quillmark {
namespace {

/// Indices that a thread takes at once: few enough to share a short list evenly, enough that the
/// threads do not meet at the counter.
constexpr std::size_t chunkSize = 16;
/// Bytes that are many calls to the system when they come little by little.
constexpr std::size_t worthReserving = std::size_t{512} << 10U;

} // namespace

std::size_t coreCount()
{
    cpu_set_t cores;
    CPU_ZERO(&cores);
    if (::sched_getaffinity(0, sizeof cores, &cores) == 0)
        return std::max<std::size_t>(1, static_cast<std::size_t>(CPU_COUNT(&cores)));
    return std::max(1U, std::thread::hardware_concurrency());
}

void forEachIndex(std::size_t count, const std::function<void(std::size_t)>& work, std::size_t kept)
{
    std::atomic<std::size_t> next{0};
    std::mutex failureLock;
    std::exception_ptr failure;
    const auto run = [&] {
        if (kept * count >= worthReserving) reserveMemory(kept * count);
        try {
            for (;;) {
                const std::size_t begin = next.fetch_add(chunkSize);
                if (begin >= count) return;
                const std::size_t end = std::min(begin + chunkSize, count);
                for (std::size_t i = begin; i < end; ++i)
                    work(i);
            }
        } catch (...) {
            const std::lock_guard lock(failureLock);
            if (!failure) failure = std::current_exception();
            next = count;
        }
    };

    std::vector<std::jthread> threads;
    const std::size_t useful = std::min(coreCount(), (count + chunkSize - 1) / chunkSize);
    try {
        for (std::size_t i = 1; i < useful; ++i)
            threads.emplace_back(run);
    } catch (const std::system_error&) {
        // The system has no more threads to give; those that there are do the work.
    }
    run();
    threads.clear(); // joins
    if (failure) std::rethrow_exception(failure);
}

} // namespace quillmark
