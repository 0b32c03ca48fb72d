#include "host/dictionary/Registers.h"

#include "tests/dictionary/DictionarySupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace Corvid::Testing {

namespace {

using namespace MetaMetadata;
using ::testing::HasSubstr;

/// A row of a register's text, read in the plainest way: its words, the document and the owner
/// above it, and whether it is marked as deprecated.
struct TextRow {
    std::vector<std::string> words;
    std::string document;
    std::string owner;
    bool deprecated = false;

    std::string from(std::size_t first) const {
        std::string text;
        for (std::size_t i = first; i < words.size(); ++i) {
            text += (i == first ? "" : " ") + words[i];
        }
        return text;
    }
    std::string orNothing(std::size_t index) const {
        return words.at(index) == "-" ? "" : words[index];
    }
};

void addTextRows(const std::filesystem::path& path, const std::set<std::string>& kinds,
                 std::vector<TextRow>& rows) {
    std::ifstream file(path);
    std::string document;
    std::string owner;
    TextRow* last = nullptr;
    for (std::string line; std::getline(file, line);) {
        std::istringstream cells(line);
        TextRow row;
        for (std::string word; cells >> word;) {
            row.words.push_back(word);
        }
        if (row.words.empty() || row.words[0][0] == '#') {
            continue;
        }
        if (row.words[0] == "document") {
            document = row.words[1] == "-" ? "" : row.from(1);
        } else if (row.words[0] == "unregistered") {
            owner = row.from(1);
        } else if (row.words[0] == "deprecated" && last != nullptr) {
            last->deprecated = true;
        } else {
            last = nullptr;
            if (kinds.count(row.words[0]) != 0) {
                row.document = document;
                row.owner = owner;
                rows.push_back(row);
                last = &rows.back();
            }
        }
    }
}

std::vector<TextRow> textRows(const std::set<std::string>& kinds) {
    std::vector<TextRow> rows;
    for (const char* const folder : {"registers", "beyond"}) {
        for (const auto& entry :
             std::filesystem::directory_iterator(sourceDir() / "host" / "dictionary" / folder)) {
            if (entry.path().extension() == ".reg") {
                addTextRows(entry.path(), kinds, rows);
            }
        }
    }
    return rows;
}

/// Finds the entry of each row of a text, whatever the version byte, and compares what all have.
template <class Entry, class Compare>
void expectAll(const Register<Entry>& entries, const char* kind, const Compare& compare) {
    const auto rows = textRows({kind});
    EXPECT_EQ(rows.size(), entries.size());
    for (const TextRow& row : rows) {
        auto wanted = label(row.words[1]);
        wanted[7] ^= 0x5A;
        const auto entry = entries.find(wanted);
        ASSERT_TRUE(entry) << row.words[1];
        EXPECT_EQ(dotted(entry->label()), row.words[1]);
        EXPECT_EQ(entry->symbol(), row.words[2]);
        EXPECT_EQ(entry->document(), row.document) << row.words[2];
        EXPECT_EQ(entry->owner(), row.owner) << row.words[2];
        EXPECT_EQ(entry->isRegistered(), row.owner.empty()) << row.words[2];
        EXPECT_EQ(entry->isDeprecated(), row.deprecated) << row.words[2];
        compare(*entry, row);
    }
}

template <class Entry> std::string symbolOf(const std::optional<Entry>& entry) {
    return entry ? std::string(entry->symbol()) : "";
}

/// One label in two editions, another one before and one after them.
std::vector<LabelRow> rowsOfVersions() {
    std::vector<LabelRow> rows(4);
    const unsigned char last[] = {1, 2, 2, 3};
    const unsigned char version[] = {9, 3, 5, 1};
    for (std::size_t i = 0; i != rows.size(); ++i) {
        rows[i].label[15] = last[i];
        rows[i].label[7] = version[i];
    }
    return rows;
}

} // namespace

TEST(BuiltInRegisters, holdWhatTheirTextsSay) {
    expectAll(Registers::labels(), "label", [](const RegisteredLabel& entry, const TextRow& row) {
        EXPECT_EQ(entry.name(), row.from(3));
    });
    expectAll(Registers::properties(), "property",
              [](const RegisteredProperty& entry, const TextRow& row) {
                  EXPECT_EQ(symbolOf(entry.type()), row.orNothing(3)) << row.words[2];
                  EXPECT_EQ(entry.name(), row.from(4));
              });
    expectAll(Registers::types(), "type", [](const RegisteredType& entry, const TextRow& row) {
        EXPECT_EQ(entry.kind(), row.words[3]);
        EXPECT_EQ(symbolOf(entry.base()) + symbolOf(entry.target()), row.orNothing(4));
        EXPECT_EQ(std::to_string(entry.size()), row.words[5] == "-" ? "0" : row.words[5]);
        EXPECT_EQ(entry.valueType(), row.orNothing(6));
        EXPECT_EQ(entry.targetPath(), row.from(7));
    });
    expectAll(Registers::groups(), "group", [](const RegisteredGroup& entry, const TextRow& row) {
        EXPECT_EQ(symbolOf(entry.parent()), row.orNothing(3)) << row.words[2];
        EXPECT_EQ(entry.isConcrete(), row.words[4] == "concrete");
        EXPECT_EQ(entry.codings(), row.orNothing(5));
        EXPECT_EQ(entry.isHeaderMetadata(), row.words[6] == "header");
        EXPECT_EQ(entry.name(), row.from(7));
    });
}

TEST(BuiltInRegisters, holdMembersAndUsesOfTheirEntries) {
    std::optional<RegisteredType> type;
    std::size_t member = 0;
    for (const TextRow& row : textRows({"type", "member"})) {
        if (row.words[0] == "type") {
            type = Registers::types().find(label(row.words[1]));
            member = 0;
            continue;
        }
        ASSERT_LT(member, type->members().size());
        const RegisteredMember each = type->members()[member++];
        EXPECT_EQ(each.symbol(), row.words[1]);
        EXPECT_EQ(each.value(), row.from(2));
        EXPECT_EQ(each.isDeprecated(), row.deprecated);
    }
    std::optional<RegisteredGroup> group;
    std::size_t uses = 0;
    for (const TextRow& row : textRows({"group", "use"})) {
        if (row.words[0] == "group") {
            EXPECT_TRUE(!group || uses == group->uses().size());
            group = Registers::groups().find(label(row.words[1]));
            uses = 0;
            continue;
        }
        ASSERT_LT(uses, group->uses().size());
        const RegisteredUse use = group->uses()[uses++];
        EXPECT_EQ(dotted(use.property().label()), row.words[1]);
        EXPECT_EQ(use.localTag() == 0 ? "-" : dotted(Types::LocalTag(use.localTag())),
                  row.words[2]);
        EXPECT_EQ(use.isOptional(), row.words[3] == "optional");
    }
}

TEST(BuiltInRegisters, holdReasonsBranchesAndAliases) {
    std::map<std::string, std::string> reasons;
    for (const TextRow& row : textRows({"reason"})) {
        reasons[row.words[1]] = row.from(2);
    }
    for (const TextRow& row : textRows({"group"})) {
        EXPECT_EQ(Registers::groups().find(label(row.words[1]))->reason(), reasons[row.words[6]]);
    }
    const auto branches = textRows({"branch"});
    EXPECT_EQ(Registers::branches().size(), branches.size());
    for (const TextRow& row : branches) {
        const std::string whole = "06.0e.2b.34.04.01.01.7f." + row.words[1];
        const auto inside =
            label(whole + std::string(".7f.7f.7f.7f.7f.7f.7f.7f", 47 - whole.size()));
        auto outside = inside;
        outside[static_cast<int>(whole.size() / 3)] ^= 1;
        std::string last;
        for (const LabelBranch& branch : Registers::branches()) {
            last = branch.holds(inside) ? std::string(branch.name()) : last;
            EXPECT_FALSE(branch.name() == row.from(2) && branch.holds(outside)) << row.words[1];
        }
        EXPECT_EQ(last, row.from(2)) << "the longest comes last";
    }
    const auto aliases = textRows({"alias"});
    ASSERT_EQ(Registers::aliases().size(), aliases.size());
    std::multiset<std::string> expected, held;
    for (std::size_t i = 0; i != aliases.size(); ++i) {
        const RegisteredAlias alias = Registers::aliases()[i];
        held.insert(std::string(alias.definition()) + "|" + std::string(alias.name()) + "|" +
                    std::string(alias.document()));
        expected.insert(aliases[i].words[1] + "|" + aliases[i].from(2) + "|" + aliases[i].document);
    }
    EXPECT_EQ(held, expected);
}

TEST(BuiltInRegisters, findLabelsOfEssence) {
    const auto name = [](const char* text) {
        const auto found = Registers::labels().find(label(text));
        return found ? std::string(found->name()) : "";
    };
    EXPECT_EQ(name("06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.09.00"),
              "MXF OP1a SingleItem SinglePackage MultiTrack Stream Internal");
    EXPECT_EQ(name("06.0e.2b.34.04.01.01.02.0d.01.03.01.02.04.60.01"),
              "MXF-GC Frame-wrapped MPEG-ES VideoStream-0 SID");
    EXPECT_EQ(name("06.0e.2b.34.04.01.01.7f.04.01.01.01.01.02.00.00"),
              "ITU-R BT.709 Transfer Characteristic");
    EXPECT_EQ(name("06.0e.2b.34.04.01.01.0b.03.02.01.01.00.00.00.00"), "Left Audio Channel");
    EXPECT_EQ(name("06.0e.2b.34.04.01.01.01.0d.01.02.01.04.01.09.00"), "");
    EXPECT_EQ(name("00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00"), "");
    EXPECT_EQ(name("ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff.ff"), "");
}

TEST(BuiltInRegisters, preferTheVersionAskedFor) {
    const auto rows = rowsOfVersions();
    const Register<RegisteredLabel> entries({rows.data(), rows.size()});
    const auto versionFound = [&](unsigned char last, unsigned char version) {
        Types::UniversalLabel wanted;
        wanted[15] = last;
        wanted[7] = version;
        const auto found = entries.find(wanted);
        return found ? found->label()[7] : 0;
    };
    EXPECT_EQ(versionFound(2, 3), 3);
    EXPECT_EQ(versionFound(2, 5), 5);
    EXPECT_EQ(versionFound(2, 4), 3) << "the lowest, where none is the same";
    EXPECT_EQ(versionFound(1, 1), 9);
    EXPECT_EQ(versionFound(3, 200), 1);
    EXPECT_EQ(versionFound(4, 1), 0);
    EXPECT_EQ(versionFound(0, 1), 0);
    EXPECT_FALSE(Register<RegisteredLabel>({rows.data(), 0}).find(Types::UniversalLabel()));
}

TEST(BuiltInRegisters, findSymbols) {
    EXPECT_EQ(Registers::types().find("AUIDSet")->base()->symbol(), "AUID");
    EXPECT_EQ(Registers::types().find("TrackStrongReference")->target()->symbol(), "Track");
    EXPECT_FALSE(Registers::types().find("auidset")) << "letter by letter";
    EXPECT_FALSE(Registers::types().find(""));
    EXPECT_EQ(dotted(Registers::groups().find("Preface")->label()),
              "06.0e.2b.34.02.7f.01.01.0d.01.01.01.01.01.2f.00");
}

TEST(BuiltInRegisters, nameWhatIsInUseButNotRegistered) {
    const auto scope =
        Registers::labels().find(label("06.0e.2b.34.04.01.01.01.0e.04.03.01.02.06.01.02"));
    ASSERT_TRUE(scope);
    EXPECT_EQ(scope->symbol(), "ContainerAvidHD_8_7_1_1080p");
    EXPECT_EQ(scope->owner(), "Avid");
    const auto name = [](const char* text) {
        const auto group = Registers::findGroup(key(text));
        return group ? std::string(group->name()) : "";
    };
    EXPECT_EQ(name("80.53.08.00.36.21.08.04.b3.b3.98.a5.1c.90.11.d4"), "Avid metadata root");
    EXPECT_EQ(name("96.13.b3.8a.87.34.87.46.f1.02.96.f0.56.e0.4d.2a"), "Avid object directory");
    EXPECT_EQ(name("80.53.08.00.36.22.08.04.b3.b3.98.a5.1c.90.11.d4"), "")
        << "a private key has no coding";
    EXPECT_EQ(name("06.0e.2b.34.02.53.01.01.0e.17.01.01.01.01.00.00"), "CFA layout");
}

TEST(BuiltInRegisters, findGroupsByKeysOfEveryCoding) {
    for (const char* coding : {"05", "13", "53", "06", "7f"}) {
        const auto group = Registers::findGroup(
            key("06.0e.2b.34.02." + std::string(coding) + ".01.02.0d.01.02.01.01.05.01.00"));
        ASSERT_TRUE(group) << coding;
        EXPECT_EQ(group->symbol(), "PrimerPack");
        EXPECT_THAT(std::string(group->reason()), HasSubstr("frame partitions"));
    }
    EXPECT_FALSE(Registers::findGroup(key("06.0e.2b.34.01.05.01.02.0d.01.02.01.01.05.01.00")));
}

TEST(BuiltInRegisters, everyLabelHasAPlace) {
    for (const RegisteredLabel& each : Registers::labels()) {
        if (!each.isRegistered()) {
            continue; // Many of those are no labels by their first bytes.
        }
        const auto branches = Registers::branches();
        EXPECT_TRUE(std::any_of(branches.begin(), branches.end(), [&each](const LabelBranch& part) {
            return part.holds(each.label());
        })) << each.symbol();
    }
}

TEST(BuiltInRegisters, agreeWithTheDictionary) {
    const auto dictionary = Dictionary::registered();
    std::set<std::string> names;
    std::size_t sets = 0;
    for (auto i = dictionary->metaMetadataSetBegin(); i != dictionary->metaMetadataSetEnd(); ++i) {
        ++sets;
        const auto group = Registers::findGroup((*i)->key());
        ASSERT_TRUE(group) << nameOf(**i);
        EXPECT_TRUE(group->isHeaderMetadata());
        EXPECT_TRUE(group->uses().empty()) << "these are in the dictionary";
        EXPECT_EQ(group->symbol(), textOf(**i, "XMLTagName"));
        EXPECT_EQ(group->isConcrete(), (*i)->isConcrete());
        names.insert(nameOf(**i));
    }
    const auto groups = Registers::groups();
    EXPECT_EQ(static_cast<std::size_t>(
                  std::count_if(groups.begin(), groups.end(),
                                [](const auto& group) { return group.isHeaderMetadata(); })),
              sets);
    std::set<std::string> renamed;
    for (auto i = dictionary->metaElementBegin(); i != dictionary->metaElementEnd(); ++i) {
        const auto property = Registers::properties().find((*i)->label());
        ASSERT_TRUE(property) << nameOf(**i);
        if (property->symbol() != textOf(**i, "XMLTagName")) {
            renamed.insert(textOf(**i, "XMLTagName"));
        }
        names.insert(nameOf(**i));
    }
    EXPECT_EQ(renamed, (std::set<std::string>{"InstanceUID", "GenerationUID"}));
    for (const RegisteredAlias& alias : Registers::aliases()) {
        EXPECT_EQ(names.count(std::string(alias.definition())), 1U)
            << "nothing is called " << alias.definition();
    }
}

TEST(BuiltInRegisters, pageTellsWhatHeaderMetadataDoesNotHold) {
    const auto dictionary = Dictionary::registered();
    const auto words = [](const std::string& page) {
        std::set<std::string> result;
        std::istringstream text(page);
        for (std::string word; text >> word;) {
            result.insert(word.back() == ',' ? word.substr(0, word.size() - 1) : word);
        }
        return result;
    };
    const std::string page = contentOf(sourceDir() / "docs" / "registers.md");
    const std::size_t lists = page.find("## Groups");
    const std::size_t middle = page.find("## Properties");
    ASSERT_LT(lists, middle);
    ASSERT_NE(middle, std::string::npos);
    const auto groupNames = words(page.substr(lists, middle - lists));
    const auto propertyNames = words(page.substr(middle));
    const auto numbers = [](std::size_t all, std::ptrdiff_t defined) {
        const auto some = static_cast<std::size_t>(defined);
        return std::to_string(all) + " | " + std::to_string(some) + " | " +
               std::to_string(all - some) + " |\n";
    };
    const auto groups = Registers::groups();
    const auto registered = static_cast<std::size_t>(
        std::count_if(groups.begin(), groups.end(),
                      [](const RegisteredGroup& group) { return group.isRegistered(); }));
    EXPECT_THAT(page, HasSubstr("| groups | " +
                                numbers(registered, dictionary->metaMetadataSetEnd() -
                                                        dictionary->metaMetadataSetBegin())));
    EXPECT_THAT(page, HasSubstr("| properties | " + numbers(Registers::properties().size(),
                                                            dictionary->metaElementEnd() -
                                                                dictionary->metaElementBegin())));
    for (const RegisteredGroup& group : groups) {
        if (!group.isRegistered()) {
            continue;
        }
        EXPECT_EQ(groupNames.count(std::string(group.symbol())) == 0, group.isHeaderMetadata())
            << group.symbol();
        EXPECT_THAT(page, HasSubstr(std::string(group.reason())));
    }
    for (const RegisteredProperty& property : Registers::properties()) {
        EXPECT_TRUE(propertyNames.count(std::string(property.symbol())) != 0 ||
                    dictionary->findElement(property.label()) != nullptr)
            << property.symbol();
    }
}

} // namespace Corvid::Testing
