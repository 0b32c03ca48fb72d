#include "tests/growth/Measurement.h"

#include "tests/growth/AllocationCounter.h"
#include "tests/growth/Instructions.h"
#include "tests/support/Paths.h"

#include <algorithm>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <set>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Corvid::Testing {

namespace {

constexpr rlim_t mostSeconds = 300; // of processor time, for one task

const char* extensionOf(InputKind kind) {
    switch (kind) {
    case InputKind::xml:
        return ".xml";
    case InputKind::dictionary:
        return ".dict";
    default:
        return ".mxf";
    }
}

std::uint64_t bytesIn(const std::filesystem::path& folder) {
    std::uint64_t bytes = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        bytes += entry.is_regular_file() ? entry.file_size() : 0;
    }
    return bytes;
}

/// Does the task in this process.
Cost costOf(const Task& task, const std::filesystem::path& folder) {
    const Dimension& dimension = *task.dimension;
    const std::string bytes = dimension.make(task.number);
    const bool isFiles = dimension.kind == InputKind::files;
    const Subject subject{folder, folder / (std::string("input") + extensionOf(dimension.kind)),
                          bytes, isFiles ? task.number : 1};
    std::ofstream(subject.input, std::ios::binary) << bytes;
    const Work work = task.operation->prepare(subject);
    const std::uint64_t before = bytesIn(folder);

    Cost cost;
    AllocationCounter::start();
    Instructions::start();
    bool isAccepted = false;
    try {
        isAccepted = work();
    } catch (...) {
        isAccepted = false; // whatever the library throws refuses
    }
    const std::uint64_t instructions = Instructions::stop();
    const auto allocated = AllocationCounter::stop();
    cost.end = isAccepted ? Cost::End::accepted : Cost::End::refused;
    const std::uint64_t after = bytesIn(folder);
    cost.counts = {instructions, allocated.allocations, allocated.bytes, allocated.peak,
                   std::max(after, before) - before};
    return cost;
}

void printInto(const std::filesystem::path& file) {
    const int number = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    ::dup2(number, STDOUT_FILENO);
    ::close(number);
}

/// Does what is done once in a process, such as loading tables, so that no task has to. Under
/// valgrind it also spares each of them to translate the code again.
void prepareFor(const std::vector<Task>& tasks) {
    warmUp();
    static std::set<std::pair<const Operation*, InputKind>> done;
    const int out = ::dup(STDOUT_FILENO);
    printInto("/dev/null");
    for (const Task& task : tasks) {
        if (done.emplace(task.operation, task.dimension->kind).second) {
            const TemporaryDir folder;
            costOf(task, folder.path());
        }
    }
    ::dup2(out, STDOUT_FILENO);
    ::close(out);
}

/// A process that does a task.
class Worker {
public:
    Worker(const Task& task, std::size_t place) : place_(place) {
        int ends[2];
        if (::pipe(ends) != 0) {
            throw std::runtime_error("no pipe");
        }
        process_ = ::fork();
        if (process_ == 0) {
            work(task, ends[1]);
        }
        ::close(ends[1]);
        result_ = ends[0];
    }

    pid_t process() const noexcept { return process_; }
    std::size_t place() const noexcept { return place_; }

    /// To be called when the process has ended.
    Cost cost() const {
        Cost cost;
        if (::read(result_, &cost, sizeof cost) != static_cast<ssize_t>(sizeof cost)) {
            cost = {};
        }
        ::close(result_);
        return cost;
    }

private:
    [[noreturn]] void work(const Task& task, int result) const {
        const rlimit limit{mostSeconds, mostSeconds};
        ::setrlimit(RLIMIT_CPU, &limit);
        int status = 1;
        try {
            printInto(folder_.path() / "out");
            const Cost cost = costOf(task, folder_.path());
            status =
                ::write(result, &cost, sizeof cost) == static_cast<ssize_t>(sizeof cost) ? 0 : 1;
        } catch (const std::exception& error) {
            static_cast<void>(error); // the broken end shows it
        } catch (...) {
        }
        ::_exit(status);
    }

    TemporaryDir folder_;
    std::size_t place_;
    pid_t process_ = -1;
    int result_ = -1;
};

} // namespace

const char* nameOf(Counter counter) {
    static constexpr std::array<const char*, counterCount> names = {
        "instructions", "allocations", "bytes allocated", "bytes held", "bytes written"};
    return names[static_cast<std::size_t>(counter)];
}

std::vector<Cost> measure(const std::vector<Task>& tasks, unsigned processes) {
    prepareFor(tasks);
    std::vector<Cost> costs(tasks.size());
    std::map<pid_t, std::unique_ptr<Worker>> working;
    std::size_t next = 0;
    while (next != tasks.size() || !working.empty()) {
        while (next != tasks.size() && working.size() != processes) {
            auto worker = std::make_unique<Worker>(tasks[next], next);
            working.emplace(worker->process(), std::move(worker));
            ++next;
        }
        const pid_t ended = ::waitpid(-1, nullptr, 0);
        if (const auto found = working.find(ended); found != working.end()) {
            costs[found->second->place()] = found->second->cost();
            Instructions::removeDumpOf(ended);
            working.erase(found);
        }
    }
    return costs;
}

} // namespace Corvid::Testing
