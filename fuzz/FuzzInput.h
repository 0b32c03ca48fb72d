#pragma once

#include "host/dataio/MemorySource.h"
#include "host/mxf/File.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

/// What libFuzzer calls, and the replay.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace Corvid::Fuzzing {

/// Ends the search: this must never be.
[[noreturn]] inline void fail(const std::string& what) {
    std::fprintf(stderr, "%s\n", what.c_str());
    std::abort();
}

/// Reads header metadata from the bytes of a file.
/// @throws BaseException  as mxf::File does.
inline Templates::auto_ptr<Metadata::PartitionMetadata> readMxf(const std::uint8_t* bytes,
                                                                std::size_t size) {
    mxf::NoWarnings warnings;
    mxf::File file(
        Templates::auto_ptr<DataIO::RandomAccessSource>(new DataIO::MemorySource(bytes, size)),
        MetaMetadata::Dictionary::builtIn(), warnings);
    return file.readMetadata().metadata;
}

} // namespace Corvid::Fuzzing
