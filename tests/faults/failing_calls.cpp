// Preloaded into a program, counts its calls of five kinds and makes one of them fail, or that one
// and all that follow. Calls made inside the C library count too: allocations are interposed, and
// the system calls are trapped.
//
//   FAULT          KIND:NUMBER:ERROR:MODE, where KIND is one of the names below, NUMBER counts from
//                  1 (0: nothing fails), ERROR is an errno, or 0 for a transfer of only one byte,
//                  and MODE is "once" or "on"
//   FAULT_RECORD   a file of sizeof(Record) bytes that receives the Record

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <ucontext.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

// The C library's own names for what is interposed here.
// NOLINTBEGIN(bugprone-reserved-identifier, readability-identifier-naming)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
}
// NOLINTEND(bugprone-reserved-identifier, readability-identifier-naming)

namespace {

enum Kind { kAlloc, kOpen, kRead, kWrite, kClose, kKindCount };
constexpr const char* kKindNames[] = {"alloc", "open", "read", "write", "close"};

constexpr int kDescriptors = 64;
constexpr std::size_t kPathSize = 256;

struct Record {
    std::uint32_t calls[kKindCount];
    std::uint32_t failures;
    std::uint64_t transferred; // through the descriptor that the first failure was about, before it
    char path[kPathSize];      // of that descriptor's file
};

struct File {
    std::uint64_t transferred;
    char path[kPathSize];
};

Record* record = nullptr; // null until everything is prepared
unsigned failingKind = kKindCount;
unsigned failingNumber = 0;
int failingError = 0;
bool failsOn = false;
File files[kDescriptors];

// Lets a call of ours through. A program does not leave this value in the sixth argument.
constexpr std::uint32_t kLetThrough = 0x7e57ca11;

bool fails(Kind kind)
{
    if (record == nullptr) {
        return false;
    }
    const std::uint32_t number = ++record->calls[kind];
    if (kind != failingKind || failingNumber == 0 || number < failingNumber ||
        (number > failingNumber && !failsOn)) {
        return false;
    }
    ++record->failures;
    return true;
}

bool refusesMemory()
{
    if (!fails(kAlloc)) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

long call(long number, long a, long b, long c, long d)
{
    const long result = syscall(number, a, b, c, d, 0L, static_cast<long>(kLetThrough));
    return result == -1 ? -errno : result;
}

// A trapped call's arguments are integers, pointers among them.
template <typename T> T* pointer(long argument)
{
    return reinterpret_cast<T*>(argument); // NOLINT(performance-no-int-to-ptr)
}

File* fileOf(long descriptor)
{
    return descriptor >= 0 && descriptor < kDescriptors ? &files[descriptor] : nullptr;
}

void noteFailure(const char* path, std::uint64_t transferred)
{
    if (record->failures == 1) {
        std::strncpy(record->path, path, kPathSize - 1);
        record->transferred = transferred;
    }
}

long openFile(long number, const char* path, long a, long b, long c, long d)
{
    if (fails(kOpen)) {
        noteFailure(path, 0);
        return -failingError;
    }
    const long descriptor = call(number, a, b, c, d);
    if (File* const file = fileOf(descriptor)) {
        file->transferred = 0;
        std::strncpy(file->path, path, kPathSize - 1);
    }
    return descriptor;
}

long transferOneByte(long number, long descriptor, long data, long length)
{
    if (number != SYS_writev) {
        return call(number, descriptor, data, length > 0 ? 1 : 0, 0);
    }
    const auto* const pieces = pointer<const iovec>(data);
    for (long i = 0; i < length; ++i) {
        if (pieces[i].iov_len > 0) {
            return call(SYS_write, descriptor, reinterpret_cast<long>(pieces[i].iov_base), 1, 0);
        }
    }
    return 0;
}

long transfer(Kind kind, long number, long descriptor, long data, long length)
{
    File* const file = fileOf(descriptor);
    long result = 0;
    if (!fails(kind)) {
        result = call(number, descriptor, data, length, 0);
    } else {
        noteFailure(file != nullptr ? file->path : "", file != nullptr ? file->transferred : 0);
        result =
            failingError != 0 ? -failingError : transferOneByte(number, descriptor, data, length);
    }
    if (file != nullptr && result > 0) {
        file->transferred += static_cast<std::uint64_t>(result);
    }
    return result;
}

long closeFile(long descriptor)
{
    const bool failing = fails(kClose);
    if (failing) {
        const File* const file = fileOf(descriptor);
        noteFailure(file != nullptr ? file->path : "", 0);
    }
    // The descriptor is closed whatever close returns.
    const long result = call(SYS_close, descriptor, 0, 0, 0);
    return failing ? -failingError : result;
}

long answer(long number, long a, long b, long c, long d)
{
    switch (number) {
    case SYS_openat:
        return openFile(number, pointer<const char>(b), a, b, c, d);
#ifdef SYS_open
    case SYS_open:
        return openFile(number, pointer<const char>(a), a, b, c, d);
#endif
    case SYS_read:
        return transfer(kRead, number, a, b, c);
    case SYS_close:
        return closeFile(a);
    default:
        return transfer(kWrite, number, a, b, c);
    }
}

void onTrap(int, siginfo_t* info, void* context)
{
    const int savedErrno = errno;
    auto& machine = static_cast<ucontext_t*>(context)->uc_mcontext;
#if defined(__x86_64__)
    auto& r = machine.gregs;
    r[REG_RAX] = answer(info->si_syscall, r[REG_RDI], r[REG_RSI], r[REG_RDX], r[REG_R10]);
#elif defined(__aarch64__)
    auto& r = machine.regs;
    r[0] = static_cast<std::uint64_t>(answer(info->si_syscall, static_cast<long>(r[0]),
                                             static_cast<long>(r[1]), static_cast<long>(r[2]),
                                             static_cast<long>(r[3])));
#else
#error "say where this machine keeps the arguments and the result of a system call"
#endif
    errno = savedErrno;
}

bool trapCalls()
{
    struct sigaction action = {};
    action.sa_sigaction = onTrap;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    if (sigaction(SIGSYS, &action, nullptr) != 0) {
        return false;
    }
#ifdef SYS_open
    constexpr std::uint32_t kOldOpen = SYS_open;
#else
    constexpr std::uint32_t kOldOpen = SYS_openat;
#endif
    sock_filter filter[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_read, 6, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_write, 5, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_writev, 4, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 3, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kOldOpen, 2, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_close, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        // The low half of the sixth argument: both machines are little-endian.
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args) + 5UL * 8),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kLetThrough, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRAP),
    };
    const sock_fprog program = {sizeof filter / sizeof filter[0], filter};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

bool readSettings(const char* fault)
{
    char kind[16] = "";
    char mode[8] = "";
    if (std::sscanf(fault, "%15[a-z]:%u:%d:%7s", kind, &failingNumber, &failingError, mode) != 4) {
        return false;
    }
    for (unsigned i = 0; i < kKindCount; ++i) {
        if (std::strcmp(kKindNames[i], kind) == 0) {
            failingKind = i;
        }
    }
    failsOn = std::strcmp(mode, "on") == 0;
    return failingKind != kKindCount;
}

[[gnu::constructor]] void prepare()
{
    const char* const fault = std::getenv("FAULT");
    const char* const path = std::getenv("FAULT_RECORD");
    const int descriptor = path != nullptr ? open(path, O_RDWR | O_CLOEXEC) : -1;
    void* const memory =
        mmap(nullptr, sizeof(Record), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    close(descriptor);
    if (fault == nullptr || !readSettings(fault) || memory == MAP_FAILED || !trapCalls()) {
        std::fputs("failing_calls: cannot be set up\n", stderr);
        _exit(99);
    }
    record = new (memory) Record{};
}

} // namespace

extern "C" {

/// From here on no call fails or counts. The coverage build calls it before it writes its profile.
void endFailingCalls()
{
    record = nullptr;
}

void* malloc(std::size_t size)
{
    return refusesMemory() ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size)
{
    return refusesMemory() ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size)
{
    return refusesMemory() ? nullptr : __libc_realloc(block, size);
}
}
