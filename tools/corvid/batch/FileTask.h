#pragma once

#include "tools/corvid/remote/RemoteStamp.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Corvid::Tool {

class Messages;
class Output;

/// One file that a verb reads, alone or as one of many.
struct FileTask {
    std::string path;         ///< "-" is standard input
    Output& output;           ///< takes the result; who has written all of it calls commit()
    Messages& messages;       ///< about this file
    bool isOneOfMany = false; ///< others follow in this process
    std::uint64_t bytesRead = 0;
    std::optional<RemoteStamp> remote = {}; ///< of a file on a server
    unsigned char verdict = 0;              ///< what the verb's own summary counts
};

/// What the work on a file ended with. Each is worse than the one before.
enum class FileStatus : unsigned char {
    ok,
    different,  ///< all was read, and is not as it should be
    refused,    ///< the data can't be used
    unreadable, ///< the file can't be read, or the result not be written
    crashed,    ///< the process that worked on it ended, or had not enough memory
};

inline constexpr std::size_t fileStatusCount = 5;
/// As the log and the summary call them.
inline constexpr const char* fileStatusNames[fileStatusCount] = {"ok", "different", "refused",
                                                                 "unreadable", "crashed"};
inline const char* nameOf(FileStatus status) {
    return fileStatusNames[static_cast<std::size_t>(status)];
}

/// How the work on one of many files went.
struct FileResult {
    struct Facts {
        FileStatus status = FileStatus::ok;
        unsigned char verdict = 0; ///< of the task
        bool hasResult = false;    ///< a result was written
        bool isUnchanged = false;  ///< nothing was done: its server says that it is as it was
        bool isDiskFull = false;   ///< no other file can be written, either
        std::uint64_t warnings = 0;
        std::uint64_t bytesRead = 0;
        double seconds = 0;
    } facts;
    std::string error = {};                 ///< what went wrong; empty where nothing did
    std::optional<RemoteStamp> remote = {}; ///< of a file on a server
    bool isErrorTold = false;               ///< people have read it among the messages
};

/// What a verb does with many files.
struct BatchWork {
    /// Does it with one. Throws as guard() takes it. Called in another process, for many files.
    std::function<void(FileTask&)> work;

    std::string suffix;       ///< of the files in an output folder
    bool isDocument = false;  ///< several can't follow each other on standard output
    bool mayDestroy = false;  ///< results may replace MXF files
    std::string head = {};    ///< in front of all results on standard output
    std::string between = {}; ///< them
    std::vector<std::string> dictionaries = {};
    /// Another file that the result of one depends on. May be empty.
    std::function<std::string(const std::string& path)> other = {};
    /// Called with each result, in order. May be empty.
    std::function<void(const FileResult&)> count = {};
};

} // namespace Corvid::Tool
