// Linked into the programs of the coverage build, so that a process that ends by _exit, _Exit or a
// common signal writes its profile like any other, also if calls of it fail. The linker redirects
// their calls of _exit and _Exit to this file (--wrap).

#include <dlfcn.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <initializer_list>

namespace {

// A test may have made calls fail, or have lowered the limit.
void endFailures()
{
    if (void* const found = dlsym(RTLD_DEFAULT, "endFailingCalls")) {
        reinterpret_cast<void (*)()>(found)();
    }
    rlimit files = {};
    getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = files.rlim_max;
    setrlimit(RLIMIT_NOFILE, &files);
}

} // namespace

// NOLINTBEGIN
extern "C" {

int __llvm_profile_write_file();
int __llvm_profile_register_write_file_atexit();
[[noreturn]] void __real__exit(int status);

[[noreturn]] void __wrap__exit(int status)
{
    endFailures();
    __llvm_profile_write_file();
    __real__exit(status);
}

[[noreturn]] void __wrap__Exit(int status)
{
    __wrap__exit(status);
}
}
// NOLINTEND

namespace {

void writeProfileAndEnd(int signal)
{
    endFailures();
    __llvm_profile_write_file();
    std::signal(signal, SIG_DFL);
    std::raise(signal); // acts when this returns
}

struct ProfileAtAnyEnd {
    ProfileAtAnyEnd()
    {
        for (const int signal : {SIGABRT, SIGPIPE, SIGINT, SIGTERM}) {
            if (std::signal(signal, writeProfileAndEnd) == SIG_IGN) {
                std::signal(signal, SIG_IGN);
            }
        }
        __llvm_profile_register_write_file_atexit(); // now, so that it is called after the next one
        std::atexit(endFailures);
    }
} const profileAtAnyEnd;

} // namespace
