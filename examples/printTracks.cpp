// Prints the packages of a file with their tracks and timecode. No XML is involved.

#include "host/base/ExceptionText.h"
#include "host/dictionary/Dictionary.h"
#include "inspection/Summary.h"

#include <iostream>

using namespace Corvid;

namespace {

struct PrintWarnings : mxf::WarningSink {
    void warn(const mxf::Warning& warning) override {
        std::cerr << "warning: " << warning.message() << '\n';
    }
};

void print(const Inspection::Summary::Track& track) {
    std::cout << "  track " << track.id.value_or(0) << ": " << track.kind;
    if (!track.name.empty()) {
        std::cout << " '" << track.name << "'";
    }
    if (const auto length = Inspection::seconds(track.duration.value_or(0), track.editRate)) {
        std::cout << ", " << *length << " s";
    }
    if (track.timecode) {
        std::cout << ", from " << Inspection::timecodeText(*track.timecode);
    }
    std::cout << '\n';
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: printTracks FILE.mxf\n";
        return 2;
    }
    try {
        PrintWarnings warnings;
        mxf::File file(argv[1], MetaMetadata::Dictionary::builtIn(), warnings);
        const Inspection::Summary summary = Inspection::summarise(file, file.readMetadata());
        for (const auto& package : summary.packages) {
            std::cout << package.kind << " package " << package.name << '\n';
            for (const auto& track : package.tracks) {
                print(track);
            }
        }
    } catch (...) {
        std::cerr << argv[1] << ": " << Exceptions::currentMessage() << '\n';
        return 1;
    }
}
