#include "host/dataio/UnnamedFile.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace Corvid::DataIO {

FileDescriptor openUnnamedFile() {
    const char* const given = std::getenv("TMPDIR");
    const std::string folder = given != nullptr && *given != '\0' ? given : "/tmp";
#ifdef O_TMPFILE
    // Without a name none is left when a signal ends the process.
    if (const int number =
            ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR);
        number >= 0) {
        return FileDescriptor::owning(number);
    }
#endif
    std::string path = folder + "/corvid-XXXXXX";
    auto file = FileDescriptor::owning(::mkostemp(path.data(), O_CLOEXEC));
    if (!file.isOpen()) {
        throwSystemError("can't make a temporary file in " + folder, errno);
    }
    ::unlink(path.c_str());
    return file;
}

} // namespace Corvid::DataIO
