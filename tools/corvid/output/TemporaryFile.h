#pragma once

#include "host/dataio/FileDescriptor.h"
#include "tools/corvid/output/HiddenName.h"

#include <filesystem>
#include <string>
#include <sys/types.h>

namespace Corvid::Tool {

/// A file that is written out of sight and takes the place of another when it is complete; else it
/// goes away with the object.
class TemporaryFile {
public:
    /// When it gets the name that it has beside its target.
    enum class Naming : unsigned char {
        late,   ///< just before it is complete, so that nothing is left whatever ends the process;
                ///< at once where the system has no such files
        atOnce, ///< a signal handler removes it
    };

    /// @param folder  where its target is.
    /// @param permissions  of the file, less those that the process does not give.
    /// @param name  of the target, for messages.
    /// @throws OutputError  it can't be made.
    TemporaryFile(std::filesystem::path folder, mode_t permissions, std::string name,
                  Naming naming);

    int number() const noexcept { return file_.number(); }

    /// Gives it its final name, when its bytes are on the disk. From then on it stays, whatever
    /// fails.
    /// @throws OutputError  it can't be done.
    void moveTo(const std::string& target);

private:
    std::filesystem::path folder_;
    std::string name_;
    DataIO::FileDescriptor file_;
    HiddenName hidden_;
};

} // namespace Corvid::Tool
