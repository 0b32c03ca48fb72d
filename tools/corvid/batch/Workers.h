#pragma once

#include "host/dataio/FileDescriptor.h"
#include "tools/corvid/batch/FileTask.h"
#include "tools/corvid/batch/Frames.h"
#include "tools/corvid/batch/Worker.h"

#include <poll.h>
#include <string>
#include <vector>

namespace Corvid::Tool {

/// What becomes of the files that processes work on.
class FileEvents {
public:
    virtual ~FileEvents() = default;
    /// Bytes of frames about a file, which need not end with a frame.
    virtual void received(std::size_t file, const unsigned char* bytes, std::size_t count) = 0;
    virtual void finished(std::size_t file, const FileResult& result) = 0;
};

/// Processes that work on files, each on one at a time. They start when they are needed; one that
/// crashes is replaced.
class Workers {
public:
    /// @param count  the most processes, from 1.
    /// @param work   of a process, which ends it. Called in the process.
    Workers(unsigned count, std::function<void(WorkerPipes)> work);
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;
    /// Ends them, also at work.
    ~Workers();

    bool hasIdle() const noexcept { return working_ < count_; }
    /// Starts a process where none waits. Where the system gives no more, those at work are enough.
    /// @return whether one waits.
    /// @throws IOError  there is none at all.
    bool prepare();
    bool areIdle() const noexcept { return working_ == 0; }

    /// Gives a file to an idle process.
    /// @param known  of a file on a server that is done unless it has changed. May be nullptr.
    /// @throws IOError  there is none, and none can be started.
    void give(std::size_t file, const std::string& path, const RemoteStamp* known);

    /// Appends what has to be waited for.
    void addTo(std::vector<pollfd>& waiting) const;
    /// Reads what a process has written.
    void read(const pollfd& ready, FileEvents& events);

private:
    struct Process {
        pid_t id = -1;
        DataIO::FileDescriptor requests;
        DataIO::FileDescriptor responses;
        bool isWorking = false;
        bool isEnding = false; ///< gets no other file
        std::size_t file = 0;
        std::string head;     ///< of a frame, as far as it has come
        std::size_t left = 0; ///< bytes of the frame that are to come
        bool isLast = false;  ///< that frame is the last one about the file
        std::string end = {}; ///< what has come of the last one
    };

    std::vector<Process>::iterator findIdle();
    void start();
    [[noreturn]] void runChild(WorkerPipes pipes) const;
    void take(Process& process, const unsigned char* bytes, std::size_t count, FileEvents& events);
    void finish(Process& process, FileEvents& events);
    void lose(Process& process, FileEvents& events);

    unsigned count_;
    std::function<void(WorkerPipes)> work_;
    std::vector<Process> processes_;
    unsigned working_ = 0;
};

} // namespace Corvid::Tool
