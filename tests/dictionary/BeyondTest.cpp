#include "host/dictionary/Registers.h"

#include "tests/dictionary/RegisterFacts.h"

#include <set>

namespace Corvid::Testing {

namespace {

using namespace MetaMetadata;

const Dictionary& builtIn() {
    static const auto dictionary = Dictionary::builtIn();
    return *dictionary;
}

const Dictionary& registered() {
    static const auto dictionary = Dictionary::registered();
    return *dictionary;
}

bool isBeyond(const MetaElement& element) {
    return registered().findElement(element.label()) == nullptr;
}

/// What is known of a class without its ancestors: own properties by label.
std::set<std::string> ownLabels(const MetaMetadataSet& set) {
    std::set<std::string> labels;
    for (const MetaAttribute* property : propertiesOf(set)) {
        labels.insert(dotted(property->metaElement().label()));
    }
    if (set.parent() != nullptr) {
        for (const MetaAttribute* property : propertiesOf(*set.parent())) {
            labels.erase(dotted(property->metaElement().label()));
        }
    }
    return labels;
}

/// The key without what takes no part in matching.
std::string matched(std::string label) { return label.erase(21, 3); }

/// Classes that stay out of the dictionary; docs/dictionary.md says why.
const std::set<std::string> leftOut = {"AvidMetadataRoot",
                                       "AvidObjectDirectory",
                                       "AvidTrackManTrackedParamClass",
                                       "AvidTrackManTrackerDataClass",
                                       "AvidMCMobReference",
                                       "AvidRLEDescriptor",
                                       "AvidMPGIDescriptor",
                                       "AvidSD2Descriptor",
                                       "AvidAttrEffect",
                                       "AvidCCParamObject",
                                       "AvidSourceFileDescriptor",
                                       "MXFLiveStreamingSet",
                                       "CFALayout",
                                       "UnitCalibrationData"};

class BeyondTables : public WithRegisters {
protected:
    void SetUp() override {
        WithRegisters::SetUp();
        if (!IsSkipped() && !std::filesystem::exists(registersDir() / "beyond_groups.csv")) {
            GTEST_SKIP() << "no tables of what is not registered";
        }
    }
};

} // namespace

TEST(Beyond, addsToTheRegistersAndChangesNothingOfThem) {
    for (auto i = registered().metaElementBegin(); i != registered().metaElementEnd(); ++i) {
        const MetaElement* const same = builtIn().findElement((*i)->label());
        ASSERT_NE(same, nullptr) << nameOf(**i);
        EXPECT_EQ(nameOf(*same), nameOf(**i));
        EXPECT_EQ(schemaIndexOf(*same), schemaIndexOf(**i)) << nameOf(**i);
        EXPECT_EQ(same->dataType(), (*i)->dataType()) << nameOf(**i);
        EXPECT_EQ(same->staticLocalTag(), (*i)->staticLocalTag()) << nameOf(**i);
    }
    for (auto i = registered().metaMetadataSetBegin(); i != registered().metaMetadataSetEnd();
         ++i) {
        const MetaMetadataSet* const same = builtIn().findSet((*i)->key());
        ASSERT_NE(same, nullptr) << nameOf(**i);
        EXPECT_EQ(nameOf(*same), nameOf(**i));
        const auto before = ownLabels(**i);
        const auto after = ownLabels(*same);
        EXPECT_TRUE(std::includes(after.begin(), after.end(), before.begin(), before.end()))
            << nameOf(**i);
    }
    EXPECT_GT(builtIn().metaElementEnd() - builtIn().metaElementBegin(),
              registered().metaElementEnd() - registered().metaElementBegin() + 150);
}

TEST(Beyond, classNamesAreUniqueAmongAllDictionariesAndMarkNoReference) {
    std::set<std::string> names;
    for (auto i = builtIn().metaMetadataSetBegin(); i != builtIn().metaMetadataSetEnd(); ++i) {
        const std::string name = textOf(**i, "XMLTagName");
        EXPECT_TRUE(names.insert(name).second) << name;
        EXPECT_EQ(name.find("_REF"), std::string::npos) << name;
    }
}

TEST(Beyond, everyOwnerHasNamespacesOfItsOwn) {
    const std::set<std::string> shared = {"urn:SMPTE:RP210"}; // of elements registered already
    std::set<std::string> known;
    for (auto i = registered().metaElementBegin(); i != registered().metaElementEnd(); ++i) {
        known.insert(textOf(**i, "XMLNamespaceURI"));
    }
    for (auto i = registered().metaMetadataSetBegin(); i != registered().metaMetadataSetEnd();
         ++i) {
        known.insert(textOf(**i, "XMLNamespaceURI"));
    }
    const auto check = [&](const MetaDefinition& definition) {
        const std::string uri = textOf(definition, "XMLNamespaceURI");
        EXPECT_TRUE(known.count(uri) == 0 || shared.count(uri) != 0) << nameOf(definition);
    };
    for (auto i = builtIn().metaElementBegin(); i != builtIn().metaElementEnd(); ++i) {
        if (isBeyond(**i)) {
            check(**i);
        }
    }
    for (auto i = builtIn().metaMetadataSetBegin(); i != builtIn().metaMetadataSetEnd(); ++i) {
        if (registered().findSet((*i)->key()) == nullptr) {
            check(**i);
        }
    }
}

/// Registered numbers leave no room between those of a class and of its descendants.
TEST(Beyond, propertiesFollowAllRegisteredOnesAncestorsFirst) {
    unsigned long last = 0;
    for (auto i = registered().metaElementBegin(); i != registered().metaElementEnd(); ++i) {
        last = std::max(last, schemaIndexOf(**i));
    }
    for (auto i = builtIn().metaMetadataSetBegin(); i != builtIn().metaMetadataSetEnd(); ++i) {
        const std::size_t inherited =
            (*i)->parent() == nullptr ? 0 : (*i)->parent()->attributes().size();
        unsigned long above = last;
        const auto properties = propertiesOf(**i);
        for (std::size_t p = 0; p != properties.size(); ++p) {
            const MetaElement& element = properties[p]->metaElement();
            if (isBeyond(element) && p < inherited) {
                above = std::max(above, schemaIndexOf(element));
            } else if (isBeyond(element)) {
                EXPECT_GT(schemaIndexOf(element), above) << nameOf(**i) << " " << nameOf(element);
            }
        }
    }
}

TEST(Beyond, extensionsOfARegisteredClassReachItsDescendants) {
    const auto resolution = label("a0.24.00.60.94.eb.75.cb.ce.2a.ca.4d.51.ab.11.d3");
    for (const char* name : {"PictureDescriptor", "CDCIDescriptor", "MPEGVideoDescriptor"}) {
        const auto* const set = findSetByTag(builtIn(), name);
        ASSERT_NE(set, nullptr) << name;
        ASSERT_NE(set->find(resolution), nullptr) << name;
        EXPECT_EQ(findSetByTag(registered(), name)->find(resolution), nullptr) << name;
    }
    EXPECT_EQ(findSetByTag(builtIn(), "SoundDescriptor")->find(resolution), nullptr);
    EXPECT_EQ(nameOf(*builtIn().findElement(resolution)), "avidEl:ResolutionID");
}

TEST(Beyond, pagesCountWhatTheTextsDefine) {
    const std::string page = contentOf(sourceDir() / "docs" / "dictionary.md");
    std::size_t allSets = 0;
    std::size_t allProperties = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(sourceDir() / "host" / "dictionary" / "beyond")) {
        if (entry.path().extension() != ".dict") {
            continue;
        }
        std::istringstream text(contentOf(entry.path()));
        std::size_t sets = 0;
        std::size_t properties = 0;
        for (std::string line; std::getline(text, line);) {
            sets += line.compare(0, 4, "set ") == 0 ? 1 : 0;
            properties += line.compare(0, 9, "property ") == 0 ? 1 : 0;
        }
        const std::string name = entry.path().filename().string();
        const std::size_t row = page.find("\n| `" + name + "` |");
        ASSERT_NE(row, std::string::npos) << name;
        const std::string end =
            " | " + std::to_string(sets) + " | " + std::to_string(properties) + " |\n";
        const std::string line = page.substr(row, page.find('\n', row + 1) + 1 - row);
        EXPECT_EQ(line.substr(line.size() - std::min(line.size(), end.size())), end) << name;
        allSets += sets;
        allProperties += properties;
    }
    const std::string readme = contentOf(sourceDir() / "README.md");
    EXPECT_NE(readme.find(std::to_string(allSets) + " sets and " + std::to_string(allProperties) +
                          "\n  properties in use"),
              std::string::npos);
    for (const std::string& name : leftOut) {
        EXPECT_NE(page.find(name), std::string::npos) << name;
    }
    const auto labels = Registers::labels();
    const auto count = std::count_if(labels.begin(), labels.end(),
                                     [](const auto& each) { return !each.isRegistered(); });
    EXPECT_NE(page.find("names " + std::to_string(count) + " labels"), std::string::npos);
}

TEST_F(BeyondTables, everyGroupIsASetOrLeftOut) {
    std::size_t left = 0;
    for (const Row& row : table("beyond_groups.csv")) {
        const std::string& symbol = row.at("symbol");
        const auto* const set = builtIn().findSet(key(row.at("key")));
        if (leftOut.count(symbol) != 0) {
            ++left;
            EXPECT_EQ(set, nullptr) << symbol;
            continue;
        }
        ASSERT_NE(set, nullptr) << symbol;
        EXPECT_EQ(dotted(set->key()), row.at("key"));
        EXPECT_EQ(textOf(*set, "XMLTagName"), symbol);
        EXPECT_EQ(set->isConcrete(), row.at("concrete") == "1") << symbol;
        ASSERT_NE(set->parent(), nullptr) << symbol;
        EXPECT_EQ(matched(dotted(set->parent()->key())), matched(row.at("parent_key"))) << symbol;
    }
    EXPECT_EQ(left, leftOut.size());
}

TEST_F(BeyondTables, everyElementIsAPropertyOfItsGroup) {
    for (const Row& row : table("beyond_elements.csv")) {
        const std::string& symbol = row.at("unique_symbol");
        if (leftOut.count(row.at("group_symbol")) != 0) {
            continue;
        }
        const auto* const set = builtIn().findSet(key(row.at("group_key")));
        ASSERT_NE(set, nullptr) << symbol;
        EXPECT_EQ(ownLabels(*set).count(row.at("ul")), 1U) << symbol;
        const MetaElement* const element = builtIn().findElement(label(row.at("ul")));
        ASSERT_NE(element, nullptr) << symbol;
        EXPECT_EQ(textOf(*element, "XMLTagName"), symbol);
        std::string type = Types::Identifiers::typeName(element->dataType());
        if (const auto* items = dynamic_cast<const MetaCollectionElement*>(element)) {
            type += "(" + std::string(Types::Identifiers::typeName(items->dataSubType())) + ")";
        }
        EXPECT_EQ(type, row.at("value_type") == "DataValue" ? "DataStream" : row.at("value_type"))
            << symbol;
        const auto* const attribute = set->find(element->label());
        EXPECT_EQ(metaAttribute(**attribute)->requiredStatus(),
                  row.at("optional") == "1" ? AttributeRequiredStatus::optional
                                            : AttributeRequiredStatus::required)
            << symbol;
    }
}

TEST_F(BeyondTables, everyLabelHasAName) {
    for (const Row& row : table("beyond_labels.csv")) {
        const auto found = Registers::labels().find(label(row.at("ul")));
        ASSERT_TRUE(found) << row.at("symbol");
        EXPECT_FALSE(found->isRegistered()) << row.at("symbol");
        EXPECT_EQ(found->name(), row.at("name").empty() ? row.at("symbol") : row.at("name"));
    }
}

} // namespace Corvid::Testing
