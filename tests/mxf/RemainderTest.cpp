#include "host/dictionary/Registers.h"
#include "tests/mxf/ReadBack.h"
#include "tests/support/Paths.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <iostream>
#include <map>

namespace Corvid::mxf {
namespace {

using Types::UniversalLabel;

/// What the dictionary has no name for in a file, and how often it occurs: keys of sets, labels of
/// properties, tags where the primer pack has no label for them.
class Remainder {
public:
    explicit Remainder(Metadata::PartitionMetadata& metadata)
        : tags_(metadata.partitionDictionary()) {
        for (auto set = metadata.darkBegin(); set != metadata.darkEnd(); ++set) {
            addSet((*set)->key());
        }
        for (const auto* set : metadata) {
            if (set->metaMetadataSet() == nullptr) {
                addSet(set->key());
            } else {
                addProperties(*set);
            }
        }
    }

    std::map<std::string, int> sets;
    std::map<std::string, int> properties;
    std::vector<std::string> registered; ///< those that a register names nevertheless
    std::vector<std::string> unnamed;    ///< sets that nobody is known to name

private:
    void addSet(const KLV::Key& key) {
        const std::string text = Platform::toUtf8(key.toString(Types::dottedHexadecimal));
        ++sets[text];
        // A set that is known may be dark because its bytes do not parse.
        const bool isKnown = MetaMetadata::Dictionary::builtIn()->findSet(key) != nullptr;
        const auto group = MetaMetadata::Registers::findGroup(key);
        if (!isKnown && group && group->isRegistered()) {
            registered.push_back("set " + text);
        }
        if (!group) {
            unnamed.push_back(text);
        }
    }

    void addProperties(const Metadata::MetadataSet& set) {
        for (auto each = set.invalidBegin(); each != set.invalidEnd(); ++each) {
            const auto* attribute =
                dynamic_cast<const MetaMetadata::UnknownAttribute*>(&*(*each)->metaAttribute());
            if (attribute == nullptr ||
                attribute->reason() != MetaMetadata::UnknownAttribute::unknownLabel) {
                continue;
            }
            const auto* label = tags_.find(attribute->localTag(), false);
            if (label == nullptr) {
                ++properties["tag " + Platform::toUtf8(attribute->localTag().toString(
                                          Types::dottedHexadecimal))];
                continue;
            }
            const std::string text = Platform::toUtf8(label->toString(Types::dottedHexadecimal));
            ++properties[text];
            if (MetaMetadata::Registers::properties().find(*label)) {
                registered.push_back("property " + text);
            }
        }
    }

    const Metadata::PartitionDictionary& tags_;
};

TEST(Remainders, ofTheSamplesAreNamedTablesThatNoRegisterLists) {
    const auto folder = Testing::samplesDir();
    if (folder.empty()) {
        GTEST_SKIP() << "no folder of sample files";
    }
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
        if (file.path().extension() != ".mxf") {
            continue;
        }
        Testing::Collected warnings;
        File clip(file.path().string(), MetaMetadata::Dictionary::builtIn(), warnings);
        const Remainder left(*clip.readMetadata().metadata);
        for (const auto& [name, count] : left.sets) {
            std::cout << file.path().filename().string() << ": dark set " << name << ": " << count
                      << "\n";
        }
        for (const auto& [name, count] : left.properties) {
            std::cout << file.path().filename().string() << ": unknown property " << name << ": "
                      << count << "\n";
        }
        EXPECT_THAT(left.registered, testing::IsEmpty()) << file.path().filename();
        EXPECT_THAT(left.unnamed, testing::IsEmpty()) << file.path().filename();
        EXPECT_THAT(left.properties, testing::IsEmpty()) << file.path().filename();
    }
}

} // namespace
} // namespace Corvid::mxf
