#include "support/FaultyCalls.h"

#include "support/Portions.h"

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <optional>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>
#include <utility>

namespace quillmark::test {
namespace {

constexpr auto names = std::to_array<const char*>({
    "open",
    "read",
    "write",
    "fsync",
    "close",
    "rename",
    "link",
    "unlink",
    "mkdir",
    "stat",
    "readlink",
    "resolve",
    "lock",
    "fchown",
    "fchmod",
});
static_assert(names.size() == static_cast<std::size_t>(Call::fchmod) + 1);

struct Order {
    Call call{};
    int error{};
    int passed{};
};

struct AnyOrder {
    std::size_t passed{};
    int error{};
    WatchedCalls::Lasting lasting{};
    std::optional<Call> begun{}; // the kind of the call that was the first to fail
};

std::optional<Order> order;
std::optional<AnyOrder> anyOrder;
bool isWatched = false;
std::vector<MadeCall> record;
Portions portions;

bool isOrdered(Call call)
{
    if (order && order->call == call && order->passed-- <= 0) {
        order->passed = 0;
        errno = order->error;
        return true;
    }
    if (!anyOrder) return false;
    if (anyOrder->begun) {
        if (anyOrder->lasting == WatchedCalls::Lasting::once || anyOrder->begun != call)
            return false;
    } else if (anyOrder->passed > 0) {
        --anyOrder->passed;
        return false;
    }
    anyOrder->begun = call;
    errno = anyOrder->error;
    return true;
}

/// Whether this call is to fail; sets errno then.
bool fails(Call call, int descriptor, const char* name = "")
{
    const bool isToFail = isOrdered(call);
    if (isWatched) {
        const int error = errno;
        record.push_back({call, descriptor, name, isToFail});
        errno = error;
    }
    return isToFail;
}

/// The C library's function of this name.
template <typename Function>
Function* genuine(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// The mode behind the flags of a call that opens a file, when it has one.
mode_t modeOf(int flags, va_list& arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) == 0 ? 0 : va_arg(arguments, mode_t);
}

} // namespace

const char* nameOf(Call call)
{
    return names[static_cast<std::size_t>(call)];
}

FaultyCall::FaultyCall(Call call, int error, int passed)
{
    order = {call, error, passed};
}

FaultyCall::~FaultyCall()
{
    order.reset();
}

WatchedCalls::WatchedCalls()
{
    record.clear();
    isWatched = true;
}

WatchedCalls::WatchedCalls(std::size_t passed, int error, Lasting lasting) : WatchedCalls()
{
    anyOrder = {passed, error, lasting};
}

WatchedCalls::~WatchedCalls()
{
    anyOrder.reset();
    isWatched = false;
}

const std::vector<MadeCall>& WatchedCalls::made()
{
    return record;
}

ShortWrites::ShortWrites(long most)
{
    portions = {.most = most};
}

ShortWrites::~ShortWrites()
{
    portions = {};
}

} // namespace quillmark::test

using quillmark::test::Call;
using quillmark::test::fails;
using quillmark::test::genuine;

extern "C" {

int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = quillmark::test::modeOf(flags, arguments);
    va_end(arguments);
    if (fails(Call::open, AT_FDCWD, path)) return -1;
    return genuine<int(const char*, int, ...)>("open")(path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = quillmark::test::modeOf(flags, arguments);
    va_end(arguments);
    if (fails(Call::open, folder, path)) return -1;
    return genuine<int(int, const char*, int, ...)>("openat")(folder, path, flags, mode);
}

ssize_t read(int descriptor, void* bytes, size_t size)
{
    if (fails(Call::read, descriptor)) return -1;
    return genuine<decltype(read)>("read")(descriptor, bytes, size);
}

ssize_t write(int descriptor, const void* bytes, size_t size)
{
    if (fails(Call::write, descriptor)) return -1;
    if (quillmark::test::portions.interrupt(size)) return -1;
    return genuine<decltype(write)>("write")(descriptor, bytes, size);
}

int fsync(int descriptor)
{
    if (fails(Call::fsync, descriptor)) return -1;
    return genuine<decltype(fsync)>("fsync")(descriptor);
}

/// One that is to fail closes all the same, as Linux does.
int close(int descriptor)
{
    const bool isToFail = fails(Call::close, descriptor);
    const int error = errno;
    const int result = genuine<decltype(close)>("close")(descriptor);
    if (!isToFail) return result;
    errno = error;
    return -1;
}

int renameat(int from, const char* name, int to, const char* newName) noexcept
{
    if (fails(Call::rename, to, newName)) return -1;
    return genuine<int(int, const char*, int, const char*)>("renameat")(from, name, to, newName);
}

int renameat2(int from, const char* name, int to, const char* newName, unsigned flags) noexcept
{
    if (fails(Call::rename, to, newName)) return -1;
    return genuine<int(int, const char*, int, const char*, unsigned)>("renameat2")(from, name, to,
                                                                                   newName, flags);
}

int link(const char* name, const char* newName) noexcept
{
    if (fails(Call::link, AT_FDCWD, newName)) return -1;
    return genuine<int(const char*, const char*)>("link")(name, newName);
}

int unlinkat(int folder, const char* name, int flags) noexcept
{
    if (fails(Call::unlink, folder, name)) return -1;
    return genuine<int(int, const char*, int)>("unlinkat")(folder, name, flags);
}

int mkdir(const char* path, mode_t mode) noexcept
{
    if (fails(Call::mkdir, AT_FDCWD, path)) return -1;
    return genuine<int(const char*, mode_t)>("mkdir")(path, mode);
}

int stat(const char* path, struct stat* status) noexcept
{
    if (fails(Call::stat, AT_FDCWD, path)) return -1;
    return genuine<int(const char*, struct stat*)>("stat")(path, status);
}

int lstat(const char* path, struct stat* status) noexcept
{
    if (fails(Call::stat, AT_FDCWD, path)) return -1;
    return genuine<int(const char*, struct stat*)>("lstat")(path, status);
}

int fstat(int descriptor, struct stat* status) noexcept
{
    if (fails(Call::stat, descriptor)) return -1;
    return genuine<int(int, struct stat*)>("fstat")(descriptor, status);
}

int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept
{
    if (fails(Call::stat, folder, path)) return -1;
    return genuine<int(int, const char*, struct stat*, int)>("fstatat")(folder, path, status,
                                                                        flags);
}

ssize_t readlink(const char* path, char* target, size_t size) noexcept
{
    if (fails(Call::readlink, AT_FDCWD, path)) return -1;
    return genuine<ssize_t(const char*, char*, size_t)>("readlink")(path, target, size);
}

char* realpath(const char* path, char* resolved) noexcept
{
    if (fails(Call::resolve, AT_FDCWD, path)) return nullptr;
    return genuine<char*(const char*, char*)>("realpath")(path, resolved);
}

int flock(int descriptor, int operation) noexcept
{
    if (fails(Call::lock, descriptor)) return -1;
    return genuine<int(int, int)>("flock")(descriptor, operation);
}

int fchown(int descriptor, uid_t user, gid_t group) noexcept
{
    if (fails(Call::fchown, descriptor)) return -1;
    return genuine<int(int, uid_t, gid_t)>("fchown")(descriptor, user, group);
}

int fchmod(int descriptor, mode_t mode) noexcept
{
    if (fails(Call::fchmod, descriptor)) return -1;
    return genuine<int(int, mode_t)>("fchmod")(descriptor, mode);
}

} // extern "C"
