#include "tools/corvid/output/OpenOutput.h"

#include "host/dataio/OpenSource.h"
#include "host/mxf/HeaderMetadataReader.h"
#include "host/mxf/Keys.h"
#include "tools/corvid/terminal/UsageError.h"

#include <algorithm>
#include <filesystem>
#include <unistd.h>

namespace Corvid::Tool {

namespace {

/// A file that a result is about to replace.
class Victim {
public:
    /// @throws InvalidFormat  it is not an MXF file.
    /// @throws InvalidLength  it is, but ends inside its first partition pack.
    explicit Victim(DataIO::RandomAccessSource& source)
        : window_(source), header_(mxf::findHeaderPartition(window_, noWarnings_)) {}

    /// Whether it has nothing but a header partition and its metadata. What can't be read to its
    /// end may have more; what its pack says of essence, an index or a footer was cut off, or is
    /// being written.
    bool isHeaderPartition() {
        const mxf::PartitionPack& pack = header_.pack;
        if (pack.footerPartition != 0 || pack.bodySid != 0 || pack.indexByteCount != 0) {
            return false;
        }
        const auto start = mxf::findHeaderMetadata(window_, header_);
        std::uint64_t position = start ? start->triplet.offset : header_.triplet.end();
        const std::uint64_t metadataEnd = position + (start ? header_.pack.headerByteCount : 0);
        window_.readAheadUpTo(metadataEnd);
        bool isAlone = header_.pack.kind == mxf::PartitionKind::header && header_.offset() == 0;
        while (isAlone && hasBytes(position, 1)) {
            const auto triplet = KLV::readTriplet(window_, position);
            const bool isMetadata = position < metadataEnd && !mxf::endsHeaderMetadata(triplet.key);
            isAlone = (isMetadata || mxf::isFill(triplet.key)) &&
                      hasBytes(triplet.valueOffset(), triplet.length.value);
            position = triplet.end();
        }
        window_.readAheadUpTo(0);
        return isAlone;
    }

    /// " with essence (3 partitions, 123456 bytes)"
    std::string describe() {
        const auto partitions = mxf::findPartitions(window_, header_, noWarnings_);
        const bool hasEssence =
            std::any_of(partitions.begin(), partitions.end(),
                        [](const mxf::Partition& each) { return each.pack.bodySid != 0; });
        return (hasEssence ? " with essence (" : " (") + std::to_string(partitions.size()) +
               (partitions.size() == 1 ? " partition, " : " partitions, ") +
               std::to_string(window_.source().size()) + " bytes)";
    }

private:
    bool hasBytes(std::uint64_t offset, std::uint64_t count) {
        return window_.source().available(offset, count) == count;
    }

    mxf::NoWarnings noWarnings_;
    DataIO::ReadWindow window_;
    mxf::Partition header_;
};

bool isHeaderPartition(Victim& victim) {
    try {
        return victim.isHeaderPartition();
    } catch (const Exceptions::InvalidLength&) {
        return false;
    }
}

/// What would be lost: empty where the file may be replaced.
std::string whatIsLost(const std::string& path, MayReplace mayReplace) {
    try {
        const auto source = DataIO::openSource(path);
        Victim victim(*source);
        if (mayReplace == MayReplace::headerPartition && isHeaderPartition(victim)) {
            return "";
        }
        return "an MXF file" + victim.describe() + " is there and would be lost";
    } catch (const Exceptions::InvalidFormat&) {
        return ""; // not an MXF file
    } catch (const Exceptions::InvalidLength&) {
        return "a damaged MXF file is there and would be lost";
    } catch (const Exceptions::IOError& error) {
        return Platform::toUtf8(error.message()) +
               ", so it may be an MXF file, which would be lost";
    }
}

void protectInputs(const std::vector<std::string>& inputs, const Output& output) {
    const auto inputOf = [&inputs](const Output& each) {
        return std::find_if(inputs.begin(), inputs.end(),
                            [&each](const std::string& input) { return each.goesTo(input); });
    };
    if (inputOf(DescriptorOutput(STDERR_FILENO, "standard error")) != inputs.end()) {
        // Any message would damage the input: even the one that says so.
        ::close(STDERR_FILENO);
        throw UsageError{"standard error is the input itself"};
    }
    if (const auto input = inputOf(output); input != inputs.end()) {
        throw UsageError{(*input == "-" ? "standard input" : *input) +
                         ": the output is the input itself"};
    }
}

} // namespace

void protectInputs(const std::vector<std::string>& inputs) {
    protectInputs(inputs, DescriptorOutput(STDOUT_FILENO, "standard output"));
}

void refuseToDestroy(const std::string& path, MayReplace mayReplace) {
    std::error_code error;
    // Devices and pipes are not replaced but written to.
    if (mayReplace == MayReplace::everything || path == "-" ||
        !std::filesystem::is_regular_file(path, error)) {
        return;
    }
    if (const std::string loss = whatIsLost(path, mayReplace); !loss.empty()) {
        throw UsageError{path + ": " + loss + "; --force replaces it"};
    }
}

std::unique_ptr<Output> openOutput(const std::string& path, const std::vector<std::string>& inputs,
                                   MayReplace mayReplace) {
    auto output = Output::open(path);
    protectInputs(inputs, *output);
    refuseToDestroy(path, mayReplace);
    return output;
}

} // namespace Corvid::Tool
