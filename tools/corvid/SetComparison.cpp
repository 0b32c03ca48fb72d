#include "tools/corvid/SetComparison.h"

#include "tools/corvid/SetValues.h"
#include "tools/corvid/ShortValue.h"

#include <algorithm>
#include <fmt/core.h>

namespace Corvid::Tool {

namespace {

using Kind = DifferenceKind;
using Metadata::MetadataSet;

std::string versions(unsigned char before, unsigned char after) {
    return fmt::format("version {:02x} came back as {:02x}", before, after);
}

/// What of two keys of the same class differs.
std::string keyDifference(const KLV::Key& before, const KLV::Key& after) {
    return KLV::hasBerLengths(before) == KLV::hasBerLengths(after)
               ? versions(before[7], after[7])
               : fmt::format("key {} came back as {}", Platform::toUtf8(before.toString()),
                             Platform::toUtf8(after.toString()));
}

template <class Image>
std::string contentOf(const Metadata::PartitionDictionary& tags, const MetadataSet& set,
                      Image image) {
    const auto key = set.key().forMatching();
    std::string text(key.begin(), key.end());
    for (const auto& property : listProperties(tags, set)) {
        if (const ValueImage value = image(*property.element); value.bytes) {
            text.append(property.identity.begin(), property.identity.end());
            text += std::to_string(value.bytes->size()) + ":" + *value.bytes;
        }
    }
    return text;
}

} // namespace

void SetComparison::add(Kind kind, const MetadataSet& set, std::string detail) {
    differences_.push_back(
        {kind, className(set),
         set.hasInstanceUID() ? Platform::toUtf8(set.instanceUID().toString()) : std::string(), "",
         std::move(detail), DifferenceIdentifiers::both});
}

void SetComparison::add(Kind kind, const Metadata::PartitionDictionary& tags,
                        const ListedProperty& property, std::string detail) {
    add(kind, *set_, std::move(detail));
    differences_.back().property = propertyName(tags, *property.element);
}

void SetComparison::addAll(const std::vector<Kind>& kinds, const ListedProperty& property) {
    for (const Kind kind : kinds) {
        add(kind, before_, property);
    }
}

std::string SetComparison::contentInXml(const MetadataSet& before) const {
    return contentOf(before_, before,
                     [this](const auto& element) { return imageInXml(element, renaming_); });
}

std::string SetComparison::content(const MetadataSet& after) const {
    return contentOf(after_, after,
                     [this](const auto& element) { return imageOf(element, asTheyAre_); });
}

void SetComparison::compare(const MetadataSet& before, const MetadataSet& after) {
    set_ = &before;
    if (!KLV::matches(before.key(), after.key())) {
        add(Kind::otherClass, before, "came back as " + className(after));
    } else if (before.key() != after.key()) {
        add(Kind::keyVersion, before, keyDifference(before.key(), after.key()));
    }
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

/// Properties of one identity: one, or in stored order those that stand in the set repeatedly.
void SetComparison::compareAlike(Range olds, Range news) {
    auto& [fresh, freshEnd] = news;
    for (auto old = olds.first; old != olds.second; ++old) {
        const ValueImage whole = imageOf(*old->element, renaming_);
        const ValueImage inXml = imageInXml(*old->element, renaming_);
        // What is not told leaves its place to the next one, unless there is one for each.
        const bool hasCounterpart =
            fresh != freshEnd && (inXml.bytes || freshEnd - fresh >= olds.second - old ||
                                  imageOf(*fresh->element, asTheyAre_) == whole);
        if (hasCounterpart) {
            compareValues(*old, *fresh, whole, inXml);
            ++fresh;
        } else if (inXml.bytes) {
            add(Kind::missingProperty, before_, *old, "was " + shortValue(*old->element));
        } else {
            addAll(inXml.lost, *old);
        }
    }
    for (; fresh != freshEnd; ++fresh) {
        add(Kind::extraProperty, after_, *fresh, "is " + shortValue(*fresh->element));
    }
}

void SetComparison::compareValues(const ListedProperty& before, const ListedProperty& after,
                                  const ValueImage& whole, const ValueImage& inXml) {
    const ValueImage found = imageOf(*after.element, asTheyAre_);
    if (found == whole) {
        compareLabels(before, after);
    } else if (found == inXml && !inXml.lost.empty()) {
        addAll(inXml.lost, before);
        compareLabels(before, after);
    } else {
        add(Kind::otherValue, before_, before,
            shortValue(*before.element) + " came back as " + shortValue(*after.element));
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

} // namespace Corvid::Tool
