#include "tools/corvid/batch/Workers.h"

#include "host/base/Exceptions.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace Corvid::Tool {

namespace {

/// Ends a process at work: people end the whole with other signals.
constexpr int endingSignal = SIGUSR1;

struct Pipe {
    DataIO::FileDescriptor reading;
    DataIO::FileDescriptor writing;

    Pipe() {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) {
            DataIO::throwSystemError("can't start a process", errno);
        }
        reading = DataIO::FileDescriptor::owning(ends[0]);
        writing = DataIO::FileDescriptor::owning(ends[1]);
        for (const int end : ends) {
            ::fcntl(end, F_SETFD, FD_CLOEXEC);
        }
    }
};

/// Where the system can say so, a process does not outlive the one that started it. Elsewhere it
/// ends when its file is done.
void endWith(pid_t parent) {
#ifdef __linux__
    ::prctl(PR_SET_PDEATHSIG, endingSignal);
    if (::getppid() != parent) {
        std::_Exit(EXIT_FAILURE);
    }
#else
    static_cast<void>(parent);
#endif
}

int wait(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

std::string crashText(int status) {
    if (WIFSIGNALED(status)) {
        const int number = WTERMSIG(status);
        return "the process crashed: signal " + std::to_string(number) + " (" +
               ::strsignal(number) + ")";
    }
    return "the process crashed: it ended with status " + std::to_string(WEXITSTATUS(status));
}

} // namespace

Workers::Workers(unsigned count, std::function<void(WorkerPipes)> work)
    : count_(count), work_(std::move(work)) {}

Workers::~Workers() {
    for (const Process& each : processes_) {
        ::kill(each.id, endingSignal);
    }
    for (Process& each : processes_) {
        wait(each.id);
    }
}

std::vector<Workers::Process>::iterator Workers::findIdle() {
    return std::find_if(processes_.begin(), processes_.end(),
                        [](const Process& each) { return !each.isWorking && !each.isEnding; });
}

bool Workers::prepare() {
    if (findIdle() != processes_.end()) {
        return true;
    }
    try {
        start();
    } catch (const Exceptions::IOError&) {
        if (working_ == 0) {
            throw;
        }
        count_ = working_;
        return false;
    }
    return true;
}

/// prepare() comes first.
void Workers::give(std::size_t file, const std::string& path, const RemoteStamp* known) {
    Process& process = *findIdle();
    process.isWorking = true;
    process.file = file;
    ++working_;
    const std::string& version = known == nullptr ? "" : known->version;
    const RequestHead head = {static_cast<std::uint32_t>(path.size()),
                              static_cast<std::uint32_t>(version.size()),
                              known == nullptr ? 0 : known->size};
    const int pipe = process.requests.number();
    // A process that is gone is noticed when its frames are read.
    static_cast<void>(writeAll(pipe, &head, sizeof head) &&
                      writeAll(pipe, path.data(), path.size()) &&
                      writeAll(pipe, version.data(), version.size()));
}

void Workers::start() {
    Pipe requests;
    Pipe responses;
    const pid_t parent = ::getpid();
    const pid_t id = ::fork();
    if (id < 0) {
        DataIO::throwSystemError("can't start a process", errno);
    }
    if (id == 0) {
        endWith(parent);
        requests.writing = {};
        responses.reading = {};
        runChild({requests.reading.number(), responses.writing.number()});
    }
    Process process;
    process.id = id;
    process.requests = std::move(requests.writing);
    process.responses = std::move(responses.reading);
    processes_.push_back(std::move(process));
}

void Workers::runChild(WorkerPipes pipes) const {
    // Signals for all are the starter's to handle: what is begun is done.
    for (const int number : {SIGINT, SIGTERM}) {
        std::signal(number, SIG_IGN);
    }
    // The pipes of others would not end while this process has them.
    for (const Process& each : processes_) {
        ::close(each.requests.number());
        ::close(each.responses.number());
    }
    work_(pipes);
    std::_Exit(EXIT_SUCCESS);
}

void Workers::addTo(std::vector<pollfd>& waiting) const {
    for (const Process& each : processes_) {
        waiting.push_back({each.responses.number(), POLLIN, 0});
    }
}

void Workers::read(const pollfd& ready, FileEvents& events) {
    const auto found =
        std::find_if(processes_.begin(), processes_.end(),
                     [&ready](const Process& each) { return each.responses.number() == ready.fd; });
    if (ready.revents == 0 || found == processes_.end()) {
        return;
    }
    std::array<unsigned char, 64 * 1024> bytes{};
    const ssize_t count = ::read(ready.fd, bytes.data(), bytes.size());
    if (count > 0) {
        take(*found, bytes.data(), static_cast<std::size_t>(count), events);
    } else if (count == 0 || errno != EINTR) {
        lose(*found, events);
        processes_.erase(found);
    }
}

void Workers::take(Process& process, const unsigned char* bytes, std::size_t count,
                   FileEvents& events) {
    while (count != 0) {
        if (process.left == 0) {
            const std::size_t part = std::min(count, sizeof(FrameHead) - process.head.size());
            process.head.append(reinterpret_cast<const char*>(bytes), part);
            bytes += part;
            count -= part;
            if (process.head.size() != sizeof(FrameHead)) {
                return;
            }
            FrameHead head{};
            std::memcpy(&head, process.head.data(), sizeof head);
            process.left = head.size;
            process.isLast = head.kind == FrameHead::end;
            if (!process.isLast) {
                events.received(process.file,
                                reinterpret_cast<const unsigned char*>(process.head.data()),
                                process.head.size());
            }
            process.head.clear();
        }
        const std::size_t part = std::min(count, process.left);
        if (process.isLast) {
            process.end.append(reinterpret_cast<const char*>(bytes), part);
        } else {
            events.received(process.file, bytes, part);
        }
        bytes += part;
        count -= part;
        process.left -= part;
        if (process.left == 0 && process.isLast) {
            finish(process, events);
        }
    }
}

void Workers::finish(Process& process, FileEvents& events) {
    FileResult result;
    EndHead head{};
    std::memcpy(&head, process.end.data(), sizeof head);
    result.facts = head.facts;
    if (head.versionSize != 0) {
        result.remote =
            RemoteStamp{head.remoteSize, process.end.substr(sizeof head, head.versionSize)};
    }
    result.error = process.end.substr(sizeof head + head.versionSize);
    result.isErrorTold = true;
    process.end.clear();
    process.isLast = false;
    process.isWorking = false;
    process.isEnding = result.facts.status == FileStatus::crashed; // as workOnFiles() does
    --working_;
    events.finished(process.file, result);
}

void Workers::lose(Process& process, FileEvents& events) {
    const int status = wait(process.id);
    if (process.isWorking) {
        --working_;
        FileResult result;
        result.facts.status = FileStatus::crashed;
        result.error = crashText(status);
        events.finished(process.file, result);
    }
}

} // namespace Corvid::Tool
