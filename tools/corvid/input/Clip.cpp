#include "tools/corvid/input/Clip.h"

#include "host/base/Exceptions.h"
#include "host/dataio/OpenSource.h"
#include "host/mxf/rewrite/disk/InPlace.h"
#include "host/mxf/rewrite/disk/SystemFiles.h"
#include "tools/corvid/CommandWarnings.h"
#include "tools/corvid/remote/Address.h"
#include "tools/corvid/remote/RemoteSource.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/UsageError.h"

#include <charconv>
#include <filesystem>
#include <optional>

namespace Corvid::Tool {

namespace {

std::optional<mxf::PartitionChoice> choiceOf(const std::string& text) {
    if (text == "auto") {
        return mxf::PartitionChoice::automatic();
    }
    if (text == "header") {
        return mxf::PartitionChoice::header();
    }
    if (text == "footer") {
        return mxf::PartitionChoice::footer();
    }
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || text.empty()) {
        return std::nullopt;
    }
    return mxf::PartitionChoice::numbered(number);
}

/// The partitions that say that they have metadata, for people who asked for another one.
std::string partitionsWithMetadata(mxf::File& file) {
    constexpr std::size_t listed = 8;
    std::string text;
    std::size_t count = 0;
    const mxf::Partitions& all = file.partitions();
    for (std::size_t i = 0; i != all.size(); ++i) {
        if (all[i].pack.headerByteCount != 0 && ++count <= listed) {
            text += (text.empty() ? "" : ", ") + std::to_string(i) + " (" + all[i].pack.kindName() +
                    ")";
        }
    }
    if (count > listed) {
        text += " and " + std::to_string(count - listed) + " more";
    }
    return text.empty() ? "no partition says that it has metadata" : "metadata is in " + text;
}

/// Warns where the recovery file of an edit is beside the clip.
void warnOfUnfinishedEdit(const std::string& path, mxf::WarningSink& warnings) {
    std::error_code nothing;
    mxf::SystemFiles files;
    if (path != "-" && !isAddress(path) && std::filesystem::is_regular_file(path, nothing) &&
        mxf::needsRecovery(files, path)) {
        warnings.warn({CommandWarnings::unfinishedEdit,
                       "an edit of the file was interrupted; corvid recover brings back what was "
                       "there before"});
    }
}

} // namespace

bool isPartitionChoice(const std::string& text) { return choiceOf(text).has_value(); }

Templates::auto_ptr<DataIO::RandomAccessSource> openClip(const ClipOptions& options,
                                                         mxf::WarningSink& warnings,
                                                         std::optional<RemoteStamp>& stamp) {
    warnOfUnfinishedEdit(options.path, warnings);
    if (isMistakenAddress(options.path)) {
        throw Exceptions::IOError(
            "can't open " + shownName(options.path) +
                ": not an address that corvid reads (https:// or http://), and no such file",
            CORVID_HERE);
    }
    if (!isAddress(options.path)) {
        return DataIO::openSource(options.path);
    }
    if (options.remote.isForbidden) {
        throw UsageError{withoutSecrets(options.path) +
                         " is on a server, and --no-remote forbids to ask it"};
    }
    RemoteLimits limits;
    limits.mayDownload = options.remote.mayDownload;
    return openRemote(options.path, limits, stamp);
}

mxf::HeaderMetadata readMetadata(mxf::File& file, const ClipOptions& options) {
    const auto choice = choiceOf(options.partition);
    if (!choice) {
        throw Exceptions::InvalidArgument("no partition '" + options.partition +
                                              "', expected auto, header, footer or a number",
                                          CORVID_HERE);
    }
    try {
        return file.readMetadata(*choice);
    } catch (const Exceptions::InvalidFormat& error) {
        if (choice->kind() == mxf::PartitionChoice::Kind::automatic) {
            throw;
        }
        throw Exceptions::InvalidFormat(
            Platform::toUtf8(error.message()) + "; " + partitionsWithMetadata(file), CORVID_HERE);
    }
}

void noteOrigin(mxf::File& file, const mxf::HeaderMetadata& header, const ClipOptions& options,
                Messages& messages) {
    if (options.partition == "auto" && header.partition != 0) {
        messages.note("metadata is from " +
                      describe(header.partition, file.partitions()[header.partition]));
    }
}

std::string describe(std::size_t number, const mxf::Partition& partition) {
    return "partition " + std::to_string(number) + " (" + partition.pack.kindName() + ", " +
           partition.pack.statusName() + ")";
}

} // namespace Corvid::Tool
