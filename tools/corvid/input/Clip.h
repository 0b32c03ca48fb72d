#pragma once

#include "host/mxf/File.h"
#include "tools/corvid/input/DictionaryChoice.h"
#include "tools/corvid/remote/RemoteStamp.h"

#include <optional>
#include <string>

namespace Corvid::Tool {

class Messages;

/// How clips on servers are read: those that people name by an address, "https://...".
struct RemoteUse {
    bool isForbidden = false;
    bool mayDownload = false; ///< all of a file where the server sends no parts
};

/// What the options of every verb that reads an MXF file can say.
struct ClipOptions {
    std::string path;               ///< "-" is standard input
    std::string partition = "auto"; ///< auto, header, footer, or a number from 0
    DictionaryChoice dictionaries;
    RemoteUse remote;
};

/// True for what `ClipOptions::partition` may be.
bool isPartitionChoice(const std::string& text);

/// Opens the file that the options name: as DataIO::openSource() does, or on a server.
/// @param warnings  hears where an edit of the file was interrupted: also where it is then too
///                  damaged to be read. Borrowed.
/// @param stamp     is given that of a file on a server. Borrowed.
/// @throws UsageError  it is on a server, and none may be asked.
/// @throws IOError     it can't be opened.
Templates::auto_ptr<DataIO::RandomAccessSource> openClip(const ClipOptions& options,
                                                         mxf::WarningSink& warnings,
                                                         std::optional<RemoteStamp>& stamp);
inline Templates::auto_ptr<DataIO::RandomAccessSource> openClip(const ClipOptions& options,
                                                                mxf::WarningSink& warnings) {
    std::optional<RemoteStamp> unused;
    return openClip(options, warnings, unused);
}

/// Reads the metadata of the partition that the options name.
/// @throws InvalidFormat  there is none; names the partitions that have some.
mxf::HeaderMetadata readMetadata(mxf::File& file, const ClipOptions& options);

/// Says which partition the metadata is from where people left the choice and it is not the header.
void noteOrigin(mxf::File& file, const mxf::HeaderMetadata& header, const ClipOptions& options,
                Messages& messages);

/// "partition 3 (footer, closed and complete)"
std::string describe(std::size_t number, const mxf::Partition& partition);

} // namespace Corvid::Tool
