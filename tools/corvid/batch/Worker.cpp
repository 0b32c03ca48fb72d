#include "tools/corvid/batch/Worker.h"

#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/batch/Frames.h"
#include "tools/corvid/batch/OutputFolder.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/remote/RemoteSource.h"
#include "tools/corvid/terminal/Messages.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <sys/resource.h>
#include <unistd.h>

namespace Corvid::Tool {

namespace {

bool readAll(int pipe, void* to, std::size_t count) noexcept {
    auto* at = static_cast<char*>(to);
    while (count != 0) {
        const ssize_t got = ::read(pipe, at, count);
        if (got == 0 || (got < 0 && errno != EINTR)) {
            return false;
        }
        if (got > 0) {
            at += got;
            count -= static_cast<std::size_t>(got);
        }
    }
    return true;
}

struct Request {
    std::string path;
    RemoteStamp known; ///< without version where the file is not done
};

std::optional<Request> readRequest(int pipe) {
    RequestHead head{};
    if (!readAll(pipe, &head, sizeof head)) {
        return std::nullopt;
    }
    Request request = {std::string(head.pathSize, '\0'),
                       {head.remoteSize, std::string(head.versionSize, '\0')}};
    return readAll(pipe, request.path.data(), head.pathSize) &&
                   readAll(pipe, request.known.version.data(), head.versionSize)
               ? std::optional(std::move(request))
               : std::nullopt;
}

void limitMemory(std::uint64_t mebibytes) {
    if (mebibytes != 0) {
        const auto bytes = static_cast<rlim_t>(mebibytes * 1024 * 1024);
        const struct rlimit limit = {bytes, bytes};
        ::setrlimit(RLIMIT_AS, &limit);
    }
}

/// Notes whether a result was written.
class NotingOutput final : public Output {
public:
    explicit NotingOutput(Output& target) : target_(target) {}

    void write(const unsigned char* bytes, std::size_t count) override {
        target_.write(bytes, count);
    }
    void commit() override {
        target_.commit();
        isCommitted_ = true;
    }
    bool isHeldBack() const noexcept override { return target_.isHeldBack(); }
    bool isTerminal() const noexcept override { return target_.isTerminal(); }
    bool isCommitted() const noexcept { return isCommitted_; }

private:
    std::optional<struct stat> status() const override { return std::nullopt; }

    Output& target_;
    bool isCommitted_ = false;
};

/// The work on one file after the other.
class Worker {
public:
    Worker(const BatchOptions& options, const BatchWork& work, bool colours, int responses)
        : options_(options), work_(work), colours_(colours), responses_(responses),
          folder_(options.outputFolder, work.suffix) {}

    FileResult workOn(const Request& request) {
        FileResult result;
        if (!request.known.version.empty() && askForStamp(request.path) == request.known) {
            result.facts.isUnchanged = true;
            return result;
        }
        const std::string& path = request.path;
        MessageFrames sink(responses_);
        Messages messages(sink, colours_);
        messages.setFile(path);
        const auto begin = std::chrono::steady_clock::now();
        const int status = guard([&] { workOn(path, messages, result); }, messages);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
        auto& facts = result.facts;
        facts.seconds = seconds.count();
        facts.warnings = messages.warningCount();
        if (facts.status == FileStatus::ok && status != exitDone) {
            facts.status = status == exitNoFile ? FileStatus::unreadable : FileStatus::refused;
        }
        if (facts.status > FileStatus::different) {
            result.error = messages.lastError();
        }
        return result;
    }

private:
    void workOn(const std::string& path, Messages& messages, FileResult& result) {
        FileResult::Facts& facts = result.facts;
        std::unique_ptr<Output> target;
        try {
            target = openResult(path);
            NotingOutput output(*target);
            FileTask task{path, output, messages, true};
            try {
                work_.work(task);
            } catch (...) {
                note(task, output, result);
                throw;
            }
            note(task, output, result);
        } catch (const EndedWith& end) {
            facts.status = end.cause == EndedWith::Cause::different  ? FileStatus::different
                           : end.cause == EndedWith::Cause::noMemory ? FileStatus::crashed
                                                                     : FileStatus::ok;
            throw;
        } catch (const OutputError& error) {
            facts.isDiskFull = error.isDiskFull();
            throw;
        } catch (const std::bad_alloc&) {
            facts.status = FileStatus::crashed;
            throw;
        }
    }

    static void note(const FileTask& task, const NotingOutput& output, FileResult& result) {
        result.facts.verdict = task.verdict;
        result.facts.bytesRead = task.bytesRead;
        result.facts.hasResult = output.isCommitted();
        result.remote = task.remote;
    }

    std::unique_ptr<Output> openResult(const std::string& path) const {
        const std::vector<std::string> inputs = [&] {
            auto all = work_.dictionaries;
            all.push_back(path);
            if (!options_.log.empty()) {
                all.push_back(options_.log);
            }
            return all;
        }();
        if (options_.outputFolder.empty()) {
            return std::make_unique<ResultFrames>(responses_);
        }
        const std::string target = folder_.pathOf(path);
        OutputFolder::makeFoldersFor(target);
        return openOutput(target, inputs,
                          work_.mayDestroy ? MayReplace::everything : MayReplace::noMxfFile);
    }

    const BatchOptions& options_;
    const BatchWork& work_;
    bool colours_;
    int responses_;
    OutputFolder folder_;
};

void send(const FileResult& result, int pipe) {
    constexpr std::size_t longestError = 64 * 1024;
    EndHead head{};
    head.facts = result.facts;
    const std::string version = result.remote ? result.remote->version : "";
    head.versionSize = static_cast<std::uint32_t>(version.size());
    head.remoteSize = result.remote ? result.remote->size : 0;
    std::string bytes(sizeof head, '\0');
    std::memcpy(bytes.data(), &head, sizeof head);
    bytes += version + result.error.substr(0, longestError);
    sendFrame(pipe, FrameHead::end, reinterpret_cast<const unsigned char*>(bytes.data()),
              bytes.size());
}

} // namespace

void workOnFiles(const BatchOptions& options, const BatchWork& work, bool colours,
                 WorkerPipes pipes) {
    limitMemory(options.memoryPerJob);
    try {
        Worker worker(options, work, colours, pipes.responses);
        while (const auto request = readRequest(pipes.requests)) {
            const FileResult result = worker.workOn(*request);
            send(result, pipes.responses);
            if (result.facts.status == FileStatus::crashed) {
                break; // what memory is left is in pieces
            }
        }
    } catch (...) {
        // Not even the message could be made.
        std::_Exit(EXIT_FAILURE);
    }
    std::_Exit(EXIT_SUCCESS);
}

} // namespace Corvid::Tool
