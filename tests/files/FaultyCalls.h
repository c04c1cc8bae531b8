// System calls that fail on demand. The test program's own definitions of some calls stand before
// those of the C library; without an order they pass everything on.
#pragma once

namespace quillmark::test {

enum class Call { write, fsync, rename, fchown, fchmod };

/// While it lives, the call after `passed` successful ones of its kind fails with `error`, and so
/// do all that follow. One at a time.
class FaultyCall {
public:
    FaultyCall(Call call, int error, int passed = 0);
    ~FaultyCall();
    FaultyCall(const FaultyCall&) = delete;
    FaultyCall& operator=(const FaultyCall&) = delete;
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
