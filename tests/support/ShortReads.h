// Files that are read in small pieces, as from a network, or cannot be read. The test program's own
// definition of the system call stands before that of the C library; otherwise it passes everything
// on.
#pragma once

namespace quillmark::test {

/// While it lives, a pread takes no more than `most` bytes, and each is interrupted by a signal
/// once before. One at a time.
class ShortReads {
public:
    explicit ShortReads(long most);
    ~ShortReads();
    ShortReads(const ShortReads&) = delete;
    ShortReads& operator=(const ShortReads&) = delete;
};

/// While it lives, each pread fails with `error`. One at a time.
class FailingReads {
public:
    explicit FailingReads(int error);
    ~FailingReads();
    FailingReads(const FailingReads&) = delete;
    FailingReads& operator=(const FailingReads&) = delete;
};

} // namespace quillmark::test
