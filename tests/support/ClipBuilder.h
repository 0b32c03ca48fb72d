#pragma once

#include "tests/support/MxfBuilder.h"

#include <map>

namespace Corvid::Testing {

/// Makes MXF files of sets whose properties are named by the last eight bytes of their labels: each
/// gets a local tag of its own.
class ClipBuilder {
public:
    using Properties = std::vector<std::pair<std::uint64_t, Bytes>>;

    /// @param key  the whole key of the set.
    /// @return the set's instance, for uuid().
    unsigned add(const Bytes& key, const Properties& properties) {
        const unsigned instance = next();
        addAs(instance, key, properties);
        return instance;
    }
    /// @param number  of a structural set.
    unsigned add(unsigned char number, const Properties& properties) {
        return add(structuralKey(number), properties);
    }
    /// The same with an instance that next() has returned.
    void addAs(unsigned instance, const Bytes& key, const Properties& properties) {
        std::vector<Bytes> values;
        for (const auto& [item, value] : properties) {
            values.push_back(property(tagOf(item), value));
        }
        sets_.push_back(set(key, instance, values));
    }
    unsigned next() { return ++instances_; }

    /// References to sets, as a batch or array.
    static Bytes references(const std::vector<unsigned>& instances) {
        std::vector<Bytes> items;
        for (const unsigned instance : instances) {
            items.push_back(uuid(instance));
        }
        return batch(items, 16);
    }

    /// The file; the Preface is to be among the sets.
    Bytes build() const {
        auto labels = standardLabels();
        for (const auto& [item, tag] : tags_) {
            labels.emplace_back(tag, join({hex("060e2b34 01010101"), number(item, 8)}));
        }
        return MxfBuilder()
            .add(headerPartition(join({primer(labels), join(sets_)})))
            .withRandomIndexPack()
            .build();
    }

private:
    unsigned tagOf(std::uint64_t item) {
        const auto place = tags_.try_emplace(item, firstTag + static_cast<unsigned>(tags_.size()));
        return place.first->second;
    }

    static constexpr unsigned firstTag = 0x8000;

    unsigned instances_ = 0;
    std::map<std::uint64_t, unsigned> tags_;
    std::vector<Bytes> sets_;
};

} // namespace Corvid::Testing
