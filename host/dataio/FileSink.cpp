#include "host/dataio/FileSink.h"

#include "host/base/Exceptions.h"
#include "host/dataio/BufferedSink.h"
#include "host/dataio/FileDescriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace Corvid::DataIO {

namespace {

constexpr mode_t permissionBits = S_IRWXU | S_IRWXG | S_IRWXO;

[[noreturn]] void refuse(const std::string& path) {
    throwSystemError("can't write " + path, errno);
}

/// The file that a path leads to, through links; the path itself where there is none.
std::filesystem::path targetOf(const std::string& path) {
    std::error_code error;
    const auto target = std::filesystem::canonical(path, error);
    return error ? std::filesystem::path(path) : target;
}

} // namespace

/// The file while it has another name.
class FileSink::Unfinished : public DataSink {
public:
    explicit Unfinished(const std::string& path) : path_(path), target_(targetOf(path)) {
        if (path.empty()) {
            throw Exceptions::InvalidArgument("empty name of a file, expected a path", CORVID_HERE);
        }
        struct stat replaced {};
        const bool isThere = ::stat(target_.c_str(), &replaced) == 0;
        if (isThere && !S_ISREG(replaced.st_mode)) {
            throwSystemError("can't write " + path_, S_ISDIR(replaced.st_mode) ? EISDIR : EINVAL);
        }
        open(isThere ? replaced.st_mode & permissionBits : 0666);
        // What the process would not give to new files, the old one may have had.
        if (isThere && ::fchmod(file_.number(), replaced.st_mode & permissionBits) != 0) {
            const int reason = errno;
            ::unlink(name_.c_str());
            throwSystemError("can't write " + path_, reason);
        }
    }
    ~Unfinished() override {
        if (!name_.empty()) {
            ::unlink(name_.c_str());
        }
    }

    void write(const unsigned char* bytes, std::size_t count) override {
        while (count != 0) {
            const ssize_t written = ::write(file_.number(), bytes, count);
            if (written < 0 && errno != EINTR) {
                refuse(path_);
            }
            const auto done = static_cast<std::size_t>(written < 0 ? 0 : written);
            bytes += done;
            count -= done;
        }
    }

    void checkUnfinished() const {
        if (name_.empty()) {
            throw Exceptions::InvalidArgument(path_ + " is written, expected commit() at the end",
                                              CORVID_HERE);
        }
    }

    void commit() {
        buffer.flush();
        if (::fsync(file_.number()) != 0 && errno != EINVAL && errno != ENOTSUP) {
            refuse(path_);
        }
        if (::rename(name_.c_str(), target_.c_str()) != 0) {
            refuse(path_);
        }
        name_.clear();
    }

    BufferedSink buffer{*this};

private:
    void open(mode_t permissions) {
        const std::string front =
            (target_.parent_path() / ("." + target_.filename().string())).string() + "." +
            std::to_string(::getpid()) + "-";
        for (unsigned number = 0; !file_.isOpen(); ++number) {
            name_ = front + std::to_string(number);
            file_ = FileDescriptor::owning(::open(
                name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, permissions));
            if (!file_.isOpen() && errno != EEXIST) {
                refuse(path_);
            }
        }
    }

    std::string path_; ///< as people wrote it
    std::filesystem::path target_;
    std::string name_; ///< of the file now; empty when it has its own
    FileDescriptor file_;
};

FileSink::FileSink(const std::string& path) : file_(new Unfinished(path)) {}
FileSink::~FileSink() = default;

void FileSink::write(const unsigned char* bytes, std::size_t count) {
    file_->checkUnfinished();
    file_->buffer.write(bytes, count);
}

void FileSink::commit() {
    file_->checkUnfinished();
    file_->commit();
}

} // namespace Corvid::DataIO
