#pragma once

#include "tools/corvid/batch/ListedFile.h"

#include <optional>
#include <vector>

namespace Corvid::Tool {

/// Finds the MXF files in a folder and in the folders in it: names that end in ".mxf", in any case,
/// in the order of the bytes of their paths.
///
/// Links to folders are not followed, those to files are. A folder that contains itself, as mounts
/// can make it, is entered once. What Corvid has not finished writing is passed over.
class FolderWalk {
public:
    /// @param root     is followed where it is a link.
    /// @param skipped  a folder that is not entered.
    FolderWalk(std::string root, std::optional<FileIdentity> skipped);

    /// @return a file, or a folder that can't be read, with the reason; nothing at the end.
    std::optional<ListedFile> next();

private:
    struct Entry {
        std::string name; ///< of a folder with "/" at its end
        bool isFolder() const noexcept { return name.back() == '/'; }
    };
    struct Level {
        std::string path; ///< ends in "/"
        FileIdentity identity;
        std::vector<Entry> entries; ///< in reverse
    };

    /// @return why it can't be read; nothing where it is entered, or passed over.
    std::optional<ListedFile> enter(const std::string& path);

    std::optional<std::string> root_; ///< until it is entered
    std::optional<FileIdentity> skipped_;
    std::vector<Level> levels_;
};

} // namespace Corvid::Tool
