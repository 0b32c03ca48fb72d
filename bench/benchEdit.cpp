#include "bench/ChildProcess.h"
#include "bench/CommandRuns.h"
#include "bench/EditableClip.h"
#include "bench/Program.h"
#include "bench/Ratios.h"
#include "host/mxf/rewrite/disk/FileSystem.h"
#include "host/mxf/rewrite/disk/SystemFiles.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>

namespace {

using namespace Corvid;

using Bench::addRuns;
using Bench::ClipShape;
using Bench::command;
using Bench::EditableClip;
using Bench::Ratios;

constexpr std::uint64_t megabyte = 1000 * 1000;
constexpr std::uint64_t fiftyGigabytes = 50000 * megabyte;
constexpr std::size_t enoughRoom = 16384; // for the edit and what it leaves in the history
constexpr std::size_t noRoom = 20;

/// What an edit may read and write whatever the clip is like.
constexpr std::uint64_t allowance = 64 * 1024;

/// An edit of one property, the name of the first track.
struct Edit {
    const char* name; ///< in the place of "Track "
    std::vector<std::string> options;
};

/// All sets after this one move.
const Edit longerName = {"Another track ", {}};
/// Nothing moves.
const Edit otherName = {"Scene ", {"--no-identification"}};

/// The edit of a clip where it is, of which the bytes count that are read and written.
struct Counted {
    std::string name;
    ClipShape shape;
    const Edit& edit;
    std::uint64_t blocks; ///< of the file system that the edit may write for each partition
    /// How many times the bytes of metadata, as it is after the edit, packs and random index pack,
    /// beside the allowance.
    std::uint64_t times;
};

/// Where everything moves, it is read once to plan the edit and once to be kept, is written to the
/// recovery file as it was and as it will be, and into the clip.
constexpr std::uint64_t allMoves = 5;

const Counted countedEdits[] = {
    {"in place, 1 MB", {50, megabyte, 10, enoughRoom}, longerName, 0, 2},
    {"in place, 50 GB", {50, fiftyGigabytes, 10, enoughRoom}, longerName, 0, 2},
    {"in place, 50 GB, 2000 partitions", {50, fiftyGigabytes, 2000, enoughRoom}, longerName, 0, 2},
    {"in place, 50 GB, 10000 sets", {10000, fiftyGigabytes, 10, enoughRoom}, otherName, 0, 2},
    {"the same, where all sets move",
     {10000, fiftyGigabytes, 10, enoughRoom},
     longerName,
     0,
     allMoves},
    {"longer, 1 MB", {50, megabyte, 10, noRoom}, longerName, 1, 2},
    {"longer, 50 GB", {50, fiftyGigabytes, 10, noRoom}, longerName, 1, 2},
    {"longer, 50 GB, 2000 partitions", {50, fiftyGigabytes, 2000, noRoom}, longerName, 1, 2},
    {"longer, 50 GB, 10000 sets", {10000, fiftyGigabytes, 10, noRoom}, longerName, 1, allMoves},
};

std::uint64_t blockSizeOf(const std::string& path) {
    mxf::SystemFiles files;
    return files.insertionBlock(mxf::OpenFile(files, path, mxf::FileSystem::Access::read).number());
}

/// Registers a counted edit, made with `set` and with `apply`, and prints its ratios.
class CountedRuns {
public:
    /// @param clips, documents  folders: what is beside a clip is looked at.
    CountedRuns(const Counted& counted, const Bench::WorkFolder& clips,
                const Bench::WorkFolder& documents)
        : counted_(counted), clip_(counted.shape), path_(clips.path(counted.name + ".mxf")),
          document_(documents.path(counted.name + ".xml")) {
        clip_.writeTo(path_);
        block_ = blockSizeOf(path_);
        if (counted_.blocks != 0 && block_ == 0) {
            return; // nothing to insert here
        }
        std::vector<std::string> set = {command, "set", path_,
                                        "TimelineTrack[1]/TrackName=" + editDocument()};
        std::vector<std::string> apply = {command, "apply", document_, path_, "--in-place"};
        for (const std::string& option : counted_.edit.options) {
            set.push_back(option);
            apply.push_back(option);
        }
        const auto anew = [this] { clip_.writeTo(path_); };
        // The bytes are the same each time.
        addRuns("set " + counted_.name, set, 1, anew);
        addRuns("apply " + counted_.name, apply, 1, anew);
    }
    CountedRuns(const CountedRuns&) = delete;
    CountedRuns& operator=(const CountedRuns&) = delete;

    void print(Ratios& ratios) const {
        print(ratios, "set", 0);
        // The front of a document is looked at before it is read.
        print(ratios, "apply", 2 * std::filesystem::file_size(document_));
    }

private:
    /// Writes the document that makes the edit.
    /// @return the name that the track gets.
    std::string editDocument() const {
        Bench::run({command, "to-xml", path_, "-o", document_});
        std::ifstream in(document_, std::ios::binary);
        std::string text(std::istreambuf_iterator<char>(in), {});
        const std::string element = "TrackName>";
        const std::string old = "Track ";
        const auto at = text.find(element + old) + element.size();
        text.replace(at, old.size(), counted_.edit.name);
        std::ofstream(document_, std::ios::binary) << text;
        return text.substr(at, text.find('<', at) - at);
    }

    void print(Ratios& ratios, const std::string& verb, std::uint64_t document) const {
        const std::uint64_t growth = std::filesystem::file_size(path_) - clip_.size();
        const std::uint64_t allowed = counted_.times * (clip_.metadata() + growth + clip_.packs()) +
                                      allowance + document +
                                      counted_.blocks * block_ * clip_.partitions();
        ratios.print("bytes of " + verb + ", " + counted_.name,
                     ratios.valueOf({verb + " " + counted_.name, 1, 0, "bytes", "version"}),
                     static_cast<double>(allowed), 1.0);
    }

    const Counted& counted_;
    EditableClip clip_;
    std::string path_;
    std::string document_;
    std::uint64_t block_ = 0;
};

/// A grown copy, and one that is no more than a copy. Only memory copies at the same speed each
/// time.
class TimedCopies {
    static constexpr int often = 21;

public:
    TimedCopies() : folder_(folderInMemory()), clip_({50, 512 * megabyte, 10, noRoom}) {
        if (blockSizeOf(folder_.path("")) != 0) {
            std::cout << "there is no file system in memory: times of copies depend on the disk\n";
        }
        const std::string from = folder_.path("clip.mxf");
        const std::string to = folder_.path("copy.mxf");
        clip_.writeTo(from, EditableClip::Essence::data);
        const auto anew = [to] { std::filesystem::remove(to); };
        addRuns("grown copy",
                {command, "set", from, "TimelineTrack[1]/TrackName=Another track", "-o", to}, often,
                anew);
        addRuns("cp", {"/bin/cp", from, to}, often, anew);
    }

    static void print(Ratios& ratios) {
        for (const std::string counter : {"cpu_ms", "bytes"}) {
            ratios.print("growth by copying to cp, " +
                             std::string(counter == "bytes" ? counter : "processor time"),
                         {"grown copy", 1, 0, counter}, {"cp", 1, 0, counter}, 1.2);
        }
    }

private:
    static std::filesystem::path folderInMemory() {
        const std::filesystem::path shared = "/dev/shm";
        return std::filesystem::is_directory(shared) ? shared
                                                     : std::filesystem::temp_directory_path();
    }

    Bench::WorkFolder folder_;
    EditableClip clip_;
};

int runAll(int argc, char** argv) {
    const Bench::WorkFolder clips;
    const Bench::WorkFolder documents;
    addRuns("version", {command, "--version"}, 1);
    std::vector<std::unique_ptr<CountedRuns>> counted;
    for (const Counted& each : countedEdits) {
        counted.push_back(std::make_unique<CountedRuns>(each, clips, documents));
    }
    const TimedCopies copies;
    return Bench::runBenchmarks(argc, argv, [&](Ratios& ratios) {
        for (const auto& each : counted) {
            each->print(ratios);
        }
        TimedCopies::print(ratios);
    });
}

} // namespace

int main(int argc, char** argv) {
    return Corvid::Bench::runProgram("benchEdit", [&] { return runAll(argc, argv); });
}
