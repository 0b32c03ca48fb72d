// Reads the header metadata of a file, gives the material package a name, and writes a header
// partition with the result. examples/editClip.cpp changes a clip with its essence.

#include "host/base/ExceptionText.h"
#include "host/dataio/FileSink.h"
#include "host/dictionary/Dictionary.h"
#include "host/metadata/Properties.h"
#include "host/mxf/File.h"
#include "host/mxf/HeaderMetadataWriter.h"

#include <iostream>
#include <stdexcept>

using namespace Corvid;

namespace {

struct PrintWarnings : mxf::WarningSink {
    void warn(const mxf::Warning& warning) override {
        std::cerr << "warning: " << warning.message() << '\n';
    }
};

Metadata::MetadataSet& firstSet(const Metadata::PartitionMetadata& metadata, const char* name) {
    const auto sets = Metadata::findSets(metadata, name);
    if (sets.empty()) {
        throw std::runtime_error(std::string("there is no ") + name);
    }
    return *sets.front();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: changeMetadata FILE.mxf NEW-NAME NEW.mxf\n";
        return 2;
    }
    try {
        PrintWarnings warnings;
        mxf::File file(argv[1], MetaMetadata::Dictionary::builtIn(), warnings);
        const mxf::HeaderMetadata header = file.readMetadata();
        Metadata::PartitionMetadata& metadata = *header.metadata;

        Metadata::MetadataSet& package = firstSet(metadata, "MaterialPackage");
        if (const auto* old = Metadata::findValue<Types::UTF16String>(package, "PackageName")) {
            std::cout << "was: " << Platform::toUtf8(old->value()) << '\n';
        }
        Metadata::setValue(package, "PackageName",
                           Types::UTF16String(Platform::fromUtf8(argv[2]).c_str()));

        // Measures everything, so that nothing is refused after the first byte is written.
        const mxf::HeaderMetadataWriter writer(metadata);
        DataIO::FileSink output(argv[3]);
        mxf::writeHeaderPartition(mxf::headerPack(firstSet(metadata, "Preface")), writer, output);
        output.commit();
    } catch (...) {
        std::cerr << argv[1] << ": " << Exceptions::currentMessage() << '\n';
        return 1;
    }
}
