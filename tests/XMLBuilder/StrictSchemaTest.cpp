#include "XMLBuilder/reader/strict/ReadStrictly.h"
#include "host/dataio/Memory.h"
#include "tests/XMLBuilder/Things.h"
#include "tests/XMLBuilder/Validity.h"
#include "tests/XMLBuilder/ValueCases.h"

/// Editors check a document against its schema, the command reads it strictly. What one takes and
/// the other does not confuses people, so each such difference is listed here, with its reason.
namespace Corvid::Testing {
namespace {

const std::string identifier = " rp210:InstanceUID=\"" + dotted(16) + "\"";

std::string thing(const std::string& inside) {
    return "<t:Thing" + identifier + ">" + inside + "</t:Thing>";
}

class StrictReadingAndSchemas : public Things {
protected:
    /// What is wrong with a document to strict reading.
    std::vector<XMLBuilder::Mistakes::Entry> mistakesIn(const std::string& document) {
        Metadata::PartitionMetadata partition(model_.partition.partitionDictionary().dictionary());
        XMLBuilder::Mistakes mistakes;
        DataIO::Memory::MemoryDataSource source(
            reinterpret_cast<const unsigned char*>(document.data()), document.size());
        XMLBuilder::readStrictly(source, partition, {}, mistakes);
        return mistakes.entries();
    }

    std::string mistakesOf(const std::string& document) {
        std::string lines;
        for (const auto& entry : mistakesIn(document)) {
            lines += entry.text + "\n";
        }
        return lines;
    }

    std::string schemaErrorsOf(const std::string& document) {
        return validityErrors(model_.dictionary(), document);
    }
};

struct KnownDifference {
    const char* place; ///< what is right in front of the text
    std::string text;  ///< that only one of both takes
};

const std::vector<KnownDifference>& differencesInValues() {
    static const std::vector<KnownDifference> all = {
        // White space around a value does not count to people, so not to strict reading. The
        // library's reader takes a 0 with a blank for true, so the schema refuses it.
        {"<e:Boolean>", " 0"},
        {"<e:Boolean>", "1 "},
        // Right only where a processing instruction says so, which a schema can't see.
        {"<s422mTypes:Spcod>", ""},
        {"<s422mTypes:SPgcd>", ""},
    };
    return all;
}

bool differs(const ValueCase& place, const std::string& text) {
    return std::any_of(differencesInValues().begin(), differencesInValues().end(),
                       [&](const KnownDifference& each) {
                           const std::size_t size = std::string(each.place).size();
                           return text == each.text && place.before.size() >= size &&
                                  place.before.substr(place.before.size() - size) == each.place;
                       });
}

TEST_F(StrictReadingAndSchemas, agreeOnTheFormsOfValues) {
    std::size_t differences = 0;
    for (const auto& place : valueCases()) {
        Texts texts = place.allowed;
        texts.insert(texts.end(), place.refused.begin(), place.refused.end());
        std::string things = "\n";
        std::vector<std::ptrdiff_t> firstLines;
        for (const auto& text : texts) {
            firstLines.push_back(1 + std::count(things.begin(), things.end(), '\n'));
            things += thing(place.before + text + place.after) + "\n";
        }
        std::vector<bool> isRefused(texts.size());
        for (const auto& mistake : mistakesIn(documentOf(things))) {
            const auto after = std::upper_bound(firstLines.begin(), firstLines.end(),
                                                static_cast<std::ptrdiff_t>(mistake.line));
            isRefused[static_cast<std::size_t>(after - firstLines.begin()) - 1] = true;
        }
        for (std::size_t i = 0; i != texts.size(); ++i) {
            const bool isKnown = differs(place, texts[i]);
            differences += isKnown ? 1 : 0;
            EXPECT_EQ(isRefused[i], (i >= place.allowed.size()) != isKnown)
                << place.before << texts[i];
        }
    }
    EXPECT_EQ(differences, differencesInValues().size());
}

/// Who takes a document.
enum class Taken { byBoth, byNeither, byStrictReading, bySchema };

struct Structure {
    const char* name;
    std::string document;
    Taken taken;
};
void PrintTo(const Structure& c, std::ostream* out) { *out << c.name; }

std::string inside(const std::string& sets) { return documentOf(sets); }
std::string property(const std::string& name, const std::string& content) {
    return "<e:" + name + ">" + content + "</e:" + name + ">";
}
std::string rational(const std::string& parts) {
    return inside(thing(property("Rational", parts)));
}
std::string layout(const std::string& attributes, int components) {
    std::string all;
    for (int i = 0; i != components; ++i) {
        all += "<types:RGBAComponent" + attributes +
               "><types:Code>0</types:Code><types:Depth>0</types:Depth></types:RGBAComponent>";
    }
    return inside(thing(property("RGBALayout", all)));
}
std::string extension(const std::string& content) {
    return "<groups:ExtensionElements>" + content + "</groups:ExtensionElements>";
}
std::string dark(const std::string& attributes, const std::string& content = "00") {
    return "<groups:DarkMetadata" + attributes + ">" + content + "</groups:DarkMetadata>";
}
std::string floating(const std::string& content) {
    return "<groups:FloatingDarkMetadata>" + content + "</groups:FloatingDarkMetadata>";
}
std::string link(const std::string& name, const std::string& rest = "") {
    return "<" + name + " types:TargetInstance=\"" + dotted(16) + "\"" + rest + "/>";
}
std::string reference(const std::string& content) {
    return inside(thing(property("StrongReference", content)));
}

const std::string numerator = "<types:Numerator>1</types:Numerator>";
const std::string denominator = "<types:Denominator>1</types:Denominator>";
const std::string darkElement =
    "<groups:DarkElement groups:StaticLocalTag=\"3c.07\">00</groups:DarkElement>";
const std::string darkKey = " groups:Key=\"06.0e.2b.34.02.53.01.01.0e.7f.7f.01.00.00.00.00\"";
const std::string darkLength = " groups:BEROctetCount=\"4\"";

class StrictReadingAndSchemasOn : public StrictReadingAndSchemas,
                                  public ::testing::WithParamInterface<Structure> {};

TEST_P(StrictReadingAndSchemasOn, agreeButForWhatIsKnown) {
    const std::string mistakes = mistakesOf(GetParam().document);
    const std::string errors = schemaErrorsOf(GetParam().document);
    const Taken taken = GetParam().taken;
    EXPECT_EQ(mistakes.empty(), taken == Taken::byBoth || taken == Taken::byStrictReading)
        << mistakes;
    EXPECT_EQ(errors.empty(), taken == Taken::byBoth || taken == Taken::bySchema) << errors;
}

std::string nameOfStructure(const ::testing::TestParamInfo<Structure>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Names, StrictReadingAndSchemasOn,
    ::testing::Values(
        Structure{"RightOnes", inside(thing(property("UInt8", "1"))), Taken::byBoth},
        Structure{"NoSets", inside(""), Taken::byBoth},
        Structure{"AnotherRoot", "<root/>", Taken::byNeither},
        Structure{"TheRootInAnotherNamespace", "<MetadataSets xmlns=\"urn:test\"/>",
                  Taken::byNeither},
        Structure{"TheRootWithoutNamespace", "<MetadataSets/>", Taken::byNeither},
        Structure{"ASetAsRoot", "<Preface xmlns=\"urn:SMPTE:S377M\"/>", Taken::byNeither},
        Structure{"AnUnknownSet", inside("<t:Thnig/>"), Taken::byNeither},
        Structure{"ASetInAnotherNamespace", inside("<s377m:Thing" + identifier + "/>"),
                  Taken::byNeither},
        Structure{"APropertyAmongSets", inside("<e:UInt8>1</e:UInt8>"), Taken::byNeither},
        Structure{"ALinkAmongSets", inside(link("s377m:Dangling_REF")), Taken::byNeither},
        Structure{"ADarkSetAmongSets", inside(dark(darkKey + darkLength)), Taken::byNeither},
        Structure{"AnUnknownProperty", inside(thing(property("Uint8", "1"))), Taken::byNeither},
        Structure{"APropertyInAnotherNamespace", inside(thing("<t:UInt8>1</t:UInt8>")),
                  Taken::byNeither},
        Structure{"APropertyOfAnotherClass", inside(thing("<rp210:TrackID>1</rp210:TrackID>")),
                  Taken::byNeither},
        Structure{"AnIdentifierAsElement",
                  inside(thing("<rp210:InstanceUID>" + dotted(16) + "</rp210:InstanceUID>")),
                  Taken::byNeither},
        Structure{"AnAttributeOfTheRoot", documentOf("", std::string(allNamespaces) + " a=\"b\""),
                  Taken::byNeither},
        Structure{"AnAttributeOfASet", inside("<t:Thing a=\"b\"" + identifier + "/>"),
                  Taken::byNeither},
        Structure{"AnIdentifierWithoutNamespace",
                  inside("<t:Thing InstanceUID=\"" + dotted(16) + "\"" + identifier + "/>"),
                  Taken::byNeither},
        Structure{"AnIdentifierWithoutNamespaceAlone",
                  inside("<t:Thing InstanceUID=\"" + dotted(16) + "\"/>"), Taken::byNeither},
        Structure{"AnAttributeOfAProperty", inside(thing("<e:UInt8 a=\"b\">1</e:UInt8>")),
                  Taken::byNeither},
        Structure{"AnAttributeOfAnEmptyText", inside(thing("<e:ISO7String a=\"b\"/>")),
                  Taken::byNeither},
        Structure{"AnAttributeOfAReference", inside(thing("<e:StrongReference a=\"b\"/>")),
                  Taken::byNeither},
        Structure{"AnAttributeOfAnItem",
                  inside(thing(property("UInt8Array", "<e:Element a=\"b\">1</e:Element>"))),
                  Taken::byNeither},
        Structure{"AnAttributeOfAPart",
                  rational("<types:Numerator a=\"b\">1</types:Numerator>" + denominator),
                  Taken::byNeither},
        Structure{"AnAttributeOfALink", reference(link("s377m:Dangling_REF", " a=\"b\"")),
                  Taken::byNeither},
        Structure{"AnAttributeOfTheExtensions",
                  inside(thing("<groups:ExtensionElements a=\"b\"><groups:DarkElement/>"
                               "</groups:ExtensionElements>")),
                  Taken::byNeither},
        Structure{"AnAttributeOfADarkElement",
                  inside(thing(extension("<groups:DarkElement a=\"b\"/>"))), Taken::byNeither},
        Structure{"AnAttributeOfADarkSet", inside(floating(dark(darkKey + darkLength + " a=''"))),
                  Taken::byNeither},
        Structure{"AnAttributeOfTheContainer", inside("<groups:FloatingDarkMetadata a=\"b\"/>"),
                  Taken::byNeither},
        Structure{"TheLocationOfASchema",
                  documentOf("", std::string(allNamespaces) +
                                     " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                                     "xsi:schemaLocation=\"urn:x x\""),
                  Taken::byBoth},
        // Editors may add it, and it says nothing of the metadata.
        Structure{"ALanguage", documentOf("", std::string(allNamespaces) + " xml:lang=\"en\""),
                  Taken::byStrictReading}),
    nameOfStructure);

INSTANTIATE_TEST_SUITE_P(
    Places, StrictReadingAndSchemasOn,
    ::testing::Values(
        Structure{"NoIdentifier", inside("<t:Thing/>"), Taken::byNeither},
        Structure{"APropertyTwice", inside(thing(property("UInt8", "1") + property("UInt8", "1"))),
                  Taken::byNeither},
        // A schema can't leave the order free and yet say how often each may be there.
        Structure{"PropertiesInAnotherOrder",
                  inside(thing(property("Int8", "1") + property("UInt8", "1"))),
                  Taken::byStrictReading},
        Structure{"PartsInAnotherOrder", rational(denominator + numerator), Taken::byStrictReading},
        Structure{"AnAttributeOfAComponent", layout(" a=\"b\"", 5), Taken::byNeither},
        Structure{"AllComponents", layout("", 5), Taken::byBoth},
        Structure{"AMissingComponent", layout("", 4), Taken::byNeither},
        Structure{"ASixthComponent", layout("", 6), Taken::byNeither},
        Structure{"ARightRational", rational(numerator + denominator), Taken::byBoth},
        Structure{"AMissingPart", rational(numerator), Taken::byNeither},
        Structure{"NoParts", rational(""), Taken::byNeither},
        Structure{"APartTwice", rational(numerator + denominator + denominator), Taken::byNeither},
        Structure{"AnUnknownPart", rational(numerator + denominator + "<types:Rest>1</types:Rest>"),
                  Taken::byNeither},
        Structure{"APartInAnotherNamespace", rational("<e:Numerator>1</e:Numerator>" + denominator),
                  Taken::byNeither},
        Structure{"TextAmongParts", rational("1" + numerator + denominator), Taken::byNeither},
        Structure{"TextAmongProperties", inside(thing("a" + property("UInt8", "1"))),
                  Taken::byNeither},
        Structure{"TextAmongSets", inside("a" + thing("")), Taken::byNeither},
        Structure{"TextAmongItems", inside(thing(property("UInt8Array", "1"))), Taken::byNeither},
        Structure{"AnItemOfAnotherName",
                  inside(thing(property("UInt8Array", "<e:Item>1</e:Item>"))), Taken::byNeither},
        Structure{"AnItemInAnotherNamespace",
                  inside(thing(property("UInt8Array", "<t:Element>1</t:Element>"))),
                  Taken::byNeither},
        Structure{"NoItems", inside(thing(property("UInt8Array", ""))), Taken::byBoth},
        Structure{"AnElementInText", inside(thing(property("ISO7String", "<e:UInt8/>"))),
                  Taken::byNeither},
        Structure{"AnElementInANumber", inside(thing(property("UInt8", "1<e:UInt8/>"))),
                  Taken::byNeither},
        Structure{"ASetAmongProperties", inside(thing(thing(""))), Taken::byNeither},
        Structure{"TextInAReference", reference("a"), Taken::byNeither},
        Structure{"TextInALink",
                  reference("<s377m:Dangling_REF types:TargetInstance=\"" + dotted(16) +
                            "\">a</s377m:Dangling_REF>"),
                  Taken::byNeither},
        Structure{"AnElementInALink",
                  reference("<s377m:Dangling_REF types:TargetInstance=\"" + dotted(16) +
                            "\"><e:UInt8/></s377m:Dangling_REF>"),
                  Taken::byNeither},
        Structure{"ALinkWithoutTarget", reference("<s377m:Dangling_REF/>"), Taken::byNeither},
        Structure{"TwoLinksInAReference",
                  reference(link("s377m:Dangling_REF") + link("s377m:Dangling_REF")),
                  Taken::byNeither},
        Structure{"ALinkOfAnUnknownClass", reference(link("t:Thnig_REF")), Taken::byNeither},
        Structure{"ALinkInAnotherNamespace", reference(link("s377m:Thing_REF")), Taken::byNeither},
        Structure{"ADanglingLinkInAnotherNamespace", reference(link("t:Dangling_REF")),
                  Taken::byNeither},
        Structure{"AnAmbiguousLink", reference(link("t:MULTIPLE_METADATASETS_REF")), Taken::byBoth},
        Structure{"AnAmbiguousLinkInAnotherNamespace",
                  reference(link("types:MULTIPLE_METADATASETS_REF")), Taken::byNeither},
        Structure{"ALinkToItself", reference(link("t:Thing_REF")), Taken::byBoth},
        // A schema can't follow links, whose targets may be left out on purpose.
        Structure{"ALinkToNothing",
                  reference("<t:Thing_REF types:TargetInstance=\"" + dotted(16, "0b") + "\"/>"),
                  Taken::bySchema},
        Structure{"AnEmptyReference", reference(""), Taken::byBoth},
        Structure{"ASetInAReference",
                  reference("<t:Other rp210:InstanceUID=\"" + dotted(16, "0b") + "\"/>"),
                  Taken::byBoth},
        Structure{"APropertyInAReference", reference(property("UInt8", "1")), Taken::byNeither},
        // to-xml never writes that, but who deletes the last extension leaves it.
        Structure{"NoExtensions", inside(thing(extension(""))), Taken::byStrictReading},
        Structure{"ExtensionsTwice", inside(thing(extension(darkElement) + extension(darkElement))),
                  Taken::byNeither},
        // A schema can't ask for one of two attributes.
        Structure{"ADarkElementWithoutName",
                  inside(thing(extension("<groups:DarkElement>00</groups:DarkElement>"))),
                  Taken::bySchema},
        Structure{
            "ADarkElementWithTwoNames",
            inside(thing(extension(
                "<groups:DarkElement groups:StaticLocalTag=\"3c.07\" groups:UniversalLabel=\"" +
                dotted(16) + "\">00</groups:DarkElement>"))),
            Taken::bySchema},
        Structure{"AnUnknownExtension", inside(thing(extension("<e:Unknwon/>"))), Taken::byNeither},
        Structure{"AMisplacedProperty", inside(thing(extension(property("OtherNumber", "1")))),
                  Taken::byBoth},
        Structure{"ASetAsExtension", inside(thing(extension(thing("")))), Taken::byNeither},
        Structure{"ADarkSet", inside(floating(dark(darkKey + darkLength))), Taken::byBoth},
        Structure{"ADarkSetWithoutKey", inside(floating(dark(darkLength))), Taken::byNeither},
        Structure{"ADarkSetWithoutLength", inside(floating(dark(darkKey))), Taken::byNeither},
        // The schema knows the type of the number only. A length has 1 to 9 octets.
        Structure{"ALengthOfNoOctets",
                  inside(floating(dark(darkKey + " groups:BEROctetCount='0'"))), Taken::bySchema},
        Structure{"ALengthOfTenOctets",
                  inside(floating(dark(darkKey + " groups:BEROctetCount='10'"))), Taken::bySchema},
        Structure{"ALengthOfNineOctets",
                  inside(floating(dark(darkKey + " groups:BEROctetCount='9'"))), Taken::byBoth},
        Structure{"AnElementInADarkSet", inside(floating(dark(darkKey + darkLength, "<e:UInt8/>"))),
                  Taken::byNeither},
        Structure{"ADarkSetOfAnotherName", inside(floating("<groups:Dark/>")), Taken::byNeither},
        Structure{
            "ADarkSetInAnotherNamespace",
            inside(floating("<t:DarkMetadata" + darkKey + darkLength + ">00</t:DarkMetadata>")),
            Taken::byNeither},
        Structure{"TextAmongDarkSets", inside(floating("a" + dark(darkKey + darkLength))),
                  Taken::byNeither},
        // The order of sets is free to people, as that of properties.
        Structure{"TheContainerTwice", inside(floating("") + floating("")), Taken::byStrictReading},
        Structure{"TheContainerBeforeASet", inside(floating("") + thing("")),
                  Taken::byStrictReading},
        Structure{"AContainerInAContainer", inside(floating(floating(""))), Taken::byNeither}),
    nameOfStructure);

} // namespace
} // namespace Corvid::Testing
