#include "support/ShortReads.h"

#include "support/Portions.h"

#include <dlfcn.h>
#include <sys/types.h>
#include <unistd.h>

namespace quillmark::test {
namespace {

Portions portions;

} // namespace

ShortReads::ShortReads(long most)
{
    portions = {.most = most};
}

ShortReads::~ShortReads()
{
    portions = {};
}

} // namespace quillmark::test

extern "C" ssize_t pread(int descriptor, void* bytes, size_t size, off_t at)
{
    if (quillmark::test::portions.interrupt(size)) return -1;
    const auto genuine = reinterpret_cast<decltype(pread)*>(dlsym(RTLD_NEXT, "pread"));
    return genuine(descriptor, bytes, size, at);
}
