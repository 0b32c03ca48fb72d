#include "tools/corvid/batch/Batch.h"

#include "host/base/KeyedHash.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/batch/FileList.h"
#include "tools/corvid/batch/Interruption.h"
#include "tools/corvid/batch/Log.h"
#include "tools/corvid/batch/OutputFolder.h"
#include "tools/corvid/batch/Progress.h"
#include "tools/corvid/batch/Results.h"
#include "tools/corvid/batch/Summary.h"
#include "tools/corvid/batch/Workers.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/remote/Address.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/UsageError.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <poll.h>
#include <unistd.h>

namespace Corvid::Tool {

namespace {

/// Of options and dictionaries: the same for the same texts, in every process.
std::string hashOf(const std::string& text) {
    const KeyedHash hash{KeyedHash::Key{}};
    const auto value = hash(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    constexpr std::size_t digits = 16;
    char hexadecimal[digits + 1];
    std::snprintf(hexadecimal, sizeof hexadecimal, "%016llx",
                  static_cast<unsigned long long>(value));
    return hexadecimal;
}

void check(const BatchOptions& options, const BatchWork& work) {
    if (options.resumes && options.log.empty()) {
        throw UsageError{"--resume needs --log"};
    }
    if (work.isDocument && options.outputFolder.empty()) {
        throw UsageError{"several documents need --output-dir"};
    }
}

class Batch final : public FileEvents {
public:
    Batch(const BatchOptions& options, const BatchWork& work, const std::string& dictionaries,
          const Interruption& interruption, Messages& messages)
        : options_(options), work_(work), dictionaries_(dictionaries), messages_(messages),
          interruption_(interruption), list_(options), folder_(options.outputFolder, work.suffix),
          results_(work, messages, [this](const FinishedFile& file) { printed(file); }),
          progress_(messages),
          workers_(options.jobs == 0 ? 1 : options.jobs, [this, &work](WorkerPipes pipes) {
              if (log_) { // it is locked as long as it is open
                  ::close(log_->number());
              }
              workOnFiles(options_, work, messages_.hasColours(), pipes);
          }) {
        list_.collect();
        protectInputs(work.dictionaries);
        for (const ListedFile& file : list_.collected()) {
            protectInputs({file.path});
        }
        if (!options.log.empty()) {
            protectFromLog();
            log_.emplace(options);
        }
        if (options.outputFolder.empty()) {
            printText(work.head);
        }
    }

    int run() {
        while (!isDone()) {
            stopAtFailure([this] {
                while (isHandingOut() && giveNext()) {
                }
            });
            if (!isDone()) {
                wait();
            }
        }
        messages_.showProgress("");
        if (log_ && !failure_) {
            log_->finish();
        }
        summarise();
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        return summary_.exitStatus();
    }

private:
    bool isStopped() const noexcept {
        return isDiskFull_ || failure_ || interruption_.signal() != 0;
    }
    bool isHandingOut() const { return !isStopped() && workers_.hasIdle() && results_.hasRoom(); }
    bool isDone() const { return workers_.areIdle() && (isStopped() || list_.isEnded()); }

    /// @return whether there was a file.
    bool giveNext() {
        if (list_.isEnded() || !workers_.prepare()) {
            return false;
        }
        auto file = list_.next();
        if (!file) {
            return false;
        }
        if (log_) {
            file->stamp = stampOf(file->path);
            file->options = optionsOf(file->path);
        }
        if (const auto done = log_ ? log_->findDone(*file, outputOf(file->path)) : std::nullopt) {
            if (!done->remote) {
                summary_.skip(done->status);
                return true;
            }
            file->done = done;
        }
        atWork_ = file->path;
        const std::string error = file->error;
        const std::size_t number = results_.add(std::move(*file));
        if (error.empty()) {
            protectInputs({atWork_});
            const auto& done = results_.file(number).done;
            workers_.give(number, atWork_, done ? &*done->remote : nullptr);
            showProgress();
        } else {
            FileResult result;
            result.facts.status = FileStatus::unreadable;
            result.error = error;
            finished(number, result);
        }
        return true;
    }

    void wait() {
        waiting_.clear();
        workers_.addTo(waiting_);
        const std::size_t processes = waiting_.size();
        if (interruption_.signal() == 0) {
            waiting_.push_back({interruption_.number(), POLLIN, 0});
        }
        const auto list = isHandingOut() ? list_.awaited() : std::nullopt;
        if (list) {
            waiting_.push_back({*list, POLLIN, 0});
        }
        if (::poll(waiting_.data(), waiting_.size(), -1) < 0) {
            if (errno != EINTR) {
                DataIO::throwSystemError("can't wait for processes", errno);
            }
            return;
        }
        if (list && waiting_.back().revents != 0) {
            stopAtFailure([this] { list_.readMore(); });
        }
        for (std::size_t i = 0; i != processes; ++i) {
            workers_.read(waiting_[i], *this);
        }
    }

    void received(std::size_t file, const unsigned char* bytes, std::size_t count) override {
        results_.append(file, bytes, count);
    }

    void finished(std::size_t number, const FileResult& result) override {
        isDiskFull_ = isDiskFull_ || result.facts.isDiskFull;
        if (result.facts.isUnchanged) {
            summary_.skip(results_.file(number).done->status);
            results_.finish(number, result);
            return;
        }
        // A result in a file of its own is safe now, any other one when it is printed.
        if (log_ && !options_.outputFolder.empty()) {
            const ListedFile& file = results_.file(number);
            stopAtFailure([&] { log_->add({file, result}, outputOf(file.path)); });
        }
        ++finished_;
        results_.finish(number, result);
        showProgress();
    }

    void showProgress() {
        const auto total = list_.total();
        progress_.show(finished_, total ? std::optional(*total - summary_.skipped()) : total,
                       shownName(atWork_));
    }

    void printed(const FinishedFile& file) {
        if (log_ && options_.outputFolder.empty()) {
            stopAtFailure([&] { log_->add(file, ""); });
        }
        summary_.add(shownName(file.file.path), file.result);
    }

    /// Does what can fail and is no fault of a file: then no other file is begun, but what was begun
    /// is done, and summed up.
    template <class Work> void stopAtFailure(Work work) {
        try {
            work();
        } catch (...) {
            failure_ = failure_ ? failure_ : std::current_exception();
        }
    }

    /// @throws UsageError  the log is a file that is read.
    void protectFromLog() const {
        const auto log = identityOf(options_.log);
        for (const ListedFile& file : list_.collected()) {
            if (log && identityOf(file.path) == log) {
                throw UsageError{file.path + ": the log is a file that is read"};
            }
        }
    }

    std::string optionsOf(const std::string& path) const {
        const std::string other = work_.other ? work_.other(path) : "";
        const auto stamp = other.empty() ? std::nullopt : stampOf(other);
        // A line without a result means that there was none (get --if) only if results are files.
        const std::string where = options_.outputFolder.empty() ? "" : "files";
        return hashOf(options_.fingerprint + where + '\0' + dictionaries_ +
                      (stamp ? other + ":" + std::to_string(stamp->size) + ":" +
                                   std::to_string(stamp->mtimeNs)
                             : ""));
    }

    std::string outputOf(const std::string& path) const {
        return options_.outputFolder.empty() ? "" : folder_.pathOf(path);
    }

    void summarise() {
        const bool isOne = summary_.files() == 1 && summary_.skipped() == 0;
        const bool isWorthTelling = summary_.files() == 0 || !summary_.areAllOk() ||
                                    summary_.skipped() != 0 || !options_.outputFolder.empty();
        if (isStopped()) {
            messages_.say(isDiskFull_ ? "ended early: the disk is full"
                          : failure_
                              ? "ended early; all files that were begun are done"
                              : "ended early by a signal; all files that were begun are done");
        }
        if (isStopped() || (!isOne && isWorthTelling)) {
            for (const std::string& line : summary_.lines()) {
                messages_.say(line);
            }
        }
    }

    const BatchOptions& options_;
    const BatchWork& work_;
    const std::string& dictionaries_;
    Messages& messages_;
    const Interruption& interruption_;
    FileList list_;
    OutputFolder folder_;
    std::optional<Log> log_;
    Summary summary_;
    Results results_;
    Progress progress_;
    std::string atWork_; ///< the file that was given last
    std::size_t finished_ = 0;
    bool isDiskFull_ = false;
    std::exception_ptr failure_;
    std::vector<pollfd> waiting_; ///< room for wait()
    Workers workers_;
};

} // namespace

int runBatch(const BatchOptions& options, const BatchWork& work, const std::string& dictionaries,
             Messages& messages) {
    check(options, work);
    const Interruption interruption;
    const int status = Batch(options, work, dictionaries, interruption, messages).run();
    if (interruption.signal() != 0) {
        interruption.endProcess();
    }
    return status;
}

} // namespace Corvid::Tool
