#include "support/ShortReads.h"

#include "support/Portions.h"

#include <cerrno>
#include <dlfcn.h>
#include <sys/types.h>
#include <unistd.h>

namespace quillmark::test {
namespace {

Portions portions;
int failure = 0; // the error of each read; zero for none

} // namespace

ShortReads::ShortReads(long most)
{
    portions = {.most = most};
}

ShortReads::~ShortReads()
{
    portions = {};
}

FailingReads::FailingReads(int error)
{
    failure = error;
}

FailingReads::~FailingReads()
{
    failure = 0;
}

} // namespace quillmark::test

extern "C" ssize_t pread(int descriptor, void* bytes, size_t size, off_t at)
{
    if (quillmark::test::failure != 0) {
        errno = quillmark::test::failure;
        return -1;
    }
    if (quillmark::test::portions.interrupt(size)) return -1;
    const auto genuine = reinterpret_cast<decltype(pread)*>(dlsym(RTLD_NEXT, "pread"));
    return genuine(descriptor, bytes, size, at);
}
