#include "files/FaultyCalls.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <dlfcn.h>
#include <optional>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace quillmark::test {
namespace {

struct Order {
    Call call{};
    int error{};
    int passed{};
};

std::optional<Order> order;
long mostBytes = 0; // zero for any number
bool interruptNext = false;

/// Whether this call is to fail; sets errno then.
bool fails(Call call)
{
    if (!order || order->call != call || order->passed-- > 0) return false;
    order->passed = 0;
    errno = order->error;
    return true;
}

/// The C library's function of this name.
template <typename Function>
Function* genuine(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

FaultyCall::FaultyCall(Call call, int error, int passed)
{
    order = {call, error, passed};
}

FaultyCall::~FaultyCall()
{
    order.reset();
}

ShortWrites::ShortWrites(long most)
{
    mostBytes = most;
    interruptNext = true;
}

ShortWrites::~ShortWrites()
{
    mostBytes = 0;
    interruptNext = false;
}

} // namespace quillmark::test

using quillmark::test::Call;

extern "C" {

ssize_t write(int descriptor, const void* bytes, size_t size)
{
    using namespace quillmark::test;
    if (fails(Call::write)) return -1;
    if (mostBytes > 0) {
        interruptNext = !interruptNext;
        if (!interruptNext) {
            errno = EINTR;
            return -1;
        }
        size = std::min(size, static_cast<size_t>(mostBytes));
    }
    return genuine<decltype(write)>("write")(descriptor, bytes, size);
}

int fsync(int descriptor)
{
    using namespace quillmark::test;
    return fails(Call::fsync) ? -1 : genuine<decltype(fsync)>("fsync")(descriptor);
}

int rename(const char* from, const char* to) noexcept
{
    using namespace quillmark::test;
    return fails(Call::rename) ? -1 : genuine<int(const char*, const char*)>("rename")(from, to);
}

int fchown(int descriptor, uid_t user, gid_t group) noexcept
{
    using namespace quillmark::test;
    return fails(Call::fchown) ? -1
                               : genuine<int(int, uid_t, gid_t)>("fchown")(descriptor, user, group);
}

int fchmod(int descriptor, mode_t mode) noexcept
{
    using namespace quillmark::test;
    return fails(Call::fchmod) ? -1 : genuine<int(int, mode_t)>("fchmod")(descriptor, mode);
}

} // extern "C"
