#pragma once

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

namespace eventsviewer {

/// How a child process ended and what it had written by then.
struct ChildResult {
    int exitStatus; ///< -1 if it was killed by a signal
    int signal;     ///< 0 if it returned
    std::string standardOutput;
    std::string standardError;
};

namespace support {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

inline File temporaryFile()
{
    File file(std::tmpfile(), std::fclose);
    if (file == nullptr) {
        throw std::runtime_error("no temporary file");
    }
    return file;
}

inline std::string contentOf(std::FILE* file)
{
    std::string content;
    std::rewind(file);
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
        content += static_cast<char>(c);
    }
    return content;
}

/// `text` without what an emulator adds when a signal kills the program.
inline std::string withoutEmulatorRemark(const std::string& text)
{
    return text.substr(0, text.rfind("qemu: uncaught target signal "));
}

} // namespace support

/// Runs `body` in a child process whose standard output and error are files, and so buffered as in
/// a pipe. What `body` returns becomes the exit status, as if `body` were main.
template <typename Body> ChildResult runInChild(Body body)
{
    const support::File output = support::temporaryFile();
    const support::File error = support::temporaryFile();
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        const rlimit noCore = {0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        dup2(fileno(output.get()), STDOUT_FILENO);
        dup2(fileno(error.get()), STDERR_FILENO);
        const int status = body();
        std::cout.flush();
        std::fflush(nullptr);
        _exit(status);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        throw std::runtime_error("no child process");
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            WIFSIGNALED(status) ? WTERMSIG(status) : 0, support::contentOf(output.get()),
            support::withoutEmulatorRemark(support::contentOf(error.get()))};
}

} // namespace eventsviewer
