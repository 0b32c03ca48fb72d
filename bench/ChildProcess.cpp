#include "bench/ChildProcess.h"

#include <chrono>
#include <exception>
#include <fcntl.h>
#include <iostream>
#include <spawn.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Corvid::Bench {

namespace {

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
    const rusage usage = waitFor(child, commandLine[0]);
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - begin;
    return {wall.count(), seconds(usage.ru_utime) + seconds(usage.ru_stime),
            static_cast<double>(usage.ru_maxrss) / 1024};
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
