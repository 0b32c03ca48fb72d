#include "host/dictionary/Dictionary.h"

#include "tests/dictionary/DictionarySupport.h"
#include "tests/dictionary/RegisterFacts.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

namespace Corvid::Testing {

namespace {

using namespace MetaMetadata;

/// The registers' groups of local sets that belong in header metadata.
std::vector<Row> headerGroups() {
    std::vector<Row> groups;
    for (const Row& row : table("groups.csv")) {
        if (row.at("klv_syntax").find("53") != std::string::npos &&
            row.at("practice") != "not-header") {
            groups.push_back(row);
        }
    }
    return groups;
}

class Registers : public WithRegisters {
protected:
    const Templates::SharedPtr<Dictionary> dictionary = Dictionary::registered();
};

} // namespace

TEST_F(Registers, everyGroupIsASet) {
    const auto groups = headerGroups();
    EXPECT_GT(groups.size(), 300U);
    EXPECT_EQ(static_cast<std::size_t>(dictionary->metaMetadataSetEnd() -
                                       dictionary->metaMetadataSetBegin()),
              groups.size());
    for (const Row& group : groups) {
        const auto* set = dictionary->findSet(key(group.at("mxf_key")));
        ASSERT_NE(set, nullptr) << group.at("symbol");
        EXPECT_EQ(dotted(set->key()), group.at("mxf_key"));
        EXPECT_EQ(textOf(*set, "XMLTagName"), group.at("symbol"));
        EXPECT_EQ(set->isConcrete(), group.at("concrete") == "1") << group.at("symbol");
        EXPECT_EQ(set->parent() == nullptr ? "" : textOf(*set->parent(), "XMLTagName"),
                  group.at("parent_symbol"));
    }
}

TEST_F(Registers, everyElementOfAGroupIsAProperty) {
    std::map<std::string, const MetaMetadataSet*> sets;
    for (const Row& group : headerGroups()) {
        sets[group.at("ul")] = dictionary->findSet(key(group.at("mxf_key")));
    }
    std::set<std::string> labels;
    std::map<const MetaMetadataSet*, std::size_t> uses;
    for (const Row& row : table("group_elements.csv")) {
        const auto set = sets.find(row.at("group_ul"));
        if (set == sets.end()) {
            continue;
        }
        const std::string place = row.at("group_symbol") + " " + row.at("element_symbol");
        labels.insert(row.at("element_ul"));
        ++uses[set->second];
        const auto* found = set->second->find(label(row.at("element_ul")));
        ASSERT_NE(found, nullptr) << place;
        const MetaElement& element = metaAttribute(**found)->metaElement();
        EXPECT_EQ(dotted(element.label()), row.at("element_ul")) << place;
        const std::string& symbol = row.at("element_symbol");
        EXPECT_EQ(textOf(element, "XMLTagName"), symbol == "InstanceID"           ? "InstanceUID"
                                                 : symbol == "LinkedGenerationID" ? "GenerationUID"
                                                                                  : symbol);
        const unsigned long tag = std::strtoul(row.at("local_tag").c_str(), nullptr, 16);
        if (tag != 0 && tag < 0x8000) {
            EXPECT_EQ(element.staticLocalTag(), tag) << place;
        }
    }
    EXPECT_EQ(
        static_cast<std::size_t>(dictionary->metaElementEnd() - dictionary->metaElementBegin()),
        labels.size());
    for (const auto& [ul, set] : sets) {
        const std::size_t inherited =
            set->parent() == nullptr ? 0 : set->parent()->attributes().size();
        const std::size_t forgotten = textOf(*set, "XMLTagName") == "MetaDictionary" ? 1 : 0;
        EXPECT_EQ(set->attributes().size() - inherited, uses[set] + forgotten) << nameOf(*set);
    }
}

TEST_F(Registers, orderOfASetsOwnPropertiesIsTheRegisters) {
    std::map<std::string, std::size_t> rank;
    for (const Row& row : table("elements.csv")) {
        rank.emplace(row.at("ul"), rank.size());
    }
    for (auto i = dictionary->metaMetadataSetBegin(); i != dictionary->metaMetadataSetEnd(); ++i) {
        auto properties = propertiesOf(**i);
        if ((*i)->parent() != nullptr) {
            properties.erase(properties.begin(),
                             properties.begin() +
                                 static_cast<std::ptrdiff_t>((*i)->parent()->attributes().size()));
        }
        std::sort(properties.begin(), properties.end(), [](auto a, auto b) {
            return schemaIndexOf(a->metaElement()) < schemaIndexOf(b->metaElement());
        });
        for (std::size_t p = 1; p < properties.size(); ++p) {
            EXPECT_LT(rank.at(dotted(properties[p - 1]->metaElement().label())),
                      rank.at(dotted(properties[p]->metaElement().label())))
                << nameOf(**i);
        }
    }
}

/// The command that compares the texts below a folder with the registers, or makes them there.
std::string scriptCommand(const std::string& option, const std::filesystem::path& root) {
    return "'" + python() + "' '" + (sourceDir() / "tools" / "compare-dictionary.py").string() +
           "' " + option + " '" + registersDir().string() + "' '" + root.string() + "'";
}

/// What it prints of the texts below a folder.
std::string differencesOf(const std::filesystem::path& root) {
    const TemporaryDir folder;
    const auto printed = folder.path() / "differences";
    const int status =
        std::system((scriptCommand("", root) + " > '" + printed.string() + "'").c_str());
    EXPECT_EQ(status == 0, contentOf(printed).empty());
    return contentOf(printed);
}

class DictionaryScript : public WithRegisters {
protected:
    void SetUp() override {
        WithRegisters::SetUp();
        if (python().empty()) {
            GTEST_SKIP() << "no Python 3";
        }
    }
};

TEST_F(DictionaryScript, findsTheTextsEqualToTheRegisters) {
    // What is in use but not registered may have more than its first tables had. Any other row that is
    // meant to differ is expected here, with the reason.
    std::istringstream differences(differencesOf(sourceDir()));
    for (std::string line; std::getline(differences, line);) {
        EXPECT_EQ(line.find("beyond/"), 0U) << line;
        EXPECT_NE(line.find(": only here: "), std::string::npos) << line;
    }
}

TEST_F(DictionaryScript, reportsWhatIsNewInTheRegistersAndWhatIsOnlyInTheTexts) {
    const TemporaryDir made;
    ASSERT_EQ(std::system(scriptCommand("--write", made.path()).c_str()), 0);
    EXPECT_EQ(differencesOf(made.path()), "");
    const auto path = made.path() / "host" / "dictionary" / "beyond" / "apple.dict";
    std::string text = contentOf(path);
    const std::size_t row = text.rfind("property ");
    text.replace(row, 9, "# note\nproperty     ");
    std::ofstream(path) << text;
    EXPECT_EQ(differencesOf(made.path()), "") << "comments and blanks";
    const std::string other = "property  appleEl:Other " + text.substr(text.find("06.", row));
    std::ofstream(path) << text.substr(0, row) << other;
    const std::string differences = differencesOf(made.path());
    EXPECT_NE(differences.find("apple.dict: new: property appleEl:"), std::string::npos)
        << differences;
    EXPECT_NE(differences.find("apple.dict: only here: property appleEl:Other 06."),
              std::string::npos)
        << differences;
}

} // namespace Corvid::Testing
