#include "host/dataio/MemorySource.h"
#include "host/mxf/File.h"
#include "tests/allocation/Sweep.h"
#include "tests/support/HeaderPartition.h"
#include "tests/support/RichModel.h"

#include <gtest/gtest.h>

#include <vector>

namespace Corvid::Testing {
namespace {

const std::set<std::string> outOfMemory = {"std::bad_alloc"};

using Octets = std::vector<unsigned char>;

std::string asText(const Octets& bytes) { return {bytes.begin(), bytes.end()}; }

class WritesKlv : public Subject {
public:
    WritesKlv() { fillRichly(model_); }

    void call() override { bytes_ = headerPartitionOf(model_.partition); }
    std::string result() override { return asText(bytes_); }

private:
    Model model_ = emptyModel();
    Octets bytes_;
};

struct Warnings : mxf::WarningSink {
    void warn(const mxf::Warning& warning) override { text += warning.message() + "\n"; }
    std::string text;
};

/// Reads the bytes of a file, with its warnings.
class ReadsMxf : public Subject {
public:
    explicit ReadsMxf(const Octets& bytes) : bytes_(bytes) {}

    void call() override {
        mxf::File file(Templates::auto_ptr<DataIO::RandomAccessSource>(
                           new DataIO::MemorySource(bytes_.data(), bytes_.size())),
                       dictionary_.partition.partitionDictionary().dictionary(), warnings_);
        read_ = file.readMetadata();
    }
    std::string result() override {
        return warnings_.text + asText(headerPartitionOf(*read_.metadata));
    }

private:
    const Octets& bytes_;
    Model dictionary_ = emptyModel();
    Warnings warnings_;
    mxf::HeaderMetadata read_;
};

Octets richFile() {
    Model model = emptyModel();
    fillRichly(model);
    return headerPartitionOf(model.partition);
}

using MxfWithoutMemory = WithoutMemory;

TEST_F(MxfWithoutMemory, isNotWritten) {
    sweep([] { return std::make_unique<WritesKlv>(); }, outOfMemory);
}

TEST_F(MxfWithoutMemory, isNotRead) {
    const Octets bytes = richFile();
    sweep([&] { return std::make_unique<ReadsMxf>(bytes); }, outOfMemory);
}

TEST_F(MxfWithoutMemory, isNotReadUpToWhereItIsCutOff) {
    Octets bytes = richFile();
    bytes.resize(bytes.size() * 2 / 3);
    sweep([&] { return std::make_unique<ReadsMxf>(bytes); }, outOfMemory);
}

TEST_F(MxfWithoutMemory, isNotRefusedInstead) {
    const Octets bytes(64, 'x');
    sweep([&] { return std::make_unique<ReadsMxf>(bytes); }, outOfMemory);
}

} // namespace
} // namespace Corvid::Testing
