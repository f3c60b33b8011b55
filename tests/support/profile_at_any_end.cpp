// Linked into the programs of the coverage build, so that a process that ends by abort or _exit
// writes its profile like any other. The linker redirects their calls of _exit to this file
// (--wrap).

#include <sys/resource.h>

#include <csignal>

// NOLINTBEGIN
extern "C" {

int __llvm_profile_write_file();
[[noreturn]] void __real__exit(int status);

[[noreturn]] void __wrap__exit(int status)
{
    __llvm_profile_write_file();
    __real__exit(status);
}
}
// NOLINTEND

namespace {

void writeProfile(int /*signal*/) // abort goes on afterwards
{
    rlimit files = {};
    getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = files.rlim_max; // a test may have lowered the limit
    setrlimit(RLIMIT_NOFILE, &files);
    __llvm_profile_write_file();
}

struct ProfileAtAbort {
    ProfileAtAbort() { std::signal(SIGABRT, writeProfile); }
} const profileAtAbort;

} // namespace
