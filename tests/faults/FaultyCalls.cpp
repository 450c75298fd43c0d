// A library to be preloaded (ld.so(8), LD_PRELOAD) that makes an allocation or a system call of a
// program fail, come short, or be the program's last. It counts from the beginning of main() to its
// end; what a program does before and after is not its own work.
//
// TKPPDUPDATING_FAULT says which:
//
//   allocation N        the Nth allocation fails
//   allocations N       that one and all after it fail
//   call N errno E      the Nth system call fails with the error E
//   call N short        it transfers half of what it could
//   call N kill         the program is killed instead of it
//   call N torn         it transfers half of what it could, and the program is killed
//
// At the end of main(), the number of allocations and the names of the calls, in their order, are
// written to the file that TKPPDUPDATING_FAULT_REPORT names, if it does. A crash names the shared
// objects on its stack on standard error, each on a line: "fault: crash in OBJECT+OFFSET".
//
// Functions of the C library are defined here by their names for the linker alone, so that no
// declaration of a system header is contradicted. No C++ library is needed, and none is brought
// into the program.
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" {
// The C library's own allocation, which dlsym(3) could not be asked for: it allocates.
void* __libc_malloc(std::size_t size);                           // NOLINT
void* __libc_calloc(std::size_t count, std::size_t size);        // NOLINT
void* __libc_realloc(void* block, std::size_t size);             // NOLINT
void* __libc_memalign(std::size_t alignment, std::size_t size);  // NOLINT
}

namespace {

enum class Kind { none, allocation, allocations, error, halved, kill, torn };

struct Plan {
    Kind kind = Kind::none;
    long place = 0;
    int error = 0;
};

constexpr std::size_t kMostCalls = 1U << 16U;

Plan plan;                                        // NOLINT
std::atomic<bool> isCounting{false};              // NOLINT
std::atomic<long> allocationCount{0};             // NOLINT
std::atomic<long> callCount{0};                   // NOLINT
std::array<const char*, kMostCalls> callNames{};  // NOLINT

void readPlan() {
    const char* text = std::getenv("TKPPDUPDATING_FAULT");
    std::array<char, 16> what{};
    std::array<char, 16> how{};
    if (!text || std::sscanf(text, "%15s %ld %15s %d", what.data(), &plan.place, how.data(),
                             &plan.error) < 2) {
        return;
    }
    const auto is = [](const auto& word, const char* other) {
        return std::strcmp(word.data(), other) == 0;
    };
    plan.kind = is(what, "allocation")    ? Kind::allocation
                : is(what, "allocations") ? Kind::allocations
                : is(how, "errno")        ? Kind::error
                : is(how, "short")        ? Kind::halved
                : is(how, "kill")         ? Kind::kill
                : is(how, "torn")         ? Kind::torn
                                          : Kind::none;
}

bool failsAllocation() {
    if (!isCounting) {
        return false;
    }
    const long place = ++allocationCount;
    const bool fails = (plan.kind == Kind::allocation && place == plan.place) ||
                       (plan.kind == Kind::allocations && place >= plan.place);
    if (fails) {
        errno = ENOMEM;
    }
    return fails;
}

void die() {
    ::syscall(SYS_kill, ::syscall(SYS_getpid), SIGKILL);
}

/// What is to become of the call that is made: as it is asked for, or something else.
Kind faultOfCall(const char* name) {
    if (!isCounting) {
        return Kind::none;
    }
    const long place = ++callCount;
    if (static_cast<std::size_t>(place) <= kMostCalls) {
        callNames[static_cast<std::size_t>(place) - 1] = name;
    }
    if (place != plan.place || plan.kind < Kind::error) {
        return Kind::none;
    }
    if (plan.kind == Kind::kill) {
        die();
    }
    if (plan.kind == Kind::error) {
        errno = plan.error;
    }
    return plan.kind;
}

/// How many bytes are to be transferred.
std::size_t sizeUnder(Kind fault, std::size_t size) {
    return (fault == Kind::halved || fault == Kind::torn) && size > 1 ? size / 2 : size;
}

ssize_t transferred(Kind fault, ssize_t count) {
    if (fault == Kind::torn) {
        die();
    }
    return count;
}

template <typename Function>
Function* nextFunction(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

void writeText(long descriptor, const char* text) {
    (void)::syscall(SYS_write, descriptor, text, std::strlen(text));
}

void report() {
    const char* path = std::getenv("TKPPDUPDATING_FAULT_REPORT");
    const long file =
        path ? ::syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_CREAT | O_TRUNC, 0600) : -1;
    if (file < 0) {
        return;
    }
    std::array<char, 64> line{};
    (void)std::snprintf(line.data(), line.size(), "%ld\n", allocationCount.load());
    writeText(file, line.data());
    for (long place = 0; place < callCount && place < static_cast<long>(kMostCalls); ++place) {
        writeText(file, callNames[static_cast<std::size_t>(place)]);
        writeText(file, "\n");
    }
    (void)::syscall(SYS_close, file);
}

void tellCrash(int /*signal*/) {
    isCounting = false;
    std::array<void*, 48> frames{};
    const int count = ::backtrace(frames.data(), static_cast<int>(frames.size()));
    for (int place = 1; place < count; ++place) {
        Dl_info where{};
        void* const frame = frames[static_cast<std::size_t>(place)];
        if (::dladdr(frame, &where) == 0 || !where.dli_fname) {
            continue;
        }
        const char* const slash = std::strrchr(where.dli_fname, '/');
        std::array<char, 256> line{};
        (void)std::snprintf(line.data(), line.size(), "fault: crash in %s+%#lx %s\n",
                            slash ? slash + 1 : where.dli_fname,
                            static_cast<unsigned long>(static_cast<char*>(frame) -
                                                       static_cast<char*>(where.dli_fbase)),
                            where.dli_sname ? where.dli_sname : "");
        writeText(STDERR_FILENO, line.data());
    }
}

void tellCrashes() {
    std::array<void*, 1> warmUp{};
    (void)::backtrace(warmUp.data(), 1);  // The first one allocates.
    struct sigaction action {};
    action.sa_handler = tellCrash;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGSEGV, SIGBUS, SIGABRT}) {
        (void)::sigaction(signal, &action, nullptr);
    }
}

using Main = int(int, char**, char**);
Main* programMain = nullptr;  // NOLINT

int countingMain(int argumentCount, char** arguments, char** environment) {
    isCounting = true;
    const int status = programMain(argumentCount, arguments, environment);
    isCounting = false;
    report();
    return status;
}

}  // namespace

using StartMain = int(Main*, int, char**, void (*)(), void (*)(), void (*)(), void*);
extern "C" int faultyStartMain(Main* main, int argumentCount, char** arguments, void (*init)(),
                               void (*finish)(), void (*finishLoader)(),
                               void* stackEnd) __asm__("__libc_start_main");
extern "C" int faultyStartMain(Main* main, int argumentCount, char** arguments, void (*init)(),
                               void (*finish)(), void (*finishLoader)(), void* stackEnd) {
    programMain = main;
    readPlan();
    tellCrashes();
    // What the program starts is a program of its own.
    ::unsetenv("LD_PRELOAD");
    return nextFunction<StartMain>("__libc_start_main")(countingMain, argumentCount, arguments,
                                                        init, finish, finishLoader, stackEnd);
}

extern "C" void* faultyMalloc(std::size_t size) __asm__("malloc");
extern "C" void* faultyMalloc(std::size_t size) {
    return failsAllocation() ? nullptr : __libc_malloc(size);
}

extern "C" void* faultyCalloc(std::size_t count, std::size_t size) __asm__("calloc");
extern "C" void* faultyCalloc(std::size_t count, std::size_t size) {
    return failsAllocation() ? nullptr : __libc_calloc(count, size);
}

extern "C" void* faultyRealloc(void* block, std::size_t size) __asm__("realloc");
extern "C" void* faultyRealloc(void* block, std::size_t size) {
    return failsAllocation() ? nullptr : __libc_realloc(block, size);
}

extern "C" void* faultyAlignedAlloc(std::size_t alignment,
                                    std::size_t size) __asm__("aligned_alloc");
extern "C" void* faultyAlignedAlloc(std::size_t alignment, std::size_t size) {
    return failsAllocation() ? nullptr : __libc_memalign(alignment, size);
}

extern "C" int faultyPosixMemalign(void** block, std::size_t alignment,
                                   std::size_t size) __asm__("posix_memalign");
extern "C" int faultyPosixMemalign(void** block, std::size_t alignment, std::size_t size) {
    *block = failsAllocation() ? nullptr : __libc_memalign(alignment, size);
    return *block ? 0 : ENOMEM;
}

/// A function of the C library that gives `failed` when it cannot do what it is asked to.
#define FALLIBLE(Type, name, failed, parameters, arguments)                                    \
    extern "C" Type faulty_##name parameters __asm__(#name);                                   \
    extern "C" Type faulty_##name parameters {                                                 \
        static auto* const next = nextFunction<Type parameters>(#name);                        \
        return faultOfCall(#name) == Kind::error ? static_cast<Type>(failed) : next arguments; \
    }

/// One that transfers bytes, and may transfer less than it is asked to.
#define TRANSFER(name, parameters, arguments)                                  \
    extern "C" ssize_t faulty_##name parameters __asm__(#name);                \
    extern "C" ssize_t faulty_##name parameters {                              \
        static auto* const next = nextFunction<ssize_t parameters>(#name);     \
        const Kind fault = faultOfCall(#name);                                 \
        size = sizeUnder(fault, size);                                         \
        return fault == Kind::error ? -1 : transferred(fault, next arguments); \
    }

// NOLINTBEGIN(bugprone-macro-parentheses): parameters and arguments bring theirs.
/// One with an argument more where there is a need for it, which an integer register holds.
#define WITH_OPTIONAL_ARGUMENT(name, parameters, arguments)             \
    extern "C" int faulty_##name parameters __asm__(#name);             \
    extern "C" int faulty_##name parameters {                           \
        static auto* const next = nextFunction<int parameters>(#name);  \
        return faultOfCall(#name) == Kind::error ? -1 : next arguments; \
    }
// NOLINTEND(bugprone-macro-parentheses)

// NOLINTBEGIN
TRANSFER(read, (int file, void* bytes, std::size_t size), (file, bytes, size))
TRANSFER(pread, (int file, void* bytes, std::size_t size, off_t at), (file, bytes, size, at))
TRANSFER(pread64, (int file, void* bytes, std::size_t size, off_t at), (file, bytes, size, at))
TRANSFER(write, (int file, const void* bytes, std::size_t size), (file, bytes, size))
TRANSFER(send, (int file, const void* bytes, std::size_t size, int flags),
         (file, bytes, size, flags))
TRANSFER(recv, (int file, void* bytes, std::size_t size, int flags), (file, bytes, size, flags))
TRANSFER(__recv_chk, (int file, void* bytes, std::size_t size, std::size_t room, int flags),
         (file, bytes, size, room, flags))

WITH_OPTIONAL_ARGUMENT(open, (const char* path, int flags, long mode), (path, flags, mode))
WITH_OPTIONAL_ARGUMENT(open64, (const char* path, int flags, long mode), (path, flags, mode))
WITH_OPTIONAL_ARGUMENT(openat, (int folder, const char* path, int flags, long mode),
                       (folder, path, flags, mode))
WITH_OPTIONAL_ARGUMENT(openat64, (int folder, const char* path, int flags, long mode),
                       (folder, path, flags, mode))
WITH_OPTIONAL_ARGUMENT(fcntl, (int file, int command, long value), (file, command, value))
WITH_OPTIONAL_ARGUMENT(fcntl64, (int file, int command, long value), (file, command, value))

FALLIBLE(int, ftruncate, -1, (int file, off_t size), (file, size))
FALLIBLE(int, ftruncate64, -1, (int file, off_t size), (file, size))
FALLIBLE(int, fchown, -1, (int file, uid_t user, gid_t group), (file, user, group))
FALLIBLE(int, fchmod, -1, (int file, mode_t mode), (file, mode))
FALLIBLE(int, flock, -1, (int file, int operation), (file, operation))
FALLIBLE(int, mkdir, -1, (const char* path, mode_t mode), (path, mode))
FALLIBLE(int, unlink, -1, (const char* path), (path))
FALLIBLE(int, unlinkat, -1, (int folder, const char* path, int flags), (folder, path, flags))
FALLIBLE(int, rename, -1, (const char* from, const char* to), (from, to))
FALLIBLE(int, renameat, -1, (int folder, const char* from, int otherFolder, const char* to),
         (folder, from, otherFolder, to))
FALLIBLE(int, renameat2, -1,
         (int folder, const char* from, int otherFolder, const char* to, unsigned flags),
         (folder, from, otherFolder, to, flags))
FALLIBLE(int, linkat, -1,
         (int folder, const char* from, int otherFolder, const char* to, int flags),
         (folder, from, otherFolder, to, flags))
FALLIBLE(int, access, -1, (const char* path, int mode), (path, mode))
FALLIBLE(int, faccessat, -1, (int folder, const char* path, int mode, int flags),
         (folder, path, mode, flags))
FALLIBLE(int, stat, -1, (const char* path, struct stat* status), (path, status))
FALLIBLE(int, stat64, -1, (const char* path, struct stat* status), (path, status))
FALLIBLE(int, lstat, -1, (const char* path, struct stat* status), (path, status))
FALLIBLE(int, lstat64, -1, (const char* path, struct stat* status), (path, status))
FALLIBLE(int, fstat, -1, (int file, struct stat* status), (file, status))
FALLIBLE(int, fstat64, -1, (int file, struct stat* status), (file, status))
FALLIBLE(int, fstatat, -1, (int folder, const char* path, struct stat* status, int flags),
         (folder, path, status, flags))
FALLIBLE(int, fstatat64, -1, (int folder, const char* path, struct stat* status, int flags),
         (folder, path, status, flags))
FALLIBLE(int, fstatfs, -1, (int file, struct statfs* status), (file, status))
FALLIBLE(int, fstatfs64, -1, (int file, struct statfs* status), (file, status))
FALLIBLE(ssize_t, readlink, -1, (const char* path, char* text, std::size_t size),
         (path, text, size))
FALLIBLE(ssize_t, readlinkat, -1, (int folder, const char* path, char* text, std::size_t size),
         (folder, path, text, size))
FALLIBLE(ssize_t, flistxattr, -1, (int file, char* names, std::size_t size), (file, names, size))
FALLIBLE(ssize_t, fgetxattr, -1, (int file, const char* name, void* value, std::size_t size),
         (file, name, value, size))
FALLIBLE(int, fsetxattr, -1,
         (int file, const char* name, const void* value, std::size_t size, int flags),
         (file, name, value, size, flags))
FALLIBLE(int, fremovexattr, -1, (int file, const char* name), (file, name))
FALLIBLE(void*, fdopendir, 0, (int file), (file))
FALLIBLE(void*, readdir, 0, (void* folder), (folder))
FALLIBLE(void*, readdir64, 0, (void* folder), (folder))
FALLIBLE(void*, fopen, 0, (const char* path, const char* mode), (path, mode))
FALLIBLE(void*, fopen64, 0, (const char* path, const char* mode), (path, mode))
FALLIBLE(int, socket, -1, (int domain, int type, int protocol), (domain, type, protocol))
FALLIBLE(int, connect, -1, (int file, const struct sockaddr* address, socklen_t length),
         (file, address, length))
FALLIBLE(int, poll, -1, (struct pollfd * files, nfds_t count, int limit), (files, count, limit))

/// Waits for no disk, which would take most of the time of all runs: what a killed program has
/// written outlives it, and nobody pulls a plug here.
extern "C" int faulty_fsync(int file) __asm__("fsync");
extern "C" int faulty_fsync(int file) {
    return faultOfCall("fsync") == Kind::error       ? -1
           : ::syscall(SYS_fcntl, file, F_GETFD) < 0 ? -1
                                                     : 0;
}

/// A file is closed even when the system tells of an error.
extern "C" int faulty_close(int file) __asm__("close");
extern "C" int faulty_close(int file) {
    static auto* const next = nextFunction<int(int)>("close");
    const Kind fault = faultOfCall("close");
    const int result = next(file);
    if (fault != Kind::error) {
        return result;
    }
    errno = plan.error;
    return -1;
}
// NOLINTEND
