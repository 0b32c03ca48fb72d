#include "bench/ChildProcess.h"

#include <chrono>
#include <exception>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <spawn.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Corvid::Bench {

namespace {

/// The system's account of the bytes that a process has read and written. It may have ended, but
/// must not have been waited for.
double bytesOf(pid_t process) {
    std::ifstream account("/proc/" + std::to_string(process) + "/io");
    double bytes = 0;
    std::size_t found = 0;
    std::string name;
    for (double value = 0; account >> name >> value;) {
        if (name == "rchar:" || name == "wchar:") {
            bytes += value;
            ++found;
        }
    }
    return found == 2 ? bytes : -1;
}

rusage waitFor(pid_t child, const std::string& what) {
    int status = 0;
    rusage usage{};
    if (::wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0) {
        throw std::runtime_error(what + " failed");
    }
    return usage;
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

} // namespace

Usage run(const std::vector<std::string>& commandLine) {
    std::vector<char*> arguments;
    for (const std::string& argument : commandLine) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);

    const auto begin = std::chrono::steady_clock::now();
    pid_t child = 0;
    const int error =
        ::posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error(commandLine[0] + " can't be started");
    }
    siginfo_t ended{};
    ::waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT);
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - begin;
    const double bytes = bytesOf(child);
    const rusage usage = waitFor(child, commandLine[0]);
    return {wall.count(), seconds(usage.ru_utime) + seconds(usage.ru_stime),
            static_cast<double>(usage.ru_maxrss) / 1024, bytes};
}

void inChild(const std::function<void()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            work();
            ::_exit(0);
        } catch (const std::exception& error) {
            std::cerr << error.what() << std::endl;
            ::_exit(1);
        }
    }
    waitFor(child, "a process of the benchmark");
}

} // namespace Corvid::Bench
