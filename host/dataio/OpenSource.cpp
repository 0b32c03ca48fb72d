#include "host/dataio/OpenSource.h"

#include "host/base/Exceptions.h"
#include "host/dataio/FileSource.h"
#include "host/dataio/PipeSource.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Corvid::DataIO {

namespace {

FileDescriptor openForReading(const std::string& path) {
    int number = -1;
    do {
        number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    } while (number < 0 && errno == EINTR);
    if (number < 0) {
        throwSystemError("can't open " + path, errno);
    }
    return FileDescriptor::owning(number);
}

} // namespace

Templates::auto_ptr<RandomAccessSource> openSource(const std::string& path) {
    const bool standardInput = path == "-";
    const std::string name = standardInput ? "standard input" : path;
    auto file = standardInput ? FileDescriptor::borrowing(STDIN_FILENO) : openForReading(path);
    struct stat status {};
    if (::fstat(file.number(), &status) != 0) {
        throwSystemError("can't open " + name, errno);
    }
    if (S_ISDIR(status.st_mode)) {
        throwSystemError("can't read " + name, EISDIR);
    }
    if (S_ISREG(status.st_mode) || S_ISBLK(status.st_mode)) {
        return Templates::auto_ptr<RandomAccessSource>(new FileSource(std::move(file), name));
    }
    return Templates::auto_ptr<RandomAccessSource>(new PipeSource(std::move(file), name));
}

} // namespace Corvid::DataIO
