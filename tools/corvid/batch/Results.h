#pragma once

#include "tools/corvid/batch/FileTask.h"
#include "tools/corvid/batch/ListedFile.h"

#include <cstdio>
#include <map>
#include <memory>

namespace Corvid::Tool {

/// Keeps bytes, much of them in a file that goes with the object.
class Spool {
public:
    /// The most bytes in memory.
    static constexpr std::size_t mostInMemory = 65'536;

    /// @throws OutputError  there is no room for them.
    void append(const unsigned char* bytes, std::size_t count);
    /// Gives all bytes, in pieces.
    void read(const std::function<void(const unsigned char*, std::size_t)>& take);

private:
    struct Closing {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };

    std::string bytes_;
    std::unique_ptr<std::FILE, Closing> file_;
};

/// A file of many with all that is known of it.
struct FinishedFile {
    ListedFile file;
    FileResult result;
};

/// Prints the results and messages about many files in the order of the files, each when all of it
/// is there: a result of which a part is missing is not printed.
class Results {
public:
    /// The most files whose results wait for those before them.
    static constexpr std::size_t mostWaiting = 256;

    /// @param printed  is called when a result is printed. All are borrowed.
    Results(const BatchWork& work, Messages& messages,
            std::function<void(const FinishedFile&)> printed)
        : work_(work), messages_(messages), printed_(std::move(printed)) {}

    /// Makes room for the next file.
    /// @return its number.
    std::size_t add(ListedFile file);
    bool hasRoom() const noexcept { return waiting_.size() < mostWaiting; }
    const ListedFile& file(std::size_t number) const { return waiting_.at(number).about.file; }

    void append(std::size_t file, const unsigned char* bytes, std::size_t count) {
        waiting_.at(file).spool.append(bytes, count);
    }
    /// @throws OutputError  a result can't be printed.
    void finish(std::size_t file, FileResult result);

private:
    struct Waiting {
        FinishedFile about;
        Spool spool = {};
        bool isFinished = false;
    };

    void print(Waiting& file);
    void printFrames(Waiting& file);

    const BatchWork& work_;
    Messages& messages_;
    std::function<void(const FinishedFile&)> printed_;
    std::map<std::size_t, Waiting> waiting_;
    std::size_t next_ = 0;
    bool isFirst_ = true;
};

} // namespace Corvid::Tool
