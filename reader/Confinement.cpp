#include "reader/Confinement.h"

#include "files/ProcessMemory.h"
#include "reader/Descriptors.h"
#include "reader/Limits.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace quillmark::reader {
namespace {

void limit(__rlimit_resource resource, std::uint64_t most)
{
    rlimit limits{};
    ::getrlimit(resource, &limits);
    if (limits.rlim_max == RLIM_INFINITY || limits.rlim_max > most) limits.rlim_max = most;
    limits.rlim_cur = limits.rlim_max;
    ::setrlimit(resource, &limits);
}

void limitResources()
{
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0);
    limit(RLIMIT_NPROC, 0);
    limit(RLIMIT_NOFILE, Limits::openFiles);
    if (!isSanitized) limit(RLIMIT_AS, Limits::addressSpace);
    // Where cores are handed to a program, the limit on their size does not hold.
    ::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
}

/// Landlock's interface (kernel documentation, userspace-api/landlock), of which the system's
/// headers may be older than its kernel.
namespace Landlock {

constexpr long createRuleset = 444; // system calls, the same on all machines
constexpr long restrictSelf = 446;
constexpr unsigned askVersion = 1;

struct Ruleset {
    std::uint64_t files{};
    std::uint64_t network{};
    std::uint64_t scopes{};
};

constexpr std::uint64_t execute = 1U << 0U;
constexpr std::uint64_t writeFile = 1U << 1U;
constexpr std::uint64_t removeAndMake = 0x1FF0U; // bits 4 to 12
constexpr std::uint64_t refer = 1U << 13U;
constexpr std::uint64_t truncate = 1U << 14U;
constexpr std::uint64_t controlDevice = 1U << 15U;
constexpr std::uint64_t bindAndConnect = 3;
constexpr std::uint64_t socketsAndSignals = 3;

/// What each version can deny in addition to the one before, and how much of the rules it knows.
struct Version {
    long number{};
    Ruleset denied;
    std::size_t size{};
};
constexpr std::array versions{
    Version{1, {execute | writeFile | removeAndMake, 0, 0}, sizeof(std::uint64_t)},
    Version{2, {refer, 0, 0}, sizeof(std::uint64_t)},
    Version{3, {truncate, 0, 0}, sizeof(std::uint64_t)},
    Version{4, {0, bindAndConnect, 0}, 2 * sizeof(std::uint64_t)},
    Version{5, {controlDevice, 0, 0}, 2 * sizeof(std::uint64_t)},
    Version{6, {0, 0, socketsAndSignals}, 3 * sizeof(std::uint64_t)},
};

} // namespace Landlock

enum class Rights {
    all,
    /// But for those for which Landlock looks at each folder above a file that is opened, also for
    /// reading: 2 microseconds a font, as much as three reads. The filter of system calls has no
    /// call that needs them.
    quick,
};

/// Denies all that Landlock knows but reading; without a rule nothing is excepted.
bool restrictFiles(Rights rights)
{
    using namespace Landlock;
    const long version = ::syscall(createRuleset, nullptr, 0, askVersion);
    Ruleset rules;
    std::size_t size = 0;
    for (const Version& known : versions) {
        if (known.number > version) break;
        rules.files |= known.denied.files;
        rules.network |= known.denied.network;
        rules.scopes |= known.denied.scopes;
        size = known.size;
    }
    if (size == 0) return false;
    if (rights == Rights::quick) rules.files &= ~(truncate | controlDevice);
    const long ruleset = ::syscall(createRuleset, &rules, size, 0);
    if (ruleset < 0) return false;
    const bool restricted = ::syscall(restrictSelf, ruleset, 0) == 0;
    ::close(static_cast<int>(ruleset));
    return restricted;
}

#if defined(__x86_64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_AARCH64;
#else
constexpr std::uint32_t architecture = 0; // without a filter
#endif

/// The system calls that reading takes, in the readers, their libraries and the C library.
constexpr auto allowedCalls = std::to_array<std::uint32_t>({
    // Files, in the order of their use.
    __NR_pread64, __NR_read, __NR_newfstatat, __NR_fstat, __NR_close, __NR_lseek, __NR_getdents64,
        __NR_statx, __NR_faccessat, __NR_faccessat2, __NR_readlinkat, __NR_preadv, __NR_readv,
        __NR_fadvise64, __NR_statfs, __NR_fstatfs, __NR_getcwd, __NR_fcntl,
        // Memory.
        __NR_brk, __NR_mmap, __NR_munmap, __NR_mremap, __NR_mprotect, __NR_madvise,
        // Time and waiting.
        __NR_ppoll, __NR_recvfrom, __NR_futex, __NR_clock_gettime, __NR_clock_getres,
        __NR_gettimeofday, __NR_clock_nanosleep, __NR_nanosleep, __NR_restart_syscall,
        __NR_sched_yield,
        // Signals and the end.
        __NR_rt_sigaction, __NR_rt_sigprocmask, __NR_rt_sigreturn, __NR_sigaltstack, __NR_exit,
        __NR_exit_group,
        // What libraries ask about the process and the machine.
        __NR_getppid, __NR_getpid, __NR_gettid, __NR_getuid, __NR_geteuid, __NR_getgid,
        __NR_getegid, __NR_getrusage, __NR_getrandom, __NR_sched_getaffinity, __NR_sysinfo,
        __NR_uname,
#if defined(__x86_64__)
        // The older forms of some of these.
        __NR_poll, __NR_stat, __NR_lstat, __NR_access, __NR_readlink, __NR_time,
#endif
});

/// A filter program, which sees a call's number and arguments and says what becomes of it.
class FilterProgram {
public:
    FilterProgram()
    {
        load(offsetof(seccomp_data, arch));
        // Calls of another architecture have other numbers.
        add({BPF_JMP | BPF_JEQ | BPF_K, 1, 0, architecture});
        end(SECCOMP_RET_KILL_PROCESS);
        load(offsetof(seccomp_data, nr));
    }

    void allow(std::uint32_t call) { m_allowed.push_back(call); }
    /// Allows `call` if the lower half of an argument is `value` in the bits of `mask`.
    void allowIf(std::uint32_t call, unsigned argument, std::uint32_t mask, std::uint32_t value)
    {
        constexpr std::uint8_t body = 5; // the instructions behind the first one
        add({BPF_JMP | BPF_JEQ | BPF_K, 0, body, call});
        // The machines that we know have the lower half first.
        load(static_cast<std::uint32_t>(offsetof(seccomp_data, args) + sizeof(std::uint64_t) * argument));
        add({BPF_ALU | BPF_AND | BPF_K, 0, 0, mask});
        add({BPF_JMP | BPF_JEQ | BPF_K, 0, 1, value});
        end(SECCOMP_RET_ALLOW);
        end(denied);
    }
    [[nodiscard]] bool apply()
    {
        // One answer for all: the kernel translates the program each time that a process starts, and
        // tries it with every number that there is.
        for (std::size_t left = m_allowed.size(); const std::uint32_t call : m_allowed) {
            add({BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint8_t>(left), 0, call});
            --left;
        }
        end(denied);
        end(SECCOMP_RET_ALLOW);
        const sock_fprog program{static_cast<unsigned short>(m_code.size()), m_code.data()};
        return ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0) == 0;
    }

private:
    static constexpr std::uint32_t denied = SECCOMP_RET_ERRNO | EPERM;

    void add(sock_filter instruction) { m_code.push_back(instruction); }
    void load(std::uint32_t offset) { add({BPF_LD | BPF_W | BPF_ABS, 0, 0, offset}); }
    void end(std::uint32_t action) { add({BPF_RET | BPF_K, 0, 0, action}); }
    std::vector<sock_filter> m_code;
    std::vector<std::uint32_t> m_allowed; // fewer than 256, as far as such a jump can go
};

/// Whether a filter can be had, in this build and of this kernel.
bool canFilterSystemCalls()
{
    // The sanitizers use calls of their own, most of all when they have something to report.
    if (architecture == 0 || isSanitized) return false;
    // Asked for a filter at no address, a kernel that knows filters complains of the address.
    return ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, nullptr, 0, 0) != 0 && errno == EFAULT;
}

bool filterSystemCalls(int channel)
{
    constexpr std::uint32_t all = 0xFFFFFFFF;
    constexpr std::uint32_t changing =
        O_ACCMODE | O_CREAT | O_TRUNC | O_APPEND | (O_TMPFILE & ~O_DIRECTORY);
    FilterProgram filter;
    // Most calls are among the first ones.
    filter.allowIf(__NR_openat, 2, changing, O_RDONLY);
    for (const std::uint32_t call : allowedCalls)
        filter.allow(call);
#if defined(__x86_64__)
    filter.allowIf(__NR_open, 1, changing, O_RDONLY);
#endif
    for (const std::uint32_t call :
         std::to_array<std::uint32_t>({__NR_write, __NR_writev, __NR_sendto}))
        filter.allowIf(call, 0, all, static_cast<std::uint32_t>(channel));
    // To end itself, as the C library does when it finds its memory damaged.
    filter.allowIf(__NR_tgkill, 0, all, static_cast<std::uint32_t>(::getpid()));
    return filter.apply();
}

} // namespace

Confinement confine(int channel)
{
    limitResources();
    Confinement confinement;
    if (canFilterSystemCalls()) {
        confinement.files = restrictFiles(Rights::quick);
        confinement.systemCalls = filterSystemCalls(channel);
    }
    // Twice is no harm: what either denies is denied.
    if (!confinement.systemCalls) confinement.files = restrictFiles(Rights::all);
    return confinement;
}

} // namespace quillmark::reader
