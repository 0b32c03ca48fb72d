#include "XMLBuilder/schema/DocumentValidator.h"
#include "XMLBuilder/schema/PreparedSchemas.h"
#include "XMLBuilder/schema/SchemaTexts.h"
#include "XMLBuilder/schema/Schemas.h"
#include "host/dictionary/BuiltInTables.h"
#include "tests/XMLBuilder/Things.h"

#include <cstring>

namespace Corvid::Testing {
namespace {

/// A document with a bit of everything.
std::string validDocument() {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.value(preface, "GenerationUID", uuid(9));
    model.value(preface, "FileLastModified", Types::Timestamp(2024, 2, 29, 12, 30, 15, 500));
    model.value(preface, "FormatVersion", Types::VersionType(1, 3));
    model.value(preface, "OperationalPattern", Types::UniversalLabel());
    model.reference(preface, "ContentStorageObject", 2);
    model.set("ContentStorage", 2);
    auto& track = model.set("TimelineTrack", 3);
    model.value(track, "TrackID", Types::UInt32(7));
    model.unknown(track, 0x3F01, "bytes");
    model.darkSet(Model::darkKey(), 4, "dark");
    return xmlOf(model);
}

std::string errorsOf(const std::string& document) {
    return validityErrors(*MetaMetadata::Dictionary::builtIn(), document);
}

struct Damage {
    const char* name;
    const char* from;
    const char* to;
    const char* told; ///< in one of the errors
};

const Damage damages[] = {
    Damage{"MisspeltProperty", "<rp210:FormatVersion>259</rp210:FormatVersion>",
           "<rp210:FormatVersoin>259</rp210:FormatVersoin>", "rp210:FormatVersoin"},
    Damage{"MisspeltSet", "<s377m:ContentStorage ", "<s377m:ContentStorge ", "s377m:ContentStorge"},
    Damage{"PropertyOfAnotherClass", "<rp210:TrackID>7</rp210:TrackID>",
           "<rp210:FormatVersion>1</rp210:FormatVersion>", "FormatVersion"},
    Damage{"TextForANumber", "<rp210:TrackID>7<", "<rp210:TrackID>seven<", "seven"},
    Damage{"NumberTooGreat", "<rp210:FormatVersion>259<", "<rp210:FormatVersion>65536<", "65536"},
    Damage{"LabelCutOff", "00.00</rp210:OperationalPattern>", "00</rp210:OperationalPattern>",
           "regular expression"},
    Damage{"NoInstanceUID", "<s377m:TimelineTrack rp210:InstanceUID", "<s377m:TimelineTrack id",
           "InstanceUID"},
    Damage{"UnknownPart", "<types:Month>2</types:Month>", "<types:Mouth>2</types:Mouth>",
           "types:Mouth"},
    Damage{"LinkToNothing", " types:TargetInstance=\"", " types:Target=\"", "TargetInstance"},
    Damage{"BytesThatAreNone", "6279746573", "6279746573x", "6279746573x"},
    Damage{"DarkSetWithoutKey", " groups:Key=\"", " groups:Kee=\"", "Kee"}};

std::string damaged(std::string document, const Damage& damage) {
    const std::string from = damage.from;
    return document.replace(document.find(from), from.size(), damage.to);
}

class Schema : public testing::TestWithParam<Damage> {};

TEST_P(Schema, doesNotAllowADamagedDocument) {
    std::string document = validDocument();
    const std::size_t at = document.find(GetParam().from);
    ASSERT_NE(at, std::string::npos) << document;
    const auto line =
        1 + std::count(document.begin(), document.begin() + static_cast<std::ptrdiff_t>(at), '\n');
    document = damaged(std::move(document), GetParam());
    const std::string errors = errorsOf(document);
    EXPECT_NE(errors.find(GetParam().told), std::string::npos) << errors << document;
    EXPECT_EQ(errors.find("line " + std::to_string(line) + ","), 0U) << errors << document;
}

INSTANTIATE_TEST_SUITE_P(, Schema, testing::ValuesIn(damages),
                         [](const auto& which) { return which.param.name; });

TEST(Schemas, allowWhatTheWriterMakes) { EXPECT_EQ(errorsOf(validDocument()), ""); }

std::vector<std::string> errorsOf(const XMLUtils::SchemaValidator& validator,
                                  const std::string& document) {
    std::vector<std::string> errors;
    for (const auto& error : validator.validate(
             reinterpret_cast<const unsigned char*>(document.data()), document.size(), 100)) {
        errors.push_back(error.describe());
    }
    return errors;
}

TEST(PreparedSchemas, areThoseOfTheBuiltInDictionary) {
    const auto prepared = XMLBuilder::preparedSchemas();
    const XMLUtils::SchemaValidator compiled(
        XMLBuilder::schemaTexts(*MetaMetadata::Dictionary::builtIn()));
    const std::string again = compiled.prepared(MetaMetadata::builtInFingerprint());
    EXPECT_TRUE(again.size() == prepared.length &&
                std::memcmp(again.data(), prepared.bytes, prepared.length) == 0)
        << "prepare them again";
}

/// Compares two validators of documents of the built-in dictionary.
void expectSameVerdicts(const XMLUtils::SchemaValidator& one,
                        const XMLUtils::SchemaValidator& other) {
    const std::string valid = validDocument();
    EXPECT_THAT(errorsOf(one, valid), testing::IsEmpty());
    EXPECT_THAT(errorsOf(other, valid), testing::IsEmpty());
    for (const Damage& damage : damages) {
        const auto errors = errorsOf(one, damaged(valid, damage));
        EXPECT_THAT(errors, testing::Not(testing::IsEmpty())) << damage.name;
        EXPECT_EQ(errors, errorsOf(other, damaged(valid, damage))) << damage.name;
    }
}

TEST(PreparedSchemas, sayTheSameAsThoseThatAreCompiled) {
    const auto prepared = XMLBuilder::preparedSchemas();
    const auto validator = XMLUtils::SchemaValidator::fromPrepared(
        prepared.bytes, prepared.length, MetaMetadata::builtInFingerprint());
    ASSERT_NE(validator, nullptr);
    expectSameVerdicts(*validator, XMLUtils::SchemaValidator(XMLBuilder::schemaTexts(
                                       *MetaMetadata::Dictionary::builtIn())));
}

TEST(PreparedSchemas, areNotUsedWhereTheyAreStaleOrDamaged) {
    const auto& dictionary = *MetaMetadata::Dictionary::builtIn();
    const auto good = XMLBuilder::documentValidator(dictionary);
    const auto prepared = XMLBuilder::preparedSchemas();
    const std::vector<unsigned char> bytes(prepared.bytes, prepared.bytes + prepared.length);
    const std::size_t origin = 8; // after the kind of file
    for (const std::size_t place : {std::size_t{0}, origin, bytes.size() / 2, bytes.size() - 1}) {
        auto changed = bytes;
        changed[place] ^= 1;
        expectSameVerdicts(
            *good, *XMLBuilder::documentValidator(dictionary, {changed.data(), changed.size()}));
    }
    expectSameVerdicts(*good, *XMLBuilder::documentValidator(dictionary, {bytes.data(), 100}));
}

TEST(PreparedSchemas, areNotThoseOfOtherDictionaries) {
    auto model = Model::extendedBy(
        "namespace s377m urn:SMPTE:S377M\nnamespace e urn:test:elements\n"
        "extend s377m:Preface\n"
        "property e:Note 06.0e.2b.34.01.01.01.01.0e.7f.01.00.00.00.01.00 - UInt8 optional -\n");
    auto& preface = model.set("Preface", 1);
    model.value(preface, "Note", Types::UInt8(7));
    const std::string document = compactXmlOf(model); // which is held to be valid
    EXPECT_THAT(
        errorsOf(*XMLBuilder::documentValidator(*MetaMetadata::Dictionary::builtIn()), document),
        testing::Contains(testing::HasSubstr("Note")));
}

TEST(Schemas, areOneForEachNamespaceWithItsOwnFile) {
    const auto schemas = XMLBuilder::makeSchemas(*MetaMetadata::Dictionary::builtIn());
    std::vector<std::string> files;
    for (const auto& schema : schemas) {
        files.push_back(schema.fileName);
        EXPECT_NE(toText(schema.document.get(), XMLUtils::Layout::compact)
                      .find("targetNamespace=\"" + schema.namespaceUri + "\""),
                  std::string::npos);
    }
    EXPECT_THAT(files, testing::IsSupersetOf({"s377m.xsd", "rp210.xsd", "groups.xsd", "types.xsd",
                                              "s422mTypes.xsd"}));
    EXPECT_TRUE(std::is_sorted(files.begin(), files.end()));
    EXPECT_EQ(std::adjacent_find(files.begin(), files.end()), files.end());
}

TEST(Schemas, areTheSameOnEveryCall) {
    const auto& dictionary = *MetaMetadata::Dictionary::builtIn();
    const auto once = XMLBuilder::makeSchemas(dictionary);
    const auto again = XMLBuilder::makeSchemas(dictionary);
    ASSERT_EQ(once.size(), again.size());
    for (std::size_t i = 0; i != once.size(); ++i) {
        EXPECT_EQ(toText(once[i].document.get(), XMLUtils::Layout::compact),
                  toText(again[i].document.get(), XMLUtils::Layout::compact));
    }
}

TEST(Schemas, knowWhatAnExtensionGivesToAClassThatOthersInheritFrom) {
    // It has the highest SchemaIndex, so it is after the properties of the descendants.
    auto model = Model::extendedBy(
        "namespace s377m urn:SMPTE:S377M\nnamespace e urn:test:elements\n"
        "extend s377m:InterchangeObject\n"
        "property e:Note 06.0e.2b.34.01.01.01.01.0e.7f.01.00.00.00.01.00 - UTF16String optional "
        "-\n");
    auto& preface = model.set("Preface", 1);
    model.value(preface, "FormatVersion", Types::VersionType(1, 3));
    model.value(preface, "Note", Types::UTF16String(Platform::fromUtf8("x").c_str()));
    const std::string document = xmlOf(model); // which is held to be valid
    EXPECT_LT(document.find("FormatVersion"), document.find("e:Note"));
}

TEST(Schemas, refuseASetAndAPropertyOfOneName) {
    auto model = Model::extendedBy(
        "namespace s377m urn:SMPTE:S377M\nnamespace e urn:test:elements\n"
        "set e:Same 06.0e.2b.34.02.53.01.01.0e.7f.01.00.00.00.00.00 s377m:InterchangeObject "
        "concrete\n"
        "property e:Same 06.0e.2b.34.01.01.01.01.0e.7f.01.00.00.00.01.00 - UInt8 optional -\n");
    const Failure failure = failureOf<Exceptions::InvalidDictionary>(
        [&] { XMLBuilder::makeSchemas(model.dictionary()); });
    EXPECT_NE(failure.message.find("Same"), std::string::npos) << failure.message;
    EXPECT_NE(failure.message.find("urn:test:elements"), std::string::npos) << failure.message;
}

} // namespace
} // namespace Corvid::Testing
