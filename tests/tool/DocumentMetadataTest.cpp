#include "tools/corvid/xml/LenientDocument.h"

#include "host/base/Exceptions.h"
#include "tests/support/Model.h"

#include <gtest/gtest.h>

using namespace Corvid;
using namespace Corvid::Testing;
using Editing::DocumentIdentifiers;

namespace {

const std::string root =
    "<s377m:MetadataSets xmlns:s377m='urn:SMPTE:S377M' xmlns:rp210='urn:SMPTE:RP210' "
    "xmlns:groups='urn:SMPTE:Groups:MXF' xmlns:types='urn:SMPTE:Types:MXF'>";

class DocumentMetadata : public ::testing::Test {
protected:
    void read(const std::string& inside, DocumentIdentifiers identifiers = {}) {
        const std::string xml = root + inside + "</s377m:MetadataSets>";
        document_ =
            Tool::readLeniently(reinterpret_cast<const unsigned char*>(xml.data()), xml.size(),
                                MetaMetadata::Dictionary::builtIn(), identifiers);
    }
    const Metadata::PartitionMetadata& metadata() const { return *document_.metadata; }
    const Metadata::MetadataSet& first() const { return **metadata().begin(); }
    /// The target of the first set's only reference.
    Types::UUID target() const {
        for (const auto& [label, element] : first()) {
            if (const auto* reference = dynamic_cast<const Metadata::ReferenceElement*>(element);
                reference != nullptr && reference->value() != nullptr) {
                return reference->value()->uuid();
            }
        }
        return {};
    }
    static std::string identified(const std::string& name) {
        return " rp210:InstanceUID='" + name + "'";
    }
    static std::string prefaceWithStorage(const std::string& name) {
        return "<s377m:Preface" + identified(uuidText(1)) +
               "><rp210:ContentStorageObject><s377m:ContentStorage_REF types:TargetInstance='" +
               name + "'/></rp210:ContentStorageObject></s377m:Preface>";
    }
    static std::string storage(const std::string& name) {
        return "<s377m:ContentStorage" + identified(name) + "/>";
    }
    static std::string dark(const std::string& bytes) {
        return "<groups:FloatingDarkMetadata><groups:DarkMetadata "
               "groups:Key='06.0e.2b.34.02.53.01.01.0e.7f.7f.7f.01.02.03.00' "
               "groups:BEROctetCount='4'>" +
               bytes + "</groups:DarkMetadata></groups:FloatingDarkMetadata>";
    }

    Editing::DocumentMetadata document_;
};

TEST_F(DocumentMetadata, hasTheIdentifiersThatAreWritten) {
    read(prefaceWithStorage(uuidText(2)) + storage(uuidText(2)));
    EXPECT_EQ(metadata().size(), 2U);
    EXPECT_EQ(first().instanceUID(), uuid(1));
    EXPECT_EQ(target(), uuid(2));
    EXPECT_EQ(metadata().resolve(uuid(2)).size(), 1U);
    EXPECT_EQ(document_.copies.equal, 0U);
}

TEST_F(DocumentMetadata, takesTheTargetBeforeItsReferenceToo) {
    read(storage(uuidText(2)) + prefaceWithStorage(uuidText(2)));
    EXPECT_EQ(first().instanceUID(), uuid(2));
}

TEST_F(DocumentMetadata, takesCapitalsForTheSameIdentifier) {
    read(storage("AA.0E.2B.34.02.53.01.01.0E.7F.7F.7F.01.02.03.00") +
         storage("aa.0e.2b.34.02.53.01.01.0e.7f.7f.7f.01.02.03.00"));
    EXPECT_EQ(document_.copies.equal, 1U);
    EXPECT_EQ(Platform::toUtf8(first().instanceUID().toString()),
              "aa.0e.2b.34.02.53.01.01.0e.7f.7f.7f.01.02.03.00");
}

TEST_F(DocumentMetadata, givesOtherNamesAnIdentifierWhereverTheyStand) {
    for (const char* name : {"the storage", "", "06.0e", "urn:uuid:1"}) {
        read(prefaceWithStorage(name) + storage(name));
        EXPECT_NE(target(), Types::UUID()) << name;
        EXPECT_EQ(metadata().resolve(target()).size(), 1U) << name;
    }
}

TEST_F(DocumentMetadata, givesASetWithoutNameAnIdentifier) {
    read("<s377m:Preface/><s377m:Preface/>");
    ASSERT_EQ(metadata().size(), 2U);
    EXPECT_TRUE(first().hasInstanceUID());
    EXPECT_EQ(metadata().resolve(first().instanceUID()).size(), 1U);
}

TEST_F(DocumentMetadata, keepsReferencesToDarkSetsAndToNothing) {
    const std::string bytes = "3C0A001000000000000000000000000000000009";
    for (const auto identifiers : {DocumentIdentifiers::written, DocumentIdentifiers::fresh}) {
        read(prefaceWithStorage(uuidText(9)) + dark(bytes), identifiers);
        EXPECT_EQ(target(), uuid(9));
        read(prefaceWithStorage(uuidText(0)), identifiers);
        EXPECT_EQ(target(), uuid(0));
    }
}

TEST_F(DocumentMetadata, getsNewIdentifiersWhenAskedTo) {
    read(prefaceWithStorage(uuidText(2)) + storage(uuidText(2)), DocumentIdentifiers::fresh);
    EXPECT_NE(first().instanceUID(), uuid(1));
    EXPECT_NE(target(), uuid(2));
    EXPECT_EQ(metadata().resolve(target()).size(), 1U);
}

TEST_F(DocumentMetadata, mergesWhatStandsTwice) {
    const std::string bytes = "3C0A001000000000000000000000000000000009";
    const std::string both = storage(uuidText(2)) + dark(bytes);
    for (const auto identifiers : {DocumentIdentifiers::written, DocumentIdentifiers::fresh}) {
        read(both + both, identifiers);
        EXPECT_EQ(document_.copies.equal, 2U);
        EXPECT_EQ(metadata().size(), 1U);
        EXPECT_EQ(std::distance(metadata().darkBegin(), metadata().darkEnd()), 1);
    }
}

TEST_F(DocumentMetadata, mergesASetInsideAReferenceWithItsCopyOutside) {
    const std::string inside = "<s377m:Preface" + identified(uuidText(1)) +
                               "><rp210:ContentStorageObject>" + storage(uuidText(2)) +
                               "</rp210:ContentStorageObject></s377m:Preface>";
    read(inside + prefaceWithStorage(uuidText(2)) + storage(uuidText(2)));
    EXPECT_EQ(document_.copies.equal, 2U);
    EXPECT_EQ(metadata().size(), 2U);
}

TEST_F(DocumentMetadata, saysWhyADocumentCantBeRead) {
    EXPECT_THROW(read("<unclosed>"), Exceptions::ParseError);
    EXPECT_THROW(read(dark("0")), Exceptions::InvalidFormat);
}

} // namespace
