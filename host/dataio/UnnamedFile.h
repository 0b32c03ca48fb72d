#pragma once

#include "host/dataio/FileDescriptor.h"

namespace Corvid::DataIO {

/// A temporary file that has no name and goes when it is closed. It is in the folder that the
/// environment variable TMPDIR names, else in /tmp.
/// @throws IOError  it can't be made.
CORVID_EXPORT FileDescriptor openUnnamedFile();

} // namespace Corvid::DataIO
