#include "editing/RenameSets.h"

#include "tests/support/Model.h"

#include <gtest/gtest.h>

using namespace Corvid;
using namespace Corvid::Testing;

namespace {

class RenameSets : public ::testing::Test {
protected:
    static const Types::UUID& target(const Metadata::Element& element) {
        return dynamic_cast<const Metadata::ReferenceElement&>(element).value()->uuid();
    }

    Model model_;
};

TEST_F(RenameSets, givesEverySetAnotherIdentifier) {
    auto& one = model_.set("TimelineTrack", 1);
    auto& two = model_.set("TimelineTrack", 2);
    auto& alsoTwo = model_.set("Preface", 2);
    auto& group = model_.darkGroup(3);
    Editing::renameSets(model_.partition);
    EXPECT_NE(one.instanceUID(), uuid(1));
    EXPECT_NE(two.instanceUID(), uuid(2));
    EXPECT_NE(one.instanceUID(), two.instanceUID());
    EXPECT_EQ(two.instanceUID(), alsoTwo.instanceUID());
    EXPECT_NE(group.instanceUID(), uuid(3));
    EXPECT_EQ(one.instanceUID()[6] >> 4, 4) << "a random UUID";
    EXPECT_EQ(&model_.partition.resolve(one.instanceUID()).front(), &one);
    EXPECT_TRUE(model_.partition.resolve(uuid(1)).empty());
}

TEST_F(RenameSets, leadsReferencesToTheirTargets) {
    auto& preface = model_.set("Preface", 1);
    model_.reference(preface, "ContentStorageObject", 2);
    model_.references(preface, "IdentificationList", {3, 9, 3});
    auto& storage = model_.set("ContentStorage", 2);
    model_.misplaced(storage, "PrimaryPackage").parse({uuid(1).rawBuffer(), 16});
    const auto& identification = model_.set("Identification", 3);
    Editing::renameSets(model_.partition);

    for (const auto& [label, element] : preface) {
        if (const auto* many = dynamic_cast<const Metadata::ReferenceCollectionElement*>(element)) {
            ASSERT_EQ(many->size(), 3U);
            EXPECT_EQ(many->at(0).uuid(), identification.instanceUID());
            EXPECT_EQ(many->at(1).uuid(), uuid(9)) << "leads to no set";
            EXPECT_EQ(many->at(2).uuid(), identification.instanceUID());
            EXPECT_TRUE(many->at(0).isStrong());
        } else if (dynamic_cast<const Metadata::ReferenceElement*>(element) != nullptr) {
            EXPECT_EQ(target(*element), storage.instanceUID());
        }
    }
    ASSERT_EQ(std::distance(storage.invalidBegin(), storage.invalidEnd()), 1);
    EXPECT_EQ(target(**storage.invalidBegin()), preface.instanceUID());
    EXPECT_FALSE(dynamic_cast<const Metadata::ReferenceElement&>(**storage.invalidBegin())
                     .value()
                     ->isStrong());
}

TEST_F(RenameSets, leavesSetsWithoutIdentifierAndElementsWithoutValueAlone) {
    const auto& definition = *model_.set("Preface", 1).metaMetadataSet();
    auto& bare = model_.partition.createEmptyMetadataSet(definition.key(), definition);
    model_.element(bare, "ContentStorageObject");
    Editing::renameSets(model_.partition);
    EXPECT_FALSE(bare.hasInstanceUID());
    EXPECT_EQ(bare.countValues(), 0U);
}

} // namespace
