#include "support/ShortReads.h"

#include <algorithm>
#include <cerrno>
#include <dlfcn.h>
#include <sys/types.h>
#include <unistd.h>

namespace quillmark::test {
namespace {

long mostBytes = 0; // zero for any number
bool interruptNext = false;

} // namespace

ShortReads::ShortReads(long most)
{
    mostBytes = most;
    interruptNext = true;
}

ShortReads::~ShortReads()
{
    mostBytes = 0;
}

} // namespace quillmark::test

extern "C" ssize_t pread(int descriptor, void* bytes, size_t size, off_t at)
{
    using namespace quillmark::test;
    if (mostBytes > 0) {
        interruptNext = !interruptNext;
        if (!interruptNext) {
            errno = EINTR;
            return -1;
        }
        size = std::min(size, static_cast<size_t>(mostBytes));
    }
    const auto genuine = reinterpret_cast<decltype(pread)*>(dlsym(RTLD_NEXT, "pread"));
    return genuine(descriptor, bytes, size, at);
}
