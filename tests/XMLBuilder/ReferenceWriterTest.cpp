#include "tests/XMLBuilder/XmlOf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Corvid::Testing {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr Flags asValues{true, false};

constexpr const char* names = R"(
namespace s377m urn:SMPTE:S377M
namespace t urn:test
set t:Namer 06.0e.2b.34.02.53.01.01.0e.7f.03.00.00.00.00.00 s377m:InterchangeObject concrete
property t:Weak 06.0e.2b.34.01.01.01.01.0e.7f.03.01.00.00.00.00 - WeakReference optional -
property t:Weaks 06.0e.2b.34.01.01.01.01.0e.7f.03.02.00.00.00.00 - Batch(WeakReference) optional -
property t:Strong 06.0e.2b.34.01.01.01.01.0e.7f.03.03.00.00.00.00 - StrongReference optional -
property t:Strongs 06.0e.2b.34.01.01.01.01.0e.7f.03.04.00.00.00.00 - Batch(StrongReference) optional -
)";

class ReferenceWriter : public testing::Test {
protected:
    ReferenceWriter() : model_(Model::extendedBy(names)) {
        model_.reference(model_.set("Preface", 1), "ContentStorageObject", 2);
        namer_ = &model_.set("Namer", 2);
    }

    Model model_;
    Model::Set* namer_;
};

TEST_F(ReferenceWriter, writesTheWholeTreeInline) {
    model_.reference(*namer_, "Strong", 3);
    model_.reference(model_.set("Namer", 3), "Strong", 4);
    model_.set("Filler", 4);
    EXPECT_THAT(
        compactXmlOf(model_, asValues),
        HasSubstr("<rp210:ContentStorageObject><t:Namer rp210:InstanceUID=\"" + uuidText(2) +
                  "\"><t:Strong><t:Namer rp210:InstanceUID=\"" + uuidText(3) +
                  "\"><t:Strong><s377m:Filler rp210:InstanceUID=\"" + uuidText(4) +
                  "\"/></t:Strong></t:Namer></t:Strong></t:Namer></rp210:ContentStorageObject>"));
}

TEST_F(ReferenceWriter, writesEverySetOfACollectionInline) {
    model_.references(*namer_, "Strongs", {3, 4});
    model_.reference(model_.set("Namer", 3), "Strong", 5);
    model_.set("Filler", 4);
    model_.set("Filler", 5);
    EXPECT_THAT(compactXmlOf(model_, asValues),
                HasSubstr("<t:Strongs><t:Namer rp210:InstanceUID=\"" + uuidText(3) +
                          "\"><t:Strong><s377m:Filler rp210:InstanceUID=\"" + uuidText(5) +
                          "\"/></t:Strong></t:Namer><s377m:Filler rp210:InstanceUID=\"" +
                          uuidText(4) + "\"/></t:Strongs>"));
}

TEST_F(ReferenceWriter, leavesThePropertyEmptyForASetWrittenAlready) {
    model_.references(*namer_, "Strongs", {3, 3});
    model_.set("Filler", 3);
    EXPECT_THAT(compactXmlOf(model_, asValues),
                HasSubstr("<t:Strongs><s377m:Filler rp210:InstanceUID=\"" + uuidText(3) +
                          "\"/></t:Strongs>"));
}

TEST_F(ReferenceWriter, writesAWeakReferenceAsASmallElement) {
    model_.references(*namer_, "Weaks", {3, 4});
    model_.set("Filler", 3);
    model_.set("Filler", 4);
    EXPECT_THAT(compactXmlOf(model_, asValues),
                HasSubstr("<t:Weaks><s377m:Filler_REF types:TargetInstance=\"" + uuidText(3) +
                          "\"/><s377m:Filler_REF types:TargetInstance=\"" + uuidText(4) +
                          "\"/></t:Weaks>"));
}

TEST_F(ReferenceWriter, leavesAWeakReferenceToAnUnknownClassWithoutChildren) {
    model_.reference(*namer_, "Weak", 3);
    model_.darkGroup(3);
    EXPECT_THAT(compactXmlOf(model_, asValues), HasSubstr("<t:Weak/>"));
}

TEST_F(ReferenceWriter, addsADanglingLinkForADarkGroupInACollectionOnly) {
    model_.references(*namer_, "Strongs", {3});
    model_.reference(*namer_, "Strong", 3);
    model_.darkGroup(3);
    const std::string text = compactXmlOf(model_, asValues);
    EXPECT_THAT(text, HasSubstr("<t:Strongs><s377m:Dangling_REF types:TargetInstance=\"" +
                                uuidText(3) + "\"/></t:Strongs>"));
    EXPECT_THAT(text, HasSubstr("<t:Strong/>"));
    EXPECT_EQ(text.find("<groups:DarkMetadata"), text.rfind("<groups:DarkMetadata"));
}

TEST(ReferenceWriterAlone, registersTheTypesPrefixThoughNoValueUsesIt) {
    Model model = Model::extendedBy(names);
    model.reference(model.set("Namer", 2), "Weak", 2);
    const auto document =
        XMLBuilder::partition2XML(&model.partition, *model.partition.begin(), true, false);
    EXPECT_THAT(toText(document.get(), XMLUtils::Layout::compact).substr(0, 200),
                HasSubstr("xmlns:types=\"urn:SMPTE:Types:MXF\""));
}

} // namespace
} // namespace Corvid::Testing
