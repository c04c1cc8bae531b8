// System calls that fail on demand, and a record of them. A program that uses any of this has its
// own definitions of some calls, which stand before those of the C library; without an order they
// pass everything on. For programs with one thread.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillmark::test {

/// The calls that saving makes, by what they do: several of the system's can be of one kind.
enum class Call {
    open,
    read,
    write,
    fsync,
    close,
    rename,
    link,
    unlink,
    mkdir,
    stat,
    readlink,
    resolve, // of a whole path
    lock,
    fchown,
    fchmod,
};

[[nodiscard]] const char* nameOf(Call call);

/// While it lives, the call after `passed` successful ones of its kind fails with `error`, and so
/// do all that follow. One at a time.
class FaultyCall {
public:
    FaultyCall(Call call, int error, int passed = 0);
    ~FaultyCall();
    FaultyCall(const FaultyCall&) = delete;
    FaultyCall& operator=(const FaultyCall&) = delete;
};

/// A call that was made.
struct MadeCall {
    Call call{};
    int descriptor{-1}; // that it was about; the folder's when a name was given with one
    std::string name;   // that it was about, if any
    bool failed{};      // on demand
};

/// While it lives, all calls are recorded; one of them can fail. One at a time.
class WatchedCalls {
public:
    enum class Lasting {
        once,
        onwards, // and with it all of its kind that follow
    };

    WatchedCalls();
    /// The call after `passed` others of any kind fails with `error`.
    WatchedCalls(std::size_t passed, int error, Lasting lasting);
    ~WatchedCalls();
    WatchedCalls(const WatchedCalls&) = delete;
    WatchedCalls& operator=(const WatchedCalls&) = delete;

    /// So far.
    [[nodiscard]] static const std::vector<MadeCall>& made();
};

/// While it lives, a write takes no more than `most` bytes, and each is interrupted by a signal
/// once before.
class ShortWrites {
public:
    explicit ShortWrites(long most);
    ~ShortWrites();
    ShortWrites(const ShortWrites&) = delete;
    ShortWrites& operator=(const ShortWrites&) = delete;
};

} // namespace quillmark::test
