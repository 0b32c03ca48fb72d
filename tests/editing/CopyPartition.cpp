#include "tests/editing/CopyPartition.h"

#include "host/dataio/Memory.h"

namespace Corvid::Testing {

namespace {

using Metadata::Element;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;

/// Calls the work with every element of the set that has a value; the label is null for one that
/// does not belong to its class.
template <class Work> void forEachValueOf(const MetadataSet& set, Work work) {
    for (const auto& [label, element] : set.made()) {
        if (!element->isSkipped()) {
            work(&label, *element);
        }
    }
    for (auto element = set.invalidBegin(); element != set.invalidEnd(); ++element) {
        if (!(*element)->isSkipped()) {
            work(static_cast<const Types::UniversalLabel*>(nullptr), **element);
        }
    }
}

bool copyValues(const MetadataSet& from, MetadataSet& to, const Edits& edits) {
    bool fits = true;
    forEachValueOf(from, [&](const Types::UniversalLabel* label, const Element& element) {
        std::string bytes = valueOf(element);
        if (edits.keepsValue && !edits.keepsValue(element, bytes)) {
            return;
        }
        Element& copy = label == nullptr
                            ? to.createInvalidElement(element.metaAttribute(), element.localTag())
                            : to.createElement(*label, element.metaAttribute(), element.localTag());
        fits = copy.parse({reinterpret_cast<const Types::u8*>(bytes.data()), bytes.size()}) && fits;
    });
    return fits;
}

} // namespace

std::string valueOf(const Element& element) {
    DataIO::Memory::MemoryDataSink sink;
    element.serialize(sink);
    return {reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()};
}

void forEachValue(const PartitionMetadata& partition,
                  const std::function<void(const MetadataSet&, const Element&)>& work) {
    for (const MetadataSet* set : partition) {
        forEachValueOf(*set, [&](const Types::UniversalLabel*, const Element& element) {
            work(*set, element);
        });
    }
}

std::unique_ptr<PartitionMetadata> copyOf(const PartitionMetadata& source, const Edits& edits) {
    auto copy = std::make_unique<PartitionMetadata>(source.partitionDictionary().dictionary());
    for (const auto& [tag, label] : source.partitionDictionary()) {
        copy->partitionDictionary().add(tag, label);
    }
    for (const MetadataSet* set : source) {
        if (edits.keepsSet && !edits.keepsSet(*set)) {
            continue;
        }
        const auto* const definition = set->metaMetadataSet();
        MetadataSet& made = definition == nullptr
                                ? copy->createDarkParsedGroup(set->key())
                                : copy->createEmptyMetadataSet(set->key(), *definition);
        made.setBerLength(set->berLength());
        if (!copyValues(*set, made, edits)) {
            return nullptr;
        }
    }
    return copy;
}

void forEachChangedByte(const PartitionMetadata& source, const EditedWork& work) {
    forEachValue(source, [&](const MetadataSet& set, const Element& element) {
        const std::size_t size = valueOf(element).size();
        for (std::size_t place = 0; place != size; ++place) {
            Edits edits;
            edits.keepsValue = [&](const Element& each, std::string& bytes) {
                if (&each == &element) {
                    bytes[place] = static_cast<char>(bytes[place] ^ 1);
                }
                return true;
            };
            if (const auto copy = copyOf(source, edits)) {
                work(set, element, *copy);
            }
        }
    });
}

void forEachMissingValue(const PartitionMetadata& source, const EditedWork& work) {
    forEachValue(source, [&](const MetadataSet& set, const Element& element) {
        Edits edits;
        edits.keepsValue = [&](const Element& each, std::string&) { return &each != &element; };
        const auto copy = copyOf(source, edits);
        work(set, element, *copy);
    });
}

} // namespace Corvid::Testing
