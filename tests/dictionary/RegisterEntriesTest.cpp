#include "host/dictionary/Registers.h"

#include "tests/dictionary/RegisterFacts.h"

#include <set>

namespace Corvid::Testing {

namespace {

using namespace MetaMetadata;

class RegisterEntries : public WithRegisters {};

/// Finds the entry of each row of a table and compares what all have.
template <class Entry, class Compare>
void expectAll(const Register<Entry>& entries, const char* tableName, const Compare& compare) {
    const auto rows = table(tableName);
    EXPECT_EQ(rows.size(), static_cast<std::size_t>(std::count_if(
                               entries.begin(), entries.end(),
                               [](const Entry& entry) { return entry.isRegistered(); })));
    for (const Row& row : rows) {
        const auto entry = entries.find(label(row.at("ul")));
        ASSERT_TRUE(entry) << row.at("ul");
        EXPECT_EQ(dotted(entry->label()), row.at("ul"));
        EXPECT_TRUE(entry->isRegistered()) << row.at("symbol");
        EXPECT_EQ(entry->symbol(), row.at("symbol"));
        EXPECT_EQ(entry->document(), row.at("defining_document")) << row.at("symbol");
        EXPECT_EQ(entry->isDeprecated(), row.at("deprecated") == "1") << row.at("symbol");
        compare(*entry, row);
    }
}

template <class Entry> std::string labelOf(const std::optional<Entry>& entry) {
    return entry ? dotted(entry->label()) : "";
}

} // namespace

TEST_F(RegisterEntries, holdEveryLabel) {
    expectAll(Registers::labels(), "labels.csv", [](const RegisteredLabel& entry, const Row& row) {
        EXPECT_EQ(entry.name(), row.at("name"));
    });
}

TEST_F(RegisterEntries, holdEveryProperty) {
    expectAll(Registers::properties(), "elements.csv",
              [](const RegisteredProperty& entry, const Row& row) {
                  EXPECT_EQ(entry.name(), row.at("name"));
                  EXPECT_EQ(labelOf(entry.type()), row.at("type_ul")) << row.at("symbol");
              });
}

TEST_F(RegisterEntries, holdEveryTypeWithItsMembers) {
    std::map<std::string, std::vector<Row>> members;
    for (const Row& row : table("type_members.csv")) {
        members[row.at("type_ul")].push_back(row);
    }
    EXPECT_GT(members.size(), 70U);
    std::map<std::string, std::string> valueTypes;
    for (const Row& row : table("type_mapping.csv")) {
        valueTypes[row.at("type_ul")] = row.at("value_type");
    }
    expectAll(Registers::types(), "types.csv", [&](const RegisteredType& entry, const Row& row) {
        const std::string& symbol = row.at("symbol");
        EXPECT_EQ(labelOf(entry.base()), row.at("base_ul")) << symbol;
        EXPECT_EQ(std::to_string(entry.size()), row.at("size").empty() ? "0" : row.at("size"));
        EXPECT_EQ(entry.targetPath(), row.at("target_path")) << symbol;
        if (row.at("base_ul").empty()) {
            EXPECT_EQ(labelOf(entry.target()), row.at("target_ul")) << symbol;
        } else if (!row.at("target_ul").empty()) {
            EXPECT_EQ(labelOf(entry.base()->target()), row.at("target_ul")) << symbol;
        }
        const std::string& valueType = valueTypes[row.at("ul")];
        const bool isBytes =
            valueType == "none" || valueType == "DataValue" || valueType == "Unknown";
        EXPECT_EQ(entry.valueType(), isBytes ? "DataStream" : valueType) << symbol;
        const auto& expected = members[row.at("ul")];
        ASSERT_EQ(entry.members().size(), expected.size()) << symbol;
        for (std::size_t i = 0; i != expected.size(); ++i) {
            const Row& each = expected[i];
            EXPECT_EQ(entry.members()[i].symbol(), each.at("member_symbol"));
            EXPECT_EQ(entry.members()[i].value(), each.at("value") + each.at("member_type_symbol"));
            EXPECT_EQ(entry.members()[i].isDeprecated(), each.at("deprecated") == "1");
        }
    });
}

TEST_F(RegisterEntries, holdEveryGroup) {
    expectAll(Registers::groups(), "groups.csv", [](const RegisteredGroup& entry, const Row& row) {
        EXPECT_EQ(entry.name(), row.at("name"));
        EXPECT_EQ(labelOf(entry.parent()), row.at("parent_ul")) << row.at("symbol");
        EXPECT_EQ(entry.isConcrete(), row.at("concrete") == "1") << row.at("symbol");
        std::string codings = row.at("klv_syntax");
        std::replace(codings.begin(), codings.end(), ' ', ',');
        EXPECT_EQ(entry.codings(), codings) << row.at("symbol");
    });
}

/// A set of header metadata is a local set with tags and lengths of two bytes. Whatever can be
/// coded so and is left out all the same is named here.
TEST_F(RegisterEntries, leaveOutOfHeaderMetadataWhatStandsElsewhere) {
    const std::map<std::string, std::string> reasons = {
        {"IndexTableSegment", "index tables"},   {"DMCVTGenericSet1", "accompanies essence"},
        {"DMCVTApp1Set", "accompanies essence"}, {"DMCVTApp2Set", "accompanies essence"},
        {"DMCVTApp3Set", "accompanies essence"}, {"DMCVTApp4Set", "accompanies essence"},
        {"StreamingData", "accompanies essence"}};
    std::size_t leftOut = 0;
    for (const Row& row : table("groups.csv")) {
        const auto entry = Registers::groups().find(label(row.at("ul")));
        const bool isLocalSet = row.at("klv_syntax").find("53") != std::string::npos;
        const auto reason = reasons.find(row.at("symbol"));
        EXPECT_EQ(entry->isHeaderMetadata(), isLocalSet && reason == reasons.end())
            << row.at("symbol");
        EXPECT_EQ(entry->isHeaderMetadata(), row.at("practice") != "not-header");
        EXPECT_EQ(entry->isHeaderMetadata(), entry->reason().empty());
        EXPECT_EQ(row.at("klv_syntax").empty(),
                  entry->reason().find("no coding as KLV") != std::string_view::npos);
        if (reason != reasons.end()) {
            EXPECT_NE(entry->reason().find(reason->second), std::string_view::npos);
        }
        leftOut += entry->isHeaderMetadata() ? 0 : 1;
    }
    EXPECT_EQ(leftOut, 95U);
}

TEST_F(RegisterEntries, holdThePropertiesOfGroupsThatAreLeftOut) {
    std::map<std::string, std::size_t> uses;
    for (const Row& row : table("group_elements.csv")) {
        const auto group = Registers::groups().find(label(row.at("group_ul")));
        if (group->isHeaderMetadata()) {
            continue;
        }
        const std::size_t place = uses[row.at("group_symbol")]++;
        ASSERT_LT(place, group->uses().size());
        const RegisteredUse use = group->uses()[place];
        EXPECT_EQ(dotted(use.property().label()), row.at("element_ul"));
        EXPECT_EQ(use.localTag(), std::strtoul(row.at("local_tag").c_str(), nullptr, 16));
        EXPECT_EQ(use.isOptional(), row.at("optional") == "1");
    }
    for (const RegisteredGroup& group : Registers::groups()) {
        EXPECT_EQ(group.uses().size(), uses[std::string(group.symbol())]) << group.symbol();
    }
}

} // namespace Corvid::Testing
