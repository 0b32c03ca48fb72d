#include "host/dictionary/Dictionary.h"

#include "tests/dictionary/DictionarySupport.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <thread>

namespace Corvid::Testing {

namespace {

using namespace MetaMetadata;

const Dictionary& builtIn() {
    static const auto dictionary = Dictionary::builtIn();
    return *dictionary;
}

std::vector<const MetaMetadataSet*> sets(const Dictionary& dictionary = builtIn()) {
    return {dictionary.metaMetadataSetBegin(), dictionary.metaMetadataSetEnd()};
}

std::vector<const MetaElement*> elements() {
    return {builtIn().metaElementBegin(), builtIn().metaElementEnd()};
}

std::string typeOf(const MetaElement& element) {
    const std::string type = Types::Identifiers::typeName(element.dataType());
    if (!element.isCollection()) {
        return type;
    }
    const auto& collection = dynamic_cast<const MetaCollectionElement&>(element);
    return type + "(" + Types::Identifiers::typeName(collection.dataSubType()) + ")";
}

/// Everything that a dictionary says, one line per fact.
std::vector<std::string> factsOf(const Dictionary& dictionary) {
    std::vector<std::string> facts;
    for (auto i = dictionary.metaElementBegin(); i != dictionary.metaElementEnd(); ++i) {
        const MetaElement& element = **i;
        facts.push_back(nameOf(element) + " " + textOf(element, "XMLNamespaceURI") + " " +
                        dotted(element.label()) + " " + std::to_string(element.staticLocalTag()) +
                        " " + typeOf(element) + " " + textOf(element, "SchemaIndex"));
    }
    for (auto i = dictionary.metaMetadataSetBegin(); i != dictionary.metaMetadataSetEnd(); ++i) {
        const MetaMetadataSet& set = **i;
        facts.push_back(nameOf(set) + " " + textOf(set, "XMLNamespaceURI") + " " +
                        dotted(set.key()) + " " +
                        (set.parent() == nullptr ? "-" : nameOf(*set.parent())) + " " +
                        std::to_string(set.isConcrete()));
        for (const MetaAttribute* property : propertiesOf(set)) {
            facts.push_back("  " + nameOf(property->metaElement()) + " " +
                            std::to_string(property->requiredStatus()));
        }
    }
    return facts;
}

} // namespace

void expectFacts(const Dictionary& compiled, const OwnedTexts& texts) {
    const auto expected = factsOf(*Dictionary::fromTexts(texts.texts()));
    const auto facts = factsOf(compiled);
    ASSERT_GT(expected.size(), 5000U);
    ASSERT_EQ(facts.size(), expected.size());
    for (std::size_t i = 0; i != expected.size(); ++i) {
        ASSERT_EQ(facts[i], expected[i]);
    }
}

TEST(BuiltInDictionary, isWhatItsTextsSay) { expectFacts(builtIn(), builtInTexts()); }

TEST(RegisteredDictionary, isWhatItsTextsSay) {
    expectFacts(*Dictionary::registered(), smpteTexts());
}

TEST(RegisteredDictionary, isOneObject) {
    EXPECT_EQ(Dictionary::registered().get(), Dictionary::registered().get());
}

TEST(BuiltInDictionary, isOneObjectForAllThreads) {
    std::vector<const Dictionary*> seen(8);
    std::vector<std::size_t> counts(8);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i != seen.size(); ++i) {
        threads.emplace_back([&seen, &counts, i] {
            const auto dictionary = Dictionary::builtIn();
            seen[i] = dictionary.get();
            for (auto set = dictionary->metaMetadataSetBegin();
                 set != dictionary->metaMetadataSetEnd(); ++set) {
                counts[i] += (*set)->attributes().size();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(std::set<const Dictionary*>(seen.begin(), seen.end()).size(), 1U);
    EXPECT_EQ(std::set<std::size_t>(counts.begin(), counts.end()).size(), 1U);
}

TEST(BuiltInDictionary, iteratesInTheOrderOfKeysAndLabels) {
    const auto allSets = sets();
    const auto allElements = elements();
    EXPECT_TRUE(std::is_sorted(allSets.begin(), allSets.end(),
                               [](auto a, auto b) { return a->key() < b->key(); }));
    EXPECT_TRUE(std::is_sorted(allElements.begin(), allElements.end(),
                               [](auto a, auto b) { return a->label() < b->label(); }));
}

TEST(BuiltInDictionary, findsEverythingWhateverTheVersionByte) {
    for (const MetaMetadataSet* set : sets()) {
        auto bytes = set->key().bytes();
        bytes[7] ^= 0x5A;
        EXPECT_EQ(builtIn().findSet(KLV::Key(bytes)), set) << nameOf(*set);
        for (const MetaAttribute* property : propertiesOf(*set)) {
            auto label = property->metaElement().label();
            label[7] ^= 0x5A;
            const auto* found = set->find(label);
            ASSERT_NE(found, nullptr) << nameOf(*set) << " " << nameOf(property->metaElement());
            EXPECT_EQ(found->get(), property);
        }
    }
    for (const MetaElement* element : elements()) {
        auto label = element->label();
        label[7] ^= 0x5A;
        EXPECT_EQ(builtIn().findElement(label), element) << nameOf(*element);
    }
}

TEST(BuiltInDictionary, findsNothingElse) {
    auto preface = key("06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00").bytes();
    ASSERT_NE(builtIn().findSet(KLV::Key(preface)), nullptr);
    for (std::size_t i = 0; i != preface.size(); ++i) {
        auto other = preface;
        other[i] ^= 0x80;
        EXPECT_EQ(builtIn().findSet(KLV::Key(other)) != nullptr, i == 7) << "byte " << i;
    }
    const MetaMetadataSet* const found = builtIn().findSet(KLV::Key(preface));
    preface[5] = 0x13;
    EXPECT_EQ(builtIn().findSet(KLV::Key(preface)), found) << "with BER lengths";
    preface[5] = 0x05;
    EXPECT_EQ(builtIn().findSet(KLV::Key(preface)), nullptr) << "no local set";
    EXPECT_EQ(builtIn().findElement(Types::UniversalLabel()), nullptr);
    EXPECT_EQ(builtIn().findElementByStaticTag(0), nullptr);
    EXPECT_EQ(builtIn().findElementByStaticTag(0x8000), nullptr);
    const MetaMetadataSet* timecode = findSetByTag(builtIn(), "Timecode");
    ASSERT_NE(timecode, nullptr);
    EXPECT_EQ(timecode->find(label("06.0e.2b.34.01.01.01.02.06.01.01.04.06.09.00.00")), nullptr)
        << "a property of sequences";
}

TEST(BuiltInDictionary, findsStaticTags) {
    std::size_t count = 0;
    for (const MetaElement* element : elements()) {
        if (element->staticLocalTag() != 0) {
            ++count;
            EXPECT_LT(element->staticLocalTag(), 0x8000);
            EXPECT_EQ(builtIn().findElementByStaticTag(element->staticLocalTag()), element);
        }
    }
    EXPECT_GT(count, 200U);
    EXPECT_EQ(nameOf(*builtIn().findElementByStaticTag(0x3C0A)), "rp210:InstanceUID");
    EXPECT_EQ(nameOf(*builtIn().findElementByStaticTag(0x0102)), "rp210:GenerationUID");
}

TEST(BuiltInDictionary, namesAreUniqueAndFitForXml) {
    const std::regex ncName("[A-Za-z_][A-Za-z0-9._-]*");
    std::set<std::string> setTags;
    std::set<std::pair<std::string, std::string>> names;
    std::map<std::string, std::string> uriOfPrefix, prefixOfUri;
    const auto check = [&](const MetaDefinition& definition) {
        const std::string tag = textOf(definition, "XMLTagName");
        const std::string prefix = textOf(definition, "XMLDefaultPrefix");
        const std::string uri = textOf(definition, "XMLNamespaceURI");
        EXPECT_TRUE(std::regex_match(tag, ncName)) << tag;
        EXPECT_TRUE(std::regex_match(prefix, ncName)) << prefix;
        EXPECT_EQ(tag.find("_REF"), std::string::npos) << tag;
        EXPECT_EQ(uri.compare(0, 4, "urn:"), 0) << uri;
        EXPECT_EQ(uriOfPrefix.emplace(prefix, uri).first->second, uri);
        EXPECT_EQ(prefixOfUri.emplace(uri, prefix).first->second, prefix);
    };
    for (const MetaMetadataSet* set : sets()) {
        check(*set);
        EXPECT_TRUE(setTags.insert(textOf(*set, "XMLTagName")).second) << nameOf(*set);
        EXPECT_EQ(set->attribute("SchemaIndex"), nullptr);
    }
    for (const MetaElement* element : elements()) {
        check(*element);
        EXPECT_TRUE(
            names.emplace(textOf(*element, "XMLNamespaceURI"), textOf(*element, "XMLTagName"))
                .second)
            << nameOf(*element);
        EXPECT_EQ(element->attribute("Description"), nullptr);
        EXPECT_EQ(element->attribute(""), nullptr);
    }
    EXPECT_EQ(uriOfPrefix["s377m"], "urn:SMPTE:S377M");
    EXPECT_EQ(uriOfPrefix["rp210"], "urn:SMPTE:RP210");
}

TEST(BuiltInDictionary, concreteSetsHaveAnInstanceUID) {
    const auto instanceUID = label("06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00");
    for (const MetaMetadataSet* set : sets()) {
        if (set->isConcrete()) {
            const auto* found = set->find(instanceUID);
            ASSERT_NE(found, nullptr) << nameOf(*set);
            EXPECT_EQ(metaAttribute(**found)->requiredStatus(), AttributeRequiredStatus::required);
        }
    }
    EXPECT_NE(findSetByTag(builtIn(), "MetaDictionary")->find(instanceUID), nullptr)
        << "the registers forget this one";
}

TEST(RegisteredDictionary, ancestorsPropertiesComeFirst) {
    const auto dictionary = Dictionary::registered();
    for (const MetaMetadataSet* set : sets(*dictionary)) {
        const auto own = propertiesOf(*set);
        const std::size_t inherited =
            set->parent() == nullptr ? 0 : set->parent()->attributes().size();
        ASSERT_LE(inherited, own.size());
        unsigned long last = 0;
        for (std::size_t i = 0; i != inherited; ++i) {
            EXPECT_EQ(own[i], propertiesOf(*set->parent())[i]);
            last = std::max(last, schemaIndexOf(own[i]->metaElement()));
        }
        for (std::size_t i = inherited; i != own.size(); ++i) {
            EXPECT_GT(schemaIndexOf(own[i]->metaElement()), last)
                << nameOf(*set) << " " << nameOf(own[i]->metaElement());
        }
    }
}

TEST(BuiltInDictionary, schemaIndexesAreUnique) {
    std::set<unsigned long> seen;
    for (const MetaElement* element : elements()) {
        EXPECT_TRUE(seen.insert(schemaIndexOf(*element)).second) << nameOf(*element);
    }
}

TEST(BuiltInDictionary, typesCanBeReadBack) {
    for (const MetaElement* element : elements()) {
        const auto* collection = dynamic_cast<const MetaCollectionElement*>(element);
        EXPECT_EQ(collection != nullptr, element->isCollection()) << nameOf(*element);
        const auto type = collection == nullptr ? element->dataType() : collection->dataSubType();
        ASSERT_NE(Types::Identifiers::typeName(type), nullptr) << nameOf(*element);
        EXPECT_NE(type, Types::Identifiers::DataValue) << nameOf(*element);
        EXPECT_NE(type, Types::Identifiers::Unknown) << nameOf(*element);
        if (collection != nullptr) {
            EXPECT_GT(Types::Identifiers::typeSize(type), 0) << nameOf(*element);
        }
    }
}

struct Sample {
    const char* set;
    unsigned short tag;
    const char* name;
    const char* type;
    AttributeRequiredStatus::Status status;
};

class KnowsProperty : public ::testing::TestWithParam<Sample> {};

TEST_P(KnowsProperty, asTheStandardHasIt) {
    const Sample& sample = GetParam();
    const MetaElement* element = builtIn().findElementByStaticTag(sample.tag);
    ASSERT_NE(element, nullptr);
    EXPECT_EQ(nameOf(*element), std::string("rp210:") + sample.name);
    EXPECT_EQ(typeOf(*element), sample.type);
    const MetaMetadataSet* set = findSetByTag(builtIn(), sample.set);
    ASSERT_NE(set, nullptr);
    const auto* found = set->find(element->label());
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(metaAttribute(**found)->requiredStatus(), sample.status);
}

using namespace AttributeRequiredStatus;

INSTANTIATE_TEST_SUITE_P(
    , KnowsProperty,
    ::testing::Values(
        Sample{"Preface", 0x3B02, "FileLastModified", "Timestamp", required},
        Sample{"Preface", 0x3B03, "ContentStorageObject", "StrongReference", required},
        Sample{"Preface", 0x3B05, "FormatVersion", "VersionType", required},
        Sample{"Preface", 0x3B06, "IdentificationList", "Array(StrongReference)", required},
        Sample{"Preface", 0x3B08, "PrimaryPackage", "WeakReference", optional},
        Sample{"Preface", 0x3B0A, "EssenceContainers", "Batch(UniversalLabel)", required},
        Sample{"Identification", 0x3C03, "ApplicationVersion", "ProductVersion", optional},
        Sample{"Identification", 0x3C05, "ApplicationProductID", "UUID", required},
        Sample{"MaterialPackage", 0x4401, "PackageID", "UMID32", required},
        Sample{"TimelineTrack", 0x4B01, "EditRate", "Rational", required},
        Sample{"SourceClip", 0x0201, "ComponentDataDefinition", "UniversalLabel", required},
        Sample{"SourceClip", 0x0202, "ComponentLength", "Length", bestEffort},
        Sample{"CDCIDescriptor", 0x3203, "StoredWidth", "UInt32", bestEffort},
        Sample{"CDCIDescriptor", 0x3201, "PictureCompression", "UniversalLabel", decoderRequired},
        Sample{"RGBADescriptor", 0x3401, "PixelLayout", "RGBALayout", bestEffort},
        Sample{"RGBADescriptor", 0x3405, "ScanningDirection", "Orientation", optional},
        Sample{"CDCIDescriptor", 0x3215, "SignalStandard", "SignalStandard", optional}),
    [](const auto& test) { return std::string(test.param.set) + "_" + test.param.name; });

} // namespace Corvid::Testing
