#pragma once

#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/dataio/MemorySource.h"
#include "host/mxf/File.h"
#include "host/mxf/SetReader.h"
#include "tests/support/MxfBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace Corvid::Testing {

/// Keeps the warnings.
class Collected : public mxf::WarningSink {
public:
    void warn(const mxf::Warning& warning) override { all.push_back(warning); }

    /// Whether one of the lines has the text in it.
    bool tell(const std::string& text) const {
        return std::any_of(all.begin(), all.end(), [&text](const mxf::Warning& warning) {
            return warning.message().find(text) != std::string::npos;
        });
    }
    std::string lines() const {
        std::string text;
        for (const auto& warning : all) {
            text += warning.message() + "\n";
        }
        return text;
    }

    std::vector<mxf::Warning> all;
};

/// A file in memory and what reading it says.
struct ReadBack {
    explicit ReadBack(Bytes content)
        : bytes(std::move(content)), file(Templates::auto_ptr<DataIO::RandomAccessSource>(
                                              new DataIO::MemorySource(bytes.data(), bytes.size())),
                                          MetaMetadata::Dictionary::builtIn(), warnings) {}
    explicit ReadBack(const MxfBuilder& builder) : ReadBack(builder.build()) {}

    /// Reads the metadata; it stays in `read`.
    Metadata::PartitionMetadata& metadata(
        mxf::PartitionChoice choice = mxf::PartitionChoice::automatic()) {
        read = file.readMetadata(choice);
        return *read.metadata;
    }

    Bytes bytes;
    Collected warnings;
    mxf::File file;
    mxf::HeaderMetadata read;
};

/// The bytes that a set has in a file.
inline Bytes bytesOf(const Metadata::MetadataSet& set, Metadata::PartitionMetadata& partition) {
    DataIO::Memory::MemoryDataSink sink;
    set.serialize(sink, partition.partitionDictionary());
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

/// What the call throws, as text; empty if it throws nothing.
template <class Call> std::string messageOf(Call call) {
    try {
        call();
    } catch (const Exceptions::BaseException& error) {
        return Platform::toUtf8(error.message());
    }
    return {};
}

template <class Case> std::string nameOfCase(const ::testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

} // namespace Corvid::Testing
