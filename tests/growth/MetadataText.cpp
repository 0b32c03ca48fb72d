#include "tests/growth/MetadataText.h"

#include "host/dictionary/Dictionary.h"
#include "host/dictionary/MetaElement.h"

#include <map>
#include <numeric>

namespace Corvid::Testing {

namespace {

void append(Bytes& to, const Bytes& bytes) { to.insert(to.end(), bytes.begin(), bytes.end()); }

Bytes propertiesOf(const std::vector<TaggedValue>& properties) {
    Bytes bytes;
    for (const auto& [tag, value] : properties) {
        append(bytes, property(tag, value));
    }
    return bytes;
}

} // namespace

MetadataText& MetadataText::preface(unsigned tag, Bytes value) {
    tags_.insert(tag);
    preface_.emplace_back(tag, std::move(value));
    return *this;
}

MetadataText& MetadataText::contentStorage(unsigned tag, Bytes value) {
    tags_.insert(tag);
    storage_.emplace_back(tag, std::move(value));
    return *this;
}

MetadataText& MetadataText::add(unsigned char set, unsigned instance,
                                const std::vector<TaggedValue>& properties) {
    for (const auto& each : properties) {
        tags_.insert(each.first);
    }
    append(sets_, Testing::set(structuralKey(set), instance, {propertiesOf(properties)}));
    return *this;
}

MetadataText& MetadataText::add(const Bytes& klvs) {
    append(sets_, klvs);
    return *this;
}

MetadataText& MetadataText::primerEntry(unsigned tag, const Bytes& label) {
    entries_.emplace_back(tag, label);
    return *this;
}

Bytes MetadataText::metadata() const {
    const auto dictionary = MetaMetadata::Dictionary::builtIn();
    std::map<unsigned, Bytes> known(standardLabels().begin(), standardLabels().end());
    for (const unsigned tag : tags_) {
        const auto* element = dictionary->findElementByStaticTag(static_cast<unsigned short>(tag));
        if (element != nullptr) {
            const unsigned char* label = element->label().rawBuffer();
            known.emplace(tag, Bytes(label, label + 16));
        }
    }
    std::vector<std::pair<unsigned, Bytes>> entries(known.begin(), known.end());
    entries.insert(entries.end(), entries_.begin(), entries_.end());
    Bytes bytes = primer(entries);
    append(bytes, Testing::set(structuralKey(prefaceSet), 1,
                               {property(0x3B02, hex("07e8 02 1d 0c 1e 0f 7d")),
                                property(0x3B09, hex("060e2b34 04010101 0d010201 01010100")),
                                property(0x3B03, uuid(storage)), propertiesOf(preface_)}));
    append(bytes,
           Testing::set(structuralKey(contentStorageSet), storage, {propertiesOf(storage_)}));
    append(bytes, sets_);
    return bytes;
}

std::string MetadataText::file() const {
    return asText(MxfBuilder().add(headerPartition(metadata())).build());
}

Bytes unknownLabel(unsigned number) {
    return join({hex("06.0e.2b.34.01.01.01.01.0e.7d.01.00"), Testing::number(number, 4)});
}

Bytes references(const std::vector<unsigned>& instances) {
    std::vector<Bytes> items;
    items.reserve(instances.size());
    for (const unsigned instance : instances) {
        items.push_back(uuid(instance));
    }
    return batch(items, 16);
}

std::vector<unsigned> numbers(unsigned first, std::size_t count) {
    std::vector<unsigned> result(count);
    std::iota(result.begin(), result.end(), first);
    return result;
}

} // namespace Corvid::Testing
