#pragma once

#include "host/base/TextHash.h"
#include "tools/corvid/batch/BatchOptions.h"
#include "tools/corvid/batch/Results.h"
#include "tools/corvid/output/Output.h"

#include <optional>
#include <string>
#include <unordered_map>

namespace Corvid::Tool {

/// Nothing for what is no file.
std::optional<FileStamp> stampOf(const std::string& path);

/// A file with a line of JSON for each of many files, with the keys that docs/many-files.md names.
/// Lines are added to those that are there. A last line that a crash has cut off is left out.
class Log {
public:
    /// The version of the form.
    static constexpr int schema = 1;

    /// @throws UsageError   the file is there and no log, or is not a file.
    /// @throws OutputError  it can't be written, or another process writes to it.
    /// @throws IOError      it can't be read.
    explicit Log(const BatchOptions& options);

    /// What a line says of a file that is done and has not changed since: ok, different or refused.
    /// Whether a file on a server has changed is to be found out: its stamp is in the result.
    /// @param output  the file with the result, which has to be as it was written, if it was; empty
    ///     for standard output.
    std::optional<DoneFile> findDone(const ListedFile& file, const std::string& output) const;

    /// Adds a line. What it says has been done, and the disk has it.
    /// @param output  likewise.
    /// @throws OutputError  it can't be written.
    void add(const FinishedFile& file, const std::string& output);

    /// Waits until the disk has it.
    /// @throws OutputError  it can't be written.
    void finish();
    /// The open file, for a process that shall not keep it.
    int number() const noexcept { return file_.number(); }

private:
    struct Done {
        DoneFile file;
        std::optional<FileStamp> stamp;
        bool hasOutput;
        std::optional<FileStamp> output;
        std::string options;
    };

    void readDone();
    void cutTornLine();

    std::string path_;
    std::string verb_;
    DataIO::FileDescriptor file_;
    std::unordered_map<std::string, Done, TextHash> done_;
};

} // namespace Corvid::Tool
