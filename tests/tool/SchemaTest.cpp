#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/Dictionary.h"
#include "tests/tool/RunCommand.h"

#include <gmock/gmock.h>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

using namespace Corvid;
using namespace Corvid::Testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class SchemaCommand : public ::testing::Test {
protected:
    SchemaCommand() { shop.write("clip.mxf", smallClip()); }

    Workshop shop;
};

TEST_F(SchemaCommand, writesAFileForEachNamespace) {
    const Outcome outcome = shop.run("corvid schema -o made/schema");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, IsEmpty());
    EXPECT_THAT(outcome.err, HasSubstr("s377m.xsd describes whole documents"));
    for (const char* file : {"s377m", "rp210", "groups", "types", "s422mTypes"}) {
        EXPECT_THAT(shop.read(std::string("made/schema/") + file + ".xsd"), HasSubstr("<xs:schema"))
            << file;
    }
}

TEST_F(SchemaCommand, describesWhatADictionaryAdds) {
    shop.write("house.dict", std::string("namespace s377m urn:SMPTE:S377M\n"
                                         "namespace house urn:test:House\n"
                                         "extend s377m:Preface\n"
                                         "property house:Shelf 06.0e.2b.34.01.01.01.01.0e.7f.01."
                                         "00.00.00.01.00 - UInt8 optional -\n"));
    EXPECT_EQ(shop.run("corvid schema --dictionary house.dict -o schema").status, 0);
    EXPECT_THAT(shop.read("schema/house.xsd"), HasSubstr("name=\"Shelf\""));
    EXPECT_THAT(shop.read("schema/s377m.xsd"), HasSubstr("ref=\"house:Shelf\""));
}

TEST_F(SchemaCommand, writesOneFileForJson) {
    const Outcome outcome = shop.run("corvid schema --json -o made/schema");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, IsEmpty());
    EXPECT_THAT(outcome.err,
                HasSubstr("corvid-metadata.schema.json describes what to-json writes"));
    EXPECT_EQ(shop.run("ls made/schema").out, "corvid-metadata.schema.json\n");
    const auto schema = nlohmann::json::parse(shop.read("made/schema/corvid-metadata.schema.json"));
    EXPECT_EQ(schema["$schema"], "https://json-schema.org/draft/2020-12/schema");
    const auto& track = schema["$defs"]["class.TimelineTrack"]["properties"];
    EXPECT_EQ(track["EditRate"]["$ref"], "#/$defs/Rational");
    EXPECT_FALSE(track.contains("StoredWidth"));
}

/// A symbol may be that of several properties, as MaxGOP is. Its class says which one it is: no two
/// classes have one name, and no two properties of a class one key.
TEST_F(SchemaCommand, hasAKeyForEachPropertyOfAClass) {
    ASSERT_EQ(shop.run("corvid schema --json").status, 0);
    auto definitions = nlohmann::json::parse(shop.read("corvid-metadata.schema.json"))["$defs"];
    const auto dictionary = MetaMetadata::Dictionary::builtIn();
    std::set<std::string> classes;
    std::map<std::string, std::set<const MetaMetadata::MetaElement*>> bySymbol;
    for (auto set = dictionary->metaMetadataSetBegin(); set != dictionary->metaMetadataSetEnd();
         ++set) {
        const std::string name = MetaMetadata::tagName(**set);
        EXPECT_TRUE(classes.insert(name).second) << name;
        std::multiset<std::string> wanted;
        for (const auto& attribute : (*set)->attributes()) {
            const auto& property = *attribute->facts().definition;
            wanted.insert(MetaMetadata::tagName(property));
            bySymbol[MetaMetadata::tagName(property)].insert(&property);
        }
        std::multiset<std::string> found;
        for (const auto& [key, type] : definitions["class." + name]["properties"].items()) {
            found.insert(key.substr(key.find(':') + 1));
        }
        EXPECT_EQ(found, wanted) << name;
    }
    EXPECT_EQ(bySymbol["MaxGOP"].size(), 2U);
    const auto typeOf = [&](const char* name, const char* key) {
        return definitions[std::string("class.") + name]["properties"][key]["$ref"];
    };
    EXPECT_EQ(typeOf("CDCIDescriptor", "MaxGOP"), "#/$defs/Int32");
    EXPECT_EQ(typeOf("MPEGVideoDescriptor", "MaxGOP"), "#/$defs/UInt16");
    EXPECT_EQ(typeOf("MPEGVideoDescriptor", "avidEl:MaxGOP"), "#/$defs/Int32");
}

TEST_F(SchemaCommand, refusesASetWithTheNameOfAnother) {
    shop.write("house.dict",
               std::string("namespace s377m urn:SMPTE:S377M\n"
                           "namespace house urn:test:House\n"
                           "set house:Preface 06.0e.2b.34.02.53.01.01.0e.7f.01.00.00.00.00.00 "
                           "s377m:InterchangeObject concrete\n"));
    const Outcome outcome = shop.run("corvid schema --json --dictionary house.dict");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("its tag name is taken already by s377m:Preface"));
}

TEST_F(SchemaCommand, describesInJsonWhatADictionaryAdds) {
    shop.write("house.dict", std::string("namespace s377m urn:SMPTE:S377M\n"
                                         "namespace house urn:test:House\n"
                                         "extend s377m:Preface\n"
                                         "property house:Shelf 06.0e.2b.34.01.01.01.01.0e.7f.01."
                                         "00.00.00.01.00 - UInt8 optional -\n"
                                         "property house:ByteOrder 06.0e.2b.34.01.01.01.01.0e.7f."
                                         "01.00.00.00.02.00 - UInt8 optional -\n"));
    EXPECT_EQ(shop.run("corvid schema --json --dictionary house.dict").status, 0);
    const auto schema = nlohmann::json::parse(shop.read("corvid-metadata.schema.json"));
    const auto& preface = schema["$defs"]["class.Preface"]["properties"];
    EXPECT_EQ(preface["Shelf"]["$ref"], "#/$defs/UInt8");
    EXPECT_EQ(preface["ByteOrder"]["$ref"], "#/$defs/Int16");
    EXPECT_EQ(preface["house:ByteOrder"]["$ref"], "#/$defs/UInt8");
}

TEST_F(SchemaCommand, leavesNothingHalfWritten) {
    shop.run("mkdir schema; mkdir schema/types.xsd");
    const Outcome outcome = shop.run("corvid schema -o schema");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("types.xsd"));
    EXPECT_EQ(shop.run("ls schema").out, "types.xsd\n");
    EXPECT_EQ(shop.run("corvid schema -o clip.mxf/schema").status, 3);
}

TEST_F(SchemaCommand, validatesWhatIsWritten) {
    const Outcome plain = shop.run("corvid to-xml clip.mxf");
    const Outcome checked = shop.run("corvid to-xml --validate clip.mxf");
    EXPECT_EQ(checked.status, 0) << checked.err;
    EXPECT_EQ(checked.out, plain.out);
    EXPECT_THAT(checked.err, IsEmpty());
}

TEST_F(SchemaCommand, refusesADocumentThatIsNotValid) {
    // A set without InstanceUID can be written, but nobody could refer to it.
    shop.write("nameless.mxf", clipWithANamelessSet());
    EXPECT_EQ(shop.run("corvid to-xml nameless.mxf -o plain.xml").status, 0);
    const Outcome outcome = shop.run("corvid to-xml --validate nameless.mxf -o checked.xml");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("corvid: nameless.mxf: line 22, column 26: "));
    EXPECT_THAT(outcome.err, HasSubstr("InstanceUID"));
    EXPECT_EQ(shop.run("ls *.xml").out, "plain.xml\n");
}

} // namespace
