#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>

using namespace Corvid::Testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

const Bytes unknownKey = hex("06.0e.2b.34.02.53.01.01.0f.55.66.77.01.02.03.04");

std::string textOf(unsigned instance) {
    const Bytes bytes = uuid(instance);
    std::string text;
    for (const unsigned char byte : bytes) {
        static constexpr char digits[] = "0123456789abcdef";
        text += (text.empty() ? "" : ".") + std::string{digits[byte >> 4], digits[byte & 15]};
    }
    return text;
}

/// A Preface (1) with these Identifications, which owns the set that it says is its ContentStorage;
/// an Identification (3) and a group of unknown class (9) follow.
Bytes clipWith(const std::vector<unsigned>& identifications, unsigned contentStorage) {
    std::vector<Bytes> references;
    for (const unsigned instance : identifications) {
        references.push_back(uuid(instance));
    }
    return MxfBuilder()
        .add(headerPartition(join(
            {standardPrimer(),
             set(structuralKey(prefaceSet), 1,
                 {property(0x3B03, uuid(contentStorage)), property(0x3B06, batch(references, 16))}),
             set(structuralKey(contentStorageSet), 2), set(structuralKey(identificationSet), 3),
             set(unknownKey, 9)})))
        .build();
}

class LeftOutReferences : public ::testing::Test {
protected:
    std::string warningsOf(const Bytes& clip, const std::string& options) {
        shop.write("clip.mxf", clip);
        const Outcome outcome = shop.run("corvid to-xml clip.mxf -o out.xml " + options);
        EXPECT_EQ(outcome.status, 0);
        return outcome.err;
    }
    /// How often an element is in the document.
    std::size_t countOf(const std::string& text) const {
        const std::string document = shop.read("out.xml");
        std::size_t count = 0;
        for (auto at = document.find(text); at != std::string::npos;
             at = document.find(text, at + 1)) {
            ++count;
        }
        return count;
    }

    Workshop shop;
};

TEST_F(LeftOutReferences, areNoneWhereEachSetHasOneOwner) {
    EXPECT_THAT(warningsOf(clipWith({3}, 2), "--references values"), IsEmpty());
}

TEST_F(LeftOutReferences, toASharedSetAreAWarning) {
    const std::string warnings = warningsOf(clipWith({3, 3}, 2), "--references values");
    EXPECT_EQ(warnings, "corvid: clip.mxf: warning: set Preface " + textOf(1) +
                            ": property IdentificationList: the reference to Identification " +
                            textOf(3) +
                            " is left out: the set is elsewhere in the document, and only once; "
                            "--references links keeps it [left-out-reference]\n");
    EXPECT_EQ(countOf("<s377m:Identification "), 1U);
}

TEST_F(LeftOutReferences, ofTwoPropertiesTheLaterOneIsNamed) {
    const std::string warnings = warningsOf(clipWith({2}, 2), "--references values");
    const bool storageIsFirst = shop.read("out.xml").find("<rp210:ContentStorageObject>") <
                                shop.read("out.xml").find("<rp210:IdentificationList");
    EXPECT_THAT(warnings,
                HasSubstr(storageIsFirst ? "property IdentificationList: the reference"
                                         : "property ContentStorageObject: the reference"));
    EXPECT_EQ(countOf("<s377m:ContentStorage "), 1U);
}

TEST_F(LeftOutReferences, toASetOfUnknownClassAreAWarning) {
    const std::string warnings = warningsOf(clipWith({3}, 9), "--references values");
    EXPECT_THAT(warnings, HasSubstr("property ContentStorageObject: the reference to 06.0e.2b.34."
                                    "02.53.01.01.0f.55.66.77.01.02.03.04 " +
                                    textOf(9) + " is left out: the set is of unknown class"));
    EXPECT_EQ(std::count(warnings.begin(), warnings.end(), '\n'), 1) << warnings;
    // In a collection such a reference has a form.
    EXPECT_THAT(warningsOf(clipWith({9}, 2), "--references values"), IsEmpty());
    EXPECT_EQ(countOf("Dangling_REF"), 1U);
}

TEST_F(LeftOutReferences, areCountedWhereTheyAreMany) {
    const std::string warnings =
        warningsOf(clipWith({3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3}, 2), "--references values");
    EXPECT_EQ(std::count(warnings.begin(), warnings.end(), '\n'), 9) << warnings;
    EXPECT_THAT(warnings, HasSubstr("warning: 3 more references are left out"));
}

TEST_F(LeftOutReferences, areNotMeantWhereSetsAreLeftOutOnPurpose) {
    EXPECT_THAT(warningsOf(clipWith({3}, 9), "--references values --structural-only"), IsEmpty());
    EXPECT_THAT(warningsOf(clipWith({3, 3}, 2), "--references values --structural-only"),
                HasSubstr("is left out"));
}

TEST_F(LeftOutReferences, areNoneWhereReferencesAreLinks) {
    EXPECT_THAT(warningsOf(clipWith({3, 3}, 9), ""), IsEmpty());
    EXPECT_EQ(countOf("Identification_REF"), 2U);
}

TEST_F(LeftOutReferences, areThoseOfTheSetThatTheDocumentStartsWith) {
    EXPECT_THAT(warningsOf(clipWith({3, 3}, 2), "--references values --start " + textOf(3)),
                Not(HasSubstr("is left out")));
}

} // namespace
