#pragma once

#include "host/base/Exceptions.h"
#include "host/dataio/MemorySource.h"

#include <vector>

namespace Corvid::Testing {

/// Bytes in memory of which the n-th read fails, counted from 0.
class FailingSource : public DataIO::MemorySource {
public:
    FailingSource(const std::vector<unsigned char>& bytes, unsigned failAt)
        : MemorySource(bytes.data(), bytes.size()), left_(failAt) {}

    std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) override {
        if (left_-- == 0) {
            throw Exceptions::IOError("can't read memory: no more of it", CORVID_HERE);
        }
        return MemorySource::readAt(offset, to, count);
    }

private:
    unsigned left_;
};

/// Uses the bytes again and again, with one more read before the one that fails, until none does.
/// @param use  called with a source; passes the error of the read on.
/// @return how many reads failed.
template <class Use> unsigned countFailingReads(const std::vector<unsigned char>& bytes, Use use) {
    constexpr unsigned most = 1000;
    for (unsigned failures = 0; failures != most; ++failures) {
        try {
            use(Templates::auto_ptr<DataIO::RandomAccessSource>(
                new FailingSource(bytes, failures)));
            return failures;
        } catch (const Exceptions::IOError&) {
            continue;
        }
    }
    return most;
}

} // namespace Corvid::Testing
