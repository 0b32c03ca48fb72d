#include "tools/corvid/input/StartSet.h"

#include "host/base/Exceptions.h"
#include "tools/corvid/input/InstanceText.h"
#include "tools/corvid/terminal/UsageError.h"

namespace Corvid::Tool {

StartSet::StartSet(std::string text) : text_(std::move(text)) {
    if (!text_.empty()) {
        identifier_ = parseInstanceUID(text_);
        if (!identifier_) {
            throw UsageError{"--start: expected an InstanceUID: 16 bytes as hexadecimal digits, "
                             "joined by full stops as in the documents, or a UUID"};
        }
    }
}

const Metadata::MetadataSet& StartSet::in(const Metadata::PartitionMetadata& metadata) const {
    if (identifier_) {
        const auto found = metadata.resolve(*identifier_);
        if (found.empty()) {
            throw Exceptions::InvalidArgument("no set with the InstanceUID " + text_ +
                                                  " to start from in this partition",
                                              CORVID_HERE);
        }
        return found.front();
    }
    const auto prefaces = metadata.find(Metadata::Structural::StructuralMetadataKeys::preface());
    if (prefaces.empty()) {
        throw Exceptions::InvalidFormat(
            "the partition has no Preface; --start INSTANCEUID begins with another set",
            CORVID_HERE);
    }
    return *prefaces.front();
}

} // namespace Corvid::Tool
