#include "host/dataio/FileDescriptor.h"

#include "host/base/Exceptions.h"

#include <system_error>
#include <unistd.h>

namespace Corvid::DataIO {

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    std::swap(owned_, other.owned_);
    return *this;
}

FileDescriptor::~FileDescriptor() {
    if (owned_ && number_ >= 0) {
        ::close(number_);
    }
}

void throwSystemError(const std::string& what, int errorNumber) {
    throw Exceptions::IOError(what + ": " + std::generic_category().message(errorNumber),
                              CORVID_HERE);
}

} // namespace Corvid::DataIO
