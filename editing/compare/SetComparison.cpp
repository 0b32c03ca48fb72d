#include "editing/compare/SetComparison.h"

#include "editing/StoredBytes.h"
#include "editing/compare/ShortValue.h"
#include "host/base/Hex.h"
#include "host/metadata/Elements.h"
#include "host/metadata/Names.h"

#include <algorithm>

namespace Corvid::Editing {

namespace {

using Kind = DifferenceKind;
using Metadata::MetadataSet;

/// Renames the references of a value in its bytes.
class RenamedBytes : public Metadata::Visitors::ElementVisitor {
public:
    /// @param bytes  hold the value from there on.
    RenamedBytes(const Renaming& renaming, std::string& bytes, std::size_t value)
        : renaming_(renaming), bytes_(bytes), value_(value) {}

    void visit(const Metadata::ReferenceBatchElement& element) override { collection(element); }
    void visit(const Metadata::ReferenceArrayElement& element) override { collection(element); }
    void visit(const Metadata::ReferenceElement& element) override {
        rename(0, element.value()->uuid());
    }
    void visit(const Metadata::BatchElement&) override {}
    void visit(const Metadata::ArrayElement&) override {}
    void visit(const Metadata::SimpleElement&) override {}

private:
    void collection(const Metadata::ReferenceCollectionElement& element) {
        constexpr std::size_t head = 8;
        for (Types::u32 i = 0; i != element.size(); ++i) {
            rename(head + i * Types::Reference::fixedSize, element.at(i).uuid());
        }
    }
    void rename(std::size_t offset, const Types::UUID& target) {
        const auto& name = renaming_.of(target).bytes();
        std::copy(name.begin(), name.end(),
                  bytes_.begin() + static_cast<std::ptrdiff_t>(value_ + offset));
    }

    const Renaming& renaming_;
    std::string& bytes_;
    std::size_t value_;
};

/// Appends the bytes of a value, its references renamed.
void appendBytes(const Metadata::Element& element, const Renaming& renaming, std::string& to) {
    RenamedBytes visitor(renaming, to, to.size());
    Editing::appendBytes(element, to);
    if (renaming.size() != 0) {
        element.accept(visitor);
    }
}

std::string bytesOf(const Metadata::Element& element, const Renaming& renaming) {
    std::string bytes;
    bytes.reserve(element.serializedSize());
    appendBytes(element, renaming, bytes);
    return bytes;
}

std::string hexOf(unsigned char byte) { return Hex::encoded<std::string>(&byte, 1, Hex::lower); }

std::string versions(unsigned char before, unsigned char after) {
    return "version " + hexOf(before) + " came back as " + hexOf(after);
}

/// What of two keys of the same class differs.
std::string keyDifference(const KLV::Key& before, const KLV::Key& after) {
    return KLV::hasBerLengths(before) == KLV::hasBerLengths(after)
               ? versions(before[7], after[7])
               : "key " + Platform::toUtf8(before.toString()) + " came back as " +
                     Platform::toUtf8(after.toString());
}

/// The InstanceUID of a set; null without one.
const Metadata::Element* findInstanceUID(const MetadataSet& set) {
    for (const auto& [label, element] : set.made()) {
        if (Metadata::Structural::isInstanceUID(label) && !element->isSkipped()) {
            return element;
        }
    }
    return nullptr;
}

template <class Image>
std::string contentOf(const Metadata::PartitionDictionary& tags, const MetadataSet& set,
                      Image image) {
    const auto key = set.key().forMatching();
    std::string text(key.begin(), key.end());
    for (const auto& property : listProperties(tags, set)) {
        const std::string value = image(*property.element);
        text.append(property.identity.begin(), property.identity.end());
        text += std::to_string(value.size()) + ":" + value;
    }
    return text;
}

} // namespace

Difference SetComparison::differenceOf(Kind kind, const MetadataSet& set, std::string detail) {
    return {kind,
            className(set),
            set.hasInstanceUID() ? Platform::toUtf8(set.instanceUID().toString()) : std::string(),
            "",
            std::move(detail),
            DifferenceIdentifiers::both};
}

void SetComparison::add(Kind kind, const Metadata::PartitionDictionary& tags,
                        const ListedProperty& property, std::string detail) {
    Difference difference = differenceOf(kind, *set_, std::move(detail));
    difference.property = propertyName(tags, *property.element);
    differences_.add(std::move(difference));
}

std::string SetComparison::contentBefore(const MetadataSet& before) const {
    return contentOf(before_, before,
                     [this](const auto& element) { return bytesOf(element, renaming_); });
}

std::string SetComparison::content(const MetadataSet& after) const {
    return contentOf(after_, after,
                     [this](const auto& element) { return bytesOf(element, asTheyAre_); });
}

void SetComparison::compare(const MetadataSet& before, const MetadataSet& after) {
    set_ = &before;
    if (!KLV::matches(before.key(), after.key())) {
        add(Kind::otherClass, before, "came back as " + className(after));
    } else if (before.key() != after.key()) {
        add(Kind::keyVersion, before, keyDifference(before.key(), after.key()));
    } else if (before.propertyBerLength() != after.propertyBerLength()) {
        add(Kind::keyVersion, before,
            "lengths of " + std::to_string(before.propertyBerLength()) + " octets came back with " +
                std::to_string(after.propertyBerLength()));
    }
    compareInstanceUIDs(before, after);
    if (!sayTheSame(before, after)) {
        compareProperties(before, after);
    }
}

/// Nearly all sets come back as they were, and to find that takes far less than to find what
/// differs. False does not say that anything does.
bool SetComparison::sayTheSame(const MetadataSet& before, const MetadataSet& after) {
    if (before.invalidBegin() != before.invalidEnd() ||
        after.invalidBegin() != after.invalidEnd()) {
        return false;
    }
    const auto isCompared = [](const MetadataSet::Entry& entry) {
        return !entry.second->isSkipped() && !Metadata::Structural::isInstanceUID(entry.first);
    };
    bytesBefore_.clear();
    bytesAfter_.clear();
    auto fresh = after.made().begin();
    const auto freshEnd = after.made().end();
    for (const auto& old : before.made()) {
        if (!isCompared(old)) {
            continue;
        }
        fresh = std::find_if(fresh, freshEnd, isCompared);
        if (fresh == freshEnd ||
            old.second->metaAttribute().get() != fresh->second->metaAttribute().get() ||
            labelInFile(before_, *old.second) != labelInFile(after_, *fresh->second)) {
            return false;
        }
        appendBytes(*old.second, renaming_, bytesBefore_);
        appendBytes(*fresh->second, asTheyAre_, bytesAfter_);
        if (bytesBefore_.size() != bytesAfter_.size()) {
            return false;
        }
        ++fresh;
    }
    return std::none_of(fresh, freshEnd, isCompared) && bytesBefore_ == bytesAfter_;
}

void SetComparison::compareProperties(const MetadataSet& before, const MetadataSet& after) {
    const Properties olds = listProperties(before_, before);
    const Properties news = listProperties(after_, after);
    Range old{olds.begin(), olds.begin()};
    Range fresh{news.begin(), news.begin()};
    const auto advance = [](Range& range, auto end, const ListedProperty::Identity& identity) {
        range.second = std::find_if(range.first, end, [&](const ListedProperty& property) {
            return property.identity != identity;
        });
    };
    while (old.first != olds.end() || fresh.first != news.end()) {
        const bool isOld = fresh.first == news.end() ||
                           (old.first != olds.end() && old.first->identity < fresh.first->identity);
        const auto identity = (isOld ? old : fresh).first->identity;
        advance(old, olds.end(), identity);
        advance(fresh, news.end(), identity);
        compareAlike(old, fresh);
        old.first = old.second;
        fresh.first = fresh.second;
    }
}

/// The identifiers may be others, but not what says that they are identifiers.
void SetComparison::compareInstanceUIDs(const MetadataSet& before, const MetadataSet& after) {
    const auto* const old = findInstanceUID(before);
    const auto* const fresh = findInstanceUID(after);
    if (old == nullptr || fresh == nullptr) {
        return;
    }
    const auto label = labelInFile(before_, *old);
    const auto inFile = labelInFile(after_, *fresh);
    if (inFile != label) {
        Difference difference =
            differenceOf(Kind::labelVersion, before, versions(label[7], inFile[7]));
        difference.property = "InstanceUID";
        differences_.add(std::move(difference));
    }
}

/// Properties of one identity: one, or in stored order those that the set has repeatedly.
void SetComparison::compareAlike(Range olds, Range news) {
    auto& [fresh, freshEnd] = news;
    for (auto old = olds.first; old != olds.second; ++old) {
        const std::string whole = bytesOf(*old->element, renaming_);
        const bool isSame = fresh != freshEnd && bytesOf(*fresh->element, asTheyAre_) == whole;
        // One that is missing leaves its place to the next, unless there is one for each.
        if (!isSame && freshEnd - fresh < olds.second - old) {
            add(Kind::missingProperty, before_, *old, "was " + shortValue(*old->element));
            continue;
        }
        if (isSame) {
            compareLabels(*old, *fresh);
        } else {
            add(Kind::otherValue, before_, *old,
                shortValue(*old->element) + " came back as " + shortValue(*fresh->element));
        }
        ++fresh;
    }
    for (; fresh != freshEnd; ++fresh) {
        add(Kind::extraProperty, after_, *fresh, "is " + shortValue(*fresh->element));
    }
}

void SetComparison::compareLabels(const ListedProperty& before, const ListedProperty& after) {
    if (!before.label || before.label == after.label) {
        return;
    }
    if (after.label && before.label->withoutVersion() == after.label->withoutVersion()) {
        add(Kind::labelVersion, before_, before, versions((*before.label)[7], (*after.label)[7]));
    } else {
        // Others go by their label, so that there is no other one.
        add(Kind::unknownLabel, before_, before);
    }
}

} // namespace Corvid::Editing
