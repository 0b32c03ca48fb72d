#pragma once

#include "host/dictionary/Definitions.h"
#include "host/dictionary/DictionaryText.h"
#include "host/dictionary/RegisterTables.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Corvid::MetaMetadata {

class RowReader;

/// Compiled registers with their memory; see RegisterTablesView.
struct RegisterTables {
    std::string texts;
    std::vector<LabelRow> labels;
    std::vector<TypeRow> types;
    std::vector<MemberRow> members;
    std::vector<PropertyRow> properties;
    std::vector<GroupRow> groups;
    std::vector<GroupUseRow> uses;
    std::vector<BranchRow> branches;
    std::vector<AliasRow> aliases;
};

/// Makes tables of the texts in registers/ and beyond/*.reg; the head of each text explains its
/// columns.
class RegisterReader {
public:
    /// @throws InvalidDictionary  a row is not of the form.
    void add(const DictionaryText& text);

    /// Sorts the entries and looks up what rows refer to.
    /// @throws InvalidDictionary  a reference leads nowhere, or a label is there twice.
    RegisterTables finish();

private:
    /// An entry, and the name of what it refers to.
    template <class Row> struct Entry {
        Row row{};
        std::string reference; ///< symbol of a type or group; "-" for none
        Origin origin;
    };
    struct Use {
        LabelBytes property{};
        GroupUseRow row{};
        Origin origin;
    };

    void readRow(const RowReader& row);
    void readLabel(const RowReader& row);
    void readType(const RowReader& row);
    void readMember(const RowReader& row);
    void readProperty(const RowReader& row);
    void readGroup(const RowReader& row);
    void readUse(const RowReader& row);
    void readReason(const RowReader& row);
    void readBranch(const RowReader& row);
    void readAlias(const RowReader& row);
    void readDocument(const RowReader& row);
    void readUnregistered(const RowReader& row);
    void readDeprecated(const RowReader& row);

    template <class Row> Row& startEntry(std::vector<Entry<Row>>& entries, const RowReader& row);
    std::uint32_t text(std::string_view text);

    std::string texts_ = std::string(1, '\0');
    std::map<std::string, std::uint32_t, std::less<>> places_{{"-", 0}, {"", 0}};
    std::map<std::string, std::uint32_t, std::less<>> reasons_{{"header", 0}};
    std::uint32_t document_ = 0;
    std::uint32_t owner_ = 0;
    std::uint32_t* deprecated_ = nullptr; // of the entry or member that was read last
    std::vector<Entry<LabelRow>> labels_;
    std::vector<Entry<TypeRow>> types_;
    std::vector<Entry<PropertyRow>> properties_;
    std::vector<Entry<GroupRow>> groups_;
    std::vector<MemberRow> members_;
    std::vector<Use> uses_;
    std::vector<BranchRow> branches_;
    std::vector<AliasRow> aliases_;
};

} // namespace Corvid::MetaMetadata
