#include "tools/corvid/input/DocumentFile.h"

#include "host/base/Exceptions.h"
#include "host/dataio/OpenSource.h"
#include "host/mxf/Partitions.h"

#include <algorithm>
#include <array>

namespace Corvid::Tool {

namespace {

/// How a partition pack begins; in front of it is at most a run-in (SMPTE ST 377-1).
constexpr std::array<char, 11> packKey = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05,
                                          0x01, 0x01, 0x0d, 0x01, 0x02};

std::string frontOf(DataIO::RandomAccessSource& file) {
    std::string front(mxf::greatestRunIn + packKey.size(), '\0');
    front.resize(file.readAt(0, reinterpret_cast<unsigned char*>(front.data()), front.size()));
    return front;
}

bool hasPackKey(const std::string& front) {
    return std::search(front.begin(), front.end(), packKey.begin(), packKey.end()) != front.end();
}

} // namespace

bool isMxfFile(DataIO::RandomAccessSource& file) { return hasPackKey(frontOf(file)); }

DocumentFile::DocumentFile(const std::string& path) : DocumentFile(DataIO::openSource(path)) {}

DocumentFile::DocumentFile(Templates::auto_ptr<DataIO::RandomAccessSource> file)
    : file_(std::move(file)) {
    const std::string front = frontOf(*file_);
    if (front.empty()) {
        throw Exceptions::InvalidFormat("the file is empty, expected an XML document", CORVID_HERE);
    }
    if (hasPackKey(front)) {
        throw Exceptions::InvalidFormat("this is an MXF file, expected an XML document; corvid "
                                        "to-xml makes one of it",
                                        CORVID_HERE);
    }
}

std::size_t DocumentFile::read(unsigned char* to, std::size_t count) {
    const std::size_t got = file_->readAt(position_, to, count);
    position_ += got;
    return got;
}

std::uint64_t DocumentFile::remaining() const { return file_->size() - position_; }

} // namespace Corvid::Tool
