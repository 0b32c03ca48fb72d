#pragma once

#include "host/base/Exceptions.h"
#include "host/dataio/OpenSource.h"
#include "host/mxf/rewrite/disk/InPlace.h"
#include "host/mxf/rewrite/disk/SystemFiles.h"

#include <optional>
#include <string>

namespace Corvid::Tool {

/// A clip that is read to be edited.
struct ClipToEdit {
    explicit ClipToEdit(const std::string& given)
        : path(given), status(files.find(path)), source(DataIO::openSource(path)) {
        mxf::requireFinished(files, path);
    }

    /// Reads something of the clip. Of one that another program changes meanwhile, it may be half:
    /// what is wrong with that is not said of the clip.
    template <class Read> auto whole(Read read) -> decltype(read()) {
        try {
            return read();
        } catch (const Exceptions::BaseException&) {
            if (files.find(path) != status) {
                throw Exceptions::InvalidArgument(
                    path + " has changed while it was read, so nothing was written", CORVID_HERE);
            }
            throw;
        }
    }

    const std::string& path;

    mxf::SystemFiles files;
    /// From before the source was opened: a file that takes the place of the clip in between is
    /// noticed then.
    std::optional<mxf::FileStatus> status;
    Templates::auto_ptr<DataIO::RandomAccessSource> source;
};

} // namespace Corvid::Tool
