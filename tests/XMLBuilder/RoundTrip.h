#pragma once

#include "host/mxf/File.h"
#include "tests/XMLBuilder/XmlOf.h"
#include "tests/support/DocumentText.h"
#include "tests/support/Paths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

/// What tests need that write a partition as a document and read it back.
namespace Corvid::Testing {

/// The document of a partition; characters that XML cannot hold are replaced.
inline std::string documentOf(Metadata::PartitionMetadata& partition, Flags flags) {
    const auto document =
        XMLBuilder::partition2XML(&partition, flags.referencesAsValues, flags.skipNonStructural);
    XMLUtils::ReplaceInvalidCharacters invalid;
    DataIO::Memory::MemoryDataSink sink;
    XMLUtils::serialise(document.get(), XMLUtils::EncodingType::utf8, XMLUtils::Layout::compact,
                        invalid, sink);
    return {reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()};
}

struct NoWarnings : mxf::WarningSink {
    void warn(const mxf::Warning&) override {}
};

/// Calls the body with the metadata of each real file there is.
template <class Body> void forEachSample(Body body) {
    for (const auto& entry : std::filesystem::directory_iterator(samplesDir())) {
        if (entry.path().extension() == ".mxf") {
            SCOPED_TRACE(entry.path().filename());
            NoWarnings warnings;
            mxf::File file(entry.path().string(), MetaMetadata::Dictionary::builtIn(), warnings);
            const auto read = file.readMetadata(mxf::PartitionChoice::header());
            body(*read.metadata);
        }
    }
}

} // namespace Corvid::Testing
