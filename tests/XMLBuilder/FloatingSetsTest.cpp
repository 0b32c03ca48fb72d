#include "XMLBuilder/writer/DocumentPlan.h"
#include "tests/XMLBuilder/RandomModel.h"
#include "tests/XMLBuilder/RoundTrip.h"

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <vector>

namespace Corvid::Testing {
namespace {

using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
using Order = std::vector<const MetadataSet*>;

const MetadataSet* firstPreface(const PartitionMetadata& partition) {
    const auto prefaces = partition.find(Metadata::Structural::StructuralMetadataKeys::preface());
    return prefaces.empty() ? nullptr : prefaces.front();
}

/// The sets that the main pass of a document leaves for later, in the partition's order.
Order leftByTheMainPass(PartitionMetadata& partition) {
    const MetadataSet* const preface = firstPreface(partition);
    if (preface == nullptr) {
        return {partition.begin(), partition.end()};
    }
    const XMLBuilder::DocumentPlan plan(partition, *preface, {});
    Order left;
    std::copy_if(partition.begin(), partition.end(), std::back_inserter(left),
                 [&](const MetadataSet* set) { return plan.mainPass().places.count(set) == 0; });
    return left;
}

struct Listed {
    Order order;
    std::size_t floating;

    Order last() const {
        return {order.end() - static_cast<std::ptrdiff_t>(floating), order.end()};
    }
};

Listed listed(const PartitionMetadata& partition) {
    Templates::vector<const MetadataSet*> order;
    const std::size_t floating = partition.calculateSerializationOrder(order, true, false);
    return {{order.begin(), order.end()}, floating};
}

/// The order of the sets in the plainest way: whatever a strong reference leads to comes
/// next, and what none leads to comes at the end.
class PlainOrder {
public:
    explicit PlainOrder(const PartitionMetadata& partition) : partition_(partition) {
        if (const MetadataSet* preface = firstPreface(partition)) {
            add(*preface);
        }
        for (const MetadataSet* set : partition) {
            if (seen_.insert(set).second) {
                order.push_back(set);
            }
        }
    }

    Order order;

private:
    void add(const MetadataSet& set) {
        if (!seen_.insert(&set).second) {
            return;
        }
        order.push_back(&set);
        std::vector<const Metadata::Element*> elements(set.invalidBegin(), set.invalidEnd());
        for (const auto& entry : set.made()) {
            elements.push_back(entry.second);
        }
        std::sort(elements.begin(), elements.end(),
                  [](const auto* a, const auto* b) { return a->position() < b->position(); });
        for (const auto* element : elements) {
            if (const auto* one = dynamic_cast<const Metadata::ReferenceElement*>(element)) {
                follow(one->value());
            }
            if (const auto* many =
                    dynamic_cast<const Metadata::ReferenceCollectionElement*>(element)) {
                for (Types::u32 i = 0; i != many->size(); ++i) {
                    follow(&many->at(i));
                }
            }
        }
    }

    void follow(const Types::Reference* reference) {
        if (reference != nullptr && reference->isStrong()) {
            for (const MetadataSet* target : partition_) {
                if (target->hasInstanceUID() && target->instanceUID() == reference->uuid()) {
                    add(*target);
                    return;
                }
            }
        }
    }

    const PartitionMetadata& partition_;
    std::set<const MetadataSet*> seen_;
};

constexpr unsigned modelCount = 1000;

TEST(FloatingSets, areAllSetsThatTheMainPassDidNotWriteInTheirOrder) {
    std::size_t floating = 0;
    for (unsigned seed = 0; seed != modelCount; ++seed) {
        RandomModel made(seed, true);
        const Listed found = listed(made.model.partition);
        ASSERT_EQ(found.last(), leftByTheMainPass(made.model.partition)) << "seed " << seed;
        ASSERT_EQ(std::set(found.order.begin(), found.order.end()).size(),
                  made.model.partition.size());
        ASSERT_EQ(found.order.size(), made.model.partition.size());
        floating += found.floating;
    }
    EXPECT_GT(floating, modelCount); // some models have such sets
}

TEST(FloatingSets, areInTheDocument) {
    for (unsigned seed = 0; seed != modelCount; ++seed) {
        RandomModel made(seed, true);
        auto& partition = made.model.partition;
        if (firstPreface(partition) == nullptr) {
            continue;
        }
        std::map<std::string, std::size_t> expected;
        for (const MetadataSet* set : partition) {
            const auto* definition = set->metaMetadataSet();
            ++expected[definition == nullptr
                           ? "DarkMetadata"
                           : Platform::toUtf8(definition->attribute("XMLTagName"))];
        }
        const std::string text = documentOf(partition, {});
        static const std::regex start("<\\w+:(\\w+)[ />]");
        std::map<std::string, std::size_t> found;
        for (std::sregex_iterator at(text.begin(), text.end(), start), end; at != end; ++at) {
            ++found[(*at)[1]];
        }
        for (const auto& [tag, count] : expected) {
            ASSERT_GE(found[tag], count) << "seed " << seed << ": " << tag;
        }
    }
}

TEST(FloatingSets, doNotIncludeADarkGroupThatTheMainPassMetAtAWeakReference) {
    Model model = Model::extendedBy(RandomModel::things());
    model.reference(model.set("Preface", 1), "ContentStorageObject", 2);
    model.reference(model.set("Thing", 2), "WeakReference", 3);
    model.darkGroup(3);
    const std::string text = documentOf(model.partition, {});
    EXPECT_EQ(text.find("<groups:DarkMetadata "), text.rfind("<groups:DarkMetadata "));
}

TEST(FloatingSets, doNotChangeTheOrderWhereOnlyStrongReferencesOfTheClassLeadOn) {
    for (unsigned seed = 0; seed != modelCount; ++seed) {
        RandomModel made(seed, false);
        ASSERT_EQ(listed(made.model.partition).order, PlainOrder(made.model.partition).order)
            << "seed " << seed;
    }
}

TEST(FloatingSets, ofRealFilesAreThoseThatTheMainPassDidNotWrite) {
    if (samplesDir().empty()) {
        GTEST_SKIP() << "no folder of sample files";
    }
    forEachSample([](PartitionMetadata& partition) {
        const Listed found = listed(partition);
        EXPECT_EQ(found.last(), leftByTheMainPass(partition));
        EXPECT_EQ(found.order, PlainOrder(partition).order);
    });
}

TEST(FloatingSets, includeWhatOnlyADarkGroupRefersTo) {
    Model model = Model::extendedBy(RandomModel::things());
    model.references(model.set("Preface", 1), "IdentificationList", {2});
    model.misplaced(model.darkGroup(2), "StrongReference")
        .parse(Types::ByteView{uuid(3).rawBuffer(), 16});
    model.set("Thing", 3);
    EXPECT_NE(documentOf(model.partition, {}).find("<t:Thing "), std::string::npos);
}

} // namespace
} // namespace Corvid::Testing
