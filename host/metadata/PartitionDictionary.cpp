#include "host/metadata/PartitionDictionary.h"

#include "host/base/Exceptions.h"
#include "host/dictionary/AbstractMetaAttribute.h"
#include "host/dictionary/MetaElement.h"

#include <algorithm>
#include <functional>

namespace Corvid::Metadata {

namespace {

constexpr Types::u16 firstDynamicTag = 0x8000;

} // namespace

PartitionDictionary::PartitionDictionary(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary)
    : dictionary_(std::move(dictionary)) {
    if (!dictionary_) {
        throw Exceptions::InvalidArgument("no dictionary for a partition, expected one",
                                          CORVID_HERE);
    }
}

const Types::UniversalLabel* PartitionDictionary::find(const Types::LocalTag& tag,
                                                       bool alsoStatic) const {
    if (const auto entry = byTag_.find(tag.value());
        entry != byTag_.end() && entry->second != kept) {
        return &entries_[entry->second].second;
    }
    if (alsoStatic) {
        if (const auto* definition = dictionary_->findElementByStaticTag(tag.value())) {
            return &definition->label();
        }
    }
    return nullptr;
}

const Types::UniversalLabel* PartitionDictionary::find(const Types::UniversalLabel& label) const {
    const auto entry = byLabel_.find(label.withoutVersion());
    return entry == byLabel_.end() ? nullptr : &entries_[entry->second].second;
}

Types::LocalTag PartitionDictionary::findOrGenerate(const Types::UniversalLabel& label) {
    if (const auto entry = byLabel_.find(label.withoutVersion()); entry != byLabel_.end()) {
        return entries_[entry->second].first;
    }
    const auto* definition = dictionary_->findElement(label);
    Types::u16 tag = definition == nullptr ? Types::u16{0} : definition->staticLocalTag();
    if (tag == 0 || byTag_.count(tag) != 0) {
        tag = freeDynamicTag();
        generated_.push_back(tag);
    }
    add(Types::LocalTag(tag), label);
    return Types::LocalTag(tag);
}

Types::LocalTag PartitionDictionary::findOrGenerate(const Types::UniversalLabel& label,
                                                    const Types::LocalTag& likely) {
    const bool areLabelsUnique = byLabel_.size() == entries_.size();
    const Types::UniversalLabel* const found = areLabelsUnique ? find(likely, false) : nullptr;
    return found != nullptr && found->withoutVersion() == label.withoutVersion()
               ? likely
               : findOrGenerate(label);
}

Types::u16 PartitionDictionary::freeDynamicTag() {
    while (nextDynamicTag_ >= firstDynamicTag && byTag_.count(nextDynamicTag_) != 0) {
        --nextDynamicTag_;
    }
    if (nextDynamicTag_ < firstDynamicTag) {
        throw Exceptions::LimitExceeded(
            "all 32768 dynamic local tags of the partition are in use, so a property gets none",
            CORVID_HERE);
    }
    return nextDynamicTag_;
}

Types::LocalTag PartitionDictionary::tagForUnknown(const Types::LocalTag& written) {
    if (!std::binary_search(generated_.begin(), generated_.end(), written.value(),
                            std::greater<>())) {
        return written;
    }
    const Types::u16 tag = freeDynamicTag();
    byTag_.emplace(tag, kept);
    return Types::LocalTag(tag);
}

Types::LocalTag PartitionDictionary::tagOf(const MetaMetadata::AbstractMetaAttribute& attribute) {
    const auto& facts = attribute.facts();
    return facts.definition == nullptr ? Types::LocalTag(facts.localTag)
                                       : findOrGenerate(facts.definition->label());
}

void PartitionDictionary::keepTagOf(const MetaMetadata::AbstractMetaAttribute& attribute) {
    keep(Types::LocalTag(attribute.facts().localTag));
}

void PartitionDictionary::keep(const Types::LocalTag& tag) {
    // A static tag is given to its own label only.
    if (!tag.isStaticLocalTag()) {
        byTag_.emplace(tag.value(), kept);
    }
}

void PartitionDictionary::addStatic(const Types::LocalTag& tag) {
    if (find(tag, false) == nullptr) {
        if (const auto* label = find(tag, true)) {
            add(tag, *label);
        }
    }
}

void PartitionDictionary::add(const Types::LocalTag& tag, const Types::UniversalLabel& label) {
    const std::size_t index = entries_.size();
    entries_.emplace_back(tag, label);
    if (const auto place = byTag_.emplace(tag.value(), index).first; place->second == kept) {
        place->second = index;
    }
    byLabel_.emplace(label.withoutVersion(), index);
}

} // namespace Corvid::Metadata
