#pragma once

#include "host/base/Templates.h"
#include "host/dataio/RandomAccessSource.h"

namespace Corvid::DataIO {

/// Opens what people name on a command line.
///
/// @param path  of a file, a pipe or a device; "-" is standard input, which is not closed.
/// @return a FileSource where the bytes can be read anywhere (also for standard input that comes
///         from a file), else a PipeSource.
/// @throws IOError  it is a folder or can't be opened.
CORVID_EXPORT Templates::auto_ptr<RandomAccessSource> openSource(const std::string& path);

} // namespace Corvid::DataIO
