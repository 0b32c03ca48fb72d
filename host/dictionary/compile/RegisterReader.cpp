#include "host/dictionary/compile/RegisterReader.h"

#include "host/dictionary/Cells.h"
#include "host/dictionary/RowReader.h"

#include <algorithm>
#include <charconv>

namespace Corvid::MetaMetadata {

namespace {

std::string_view column(const RowReader& row, std::size_t index) { return row.columns()[index]; }

[[noreturn]] void refuseColumn(const RowReader& row, std::size_t index, const char* form) {
    refuse(row.origin(), "\"" + std::string(column(row, index)) + "\" is not " + form);
}

LabelBytes labelAt(const RowReader& row, std::size_t index) {
    const auto label = Cells::label(column(row, index));
    if (!label) {
        refuseColumn(row, index, "a label");
    }
    return *label;
}

/// True for the first of two words, false for the second.
bool choiceAt(const RowReader& row, std::size_t index, std::string_view first,
              std::string_view second) {
    if (column(row, index) != first && column(row, index) != second) {
        refuseColumn(row, index, "one of the words that are allowed there");
    }
    return column(row, index) == first;
}

/// The columns from one to the end as they are in the row, but for the width of blanks.
std::string wordsFrom(const RowReader& row, std::size_t first) {
    std::string words;
    for (std::size_t i = first; i < row.columns().size(); ++i) {
        words += (i == first ? "" : " ") + std::string(row.columns()[i]);
    }
    return words;
}

/// The bytes of a label without version, then the version: entries are sorted by this.
LabelBytes sortKey(LabelBytes label) {
    std::rotate(label.begin() + 7, label.begin() + 8, label.end());
    return label;
}

} // namespace

void RegisterReader::add(const DictionaryText& text) {
    document_ = 0;
    owner_ = 0;
    deprecated_ = nullptr;
    RowReader reader(text, RowReader::Comments::atLines);
    while (reader.next()) {
        readRow(reader);
    }
}

void RegisterReader::readRow(const RowReader& row) {
    struct Kind {
        std::string_view name;
        std::size_t columns; ///< at least so many
        void (RegisterReader::*read)(const RowReader&);
    };
    constexpr Kind kinds[] = {
        {"document", 2, &RegisterReader::readDocument},
        {"unregistered", 2, &RegisterReader::readUnregistered},
        {"deprecated", 1, &RegisterReader::readDeprecated},
        {"label", 4, &RegisterReader::readLabel},
        {"type", 7, &RegisterReader::readType},
        {"member", 3, &RegisterReader::readMember},
        {"property", 5, &RegisterReader::readProperty},
        {"group", 8, &RegisterReader::readGroup},
        {"use", 4, &RegisterReader::readUse},
        {"reason", 3, &RegisterReader::readReason},
        {"branch", 3, &RegisterReader::readBranch},
        {"alias", 3, &RegisterReader::readAlias},
    };
    const auto kind = std::find_if(std::begin(kinds), std::end(kinds),
                                   [&](const Kind& each) { return each.name == column(row, 0); });
    if (kind == std::end(kinds)) {
        refuseColumn(row, 0, "a kind of row");
    }
    if (row.columns().size() < kind->columns) {
        refuse(row.origin(), "too few columns, expected " + std::to_string(kind->columns));
    }
    (this->*kind->read)(row);
}

/// Columns 1 and 2 are the same for all entries.
template <class Row>
Row& RegisterReader::startEntry(std::vector<Entry<Row>>& entries, const RowReader& row) {
    Entry<Row>& entry = entries.emplace_back();
    entry.origin = row.origin();
    entry.row.label = labelAt(row, 1);
    entry.row.symbol = text(column(row, 2));
    entry.row.document = document_;
    entry.row.owner = owner_;
    deprecated_ = &entry.row.deprecated;
    return entry.row;
}

void RegisterReader::readLabel(const RowReader& row) {
    startEntry(labels_, row).name = text(wordsFrom(row, 3));
}

void RegisterReader::readType(const RowReader& row) {
    TypeRow& type = startEntry(types_, row);
    types_.back().reference = column(row, 4);
    type.kind = text(column(row, 3));
    if (column(row, 5) != "-") {
        const auto size = Cells::number(column(row, 5));
        if (!size) {
            refuseColumn(row, 5, "a number");
        }
        type.size = *size;
    }
    type.valueType = text(column(row, 6));
    if (type.valueType != 0 && !Cells::valueType(column(row, 6))) {
        refuseColumn(row, 6, "a value type");
    }
    type.path = text(wordsFrom(row, 7));
    type.firstMember = static_cast<std::uint32_t>(members_.size());
}

void RegisterReader::readMember(const RowReader& row) {
    if (types_.empty()) {
        refuse(row.origin(), "no type above");
    }
    members_.push_back({text(column(row, 1)), text(wordsFrom(row, 2)), 0});
    ++types_.back().row.memberCount;
    deprecated_ = &members_.back().deprecated;
}

void RegisterReader::readProperty(const RowReader& row) {
    startEntry(properties_, row).name = text(wordsFrom(row, 4));
    properties_.back().reference = column(row, 3);
}

void RegisterReader::readGroup(const RowReader& row) {
    GroupRow& group = startEntry(groups_, row);
    groups_.back().reference = column(row, 3);
    group.concrete = choiceAt(row, 4, "concrete", "abstract") ? 1 : 0;
    group.codings = text(column(row, 5));
    const auto reason = reasons_.find(column(row, 6));
    if (reason == reasons_.end()) {
        refuseColumn(row, 6, "header or a reason");
    }
    group.reason = reason->second;
    group.name = text(wordsFrom(row, 7));
    group.firstUse = static_cast<std::uint32_t>(uses_.size());
}

void RegisterReader::readUse(const RowReader& row) {
    if (groups_.empty()) {
        refuse(row.origin(), "no group above");
    }
    Use& use = uses_.emplace_back();
    use.origin = row.origin();
    use.property = labelAt(row, 1);
    if (column(row, 2) != "-") {
        const auto tag = Cells::staticTag(column(row, 2));
        if (!tag) {
            refuseColumn(row, 2, "a static local tag");
        }
        use.row.localTag = *tag;
    }
    use.row.optional = choiceAt(row, 3, "optional", "required") ? 1 : 0;
    ++groups_.back().row.useCount;
}

void RegisterReader::readReason(const RowReader& row) {
    reasons_.emplace(column(row, 1), text(wordsFrom(row, 2)));
}

void RegisterReader::readBranch(const RowReader& row) {
    BranchRow branch{{}, 0, text(wordsFrom(row, 2))};
    // The form of a label, with zeros for the bytes that do not count.
    const std::string_view bytes = column(row, 1);
    branch.length = static_cast<std::uint32_t>((bytes.size() + 1) / 3);
    std::string whole(bytes);
    while (whole.size() < 47) {
        whole += ".00";
    }
    const auto label = Cells::label(whole);
    if (!label || branch.length > branch.bytes.size()) {
        refuseColumn(row, 1, "the beginning of a label");
    }
    std::copy_n(label->begin(), branch.bytes.size(), branch.bytes.begin());
    branches_.push_back(branch);
}

void RegisterReader::readAlias(const RowReader& row) {
    aliases_.push_back({text(column(row, 1)), text(wordsFrom(row, 2)), document_});
}

void RegisterReader::readDocument(const RowReader& row) { document_ = text(wordsFrom(row, 1)); }

void RegisterReader::readUnregistered(const RowReader& row) { owner_ = text(wordsFrom(row, 1)); }

void RegisterReader::readDeprecated(const RowReader& row) {
    if (deprecated_ == nullptr) {
        refuse(row.origin(), "no entry above");
    }
    *deprecated_ = 1;
}

std::uint32_t RegisterReader::text(std::string_view text) {
    const auto known = places_.find(text);
    if (known != places_.end()) {
        return known->second;
    }
    const auto place = static_cast<std::uint32_t>(texts_.size());
    places_.emplace(text, place);
    texts_.append(text).push_back('\0');
    return place;
}

namespace {

using Index = std::map<std::string, std::uint32_t, std::less<>>;

/// Sorts entries by label and hands over where each symbol went.
template <class Entries> Index sort(Entries& entries, const std::string& texts) {
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
        return sortKey(a.row.label) < sortKey(b.row.label);
    });
    Index index;
    for (std::size_t i = 0; i != entries.size(); ++i) {
        if (i != 0 && entries[i].row.label == entries[i - 1].row.label) {
            refuse(entries[i].origin,
                   "the label is at " + toString(entries[i - 1].origin) + " as well");
        }
        index.emplace(texts.data() + entries[i].row.symbol, static_cast<std::uint32_t>(i));
    }
    return index;
}

std::uint32_t placeIn(const Index& index, const std::string& symbol) {
    const auto found = index.find(symbol);
    return found == index.end() ? noRow : found->second;
}

template <class Entry> void requireFound(bool found, const Entry& entry) {
    if (!found && entry.reference != "-") {
        refuse(entry.origin, "there is no \"" + entry.reference + "\"");
    }
}

template <class Entries, class Rows> void hand(const Entries& entries, Rows& rows) {
    std::transform(entries.begin(), entries.end(), std::back_inserter(rows),
                   [](const auto& entry) { return entry.row; });
}

} // namespace

RegisterTables RegisterReader::finish() {
    sort(labels_, texts_);
    sort(properties_, texts_);
    const Index types = sort(types_, texts_);
    const Index groups = sort(groups_, texts_);
    for (auto& entry : types_) {
        entry.row.base = placeIn(types, entry.reference);
        entry.row.target = entry.row.base == noRow ? placeIn(groups, entry.reference) : noRow;
        requireFound(entry.row.base != noRow || entry.row.target != noRow, entry);
    }
    for (auto& entry : properties_) {
        entry.row.type = placeIn(types, entry.reference);
        requireFound(entry.row.type != noRow, entry);
    }
    for (auto& entry : groups_) {
        entry.row.parent = placeIn(groups, entry.reference);
        requireFound(entry.row.parent != noRow, entry);
    }
    std::map<LabelBytes, std::uint32_t> propertyPlaces;
    for (const auto& entry : properties_) {
        propertyPlaces.emplace(entry.row.label, propertyPlaces.size());
    }
    RegisterTables tables;
    for (Use& use : uses_) {
        const auto property = propertyPlaces.find(use.property);
        if (property == propertyPlaces.end()) {
            refuse(use.origin, "there is no such property");
        }
        use.row.property = property->second;
        tables.uses.push_back(use.row);
    }
    std::sort(branches_.begin(), branches_.end(), [](const BranchRow& a, const BranchRow& b) {
        return std::pair(a.bytes, a.length) < std::pair(b.bytes, b.length);
    });
    hand(labels_, tables.labels);
    hand(types_, tables.types);
    hand(properties_, tables.properties);
    hand(groups_, tables.groups);
    tables.texts = texts_;
    tables.members = members_;
    tables.branches = branches_;
    tables.aliases = aliases_;
    return tables;
}

} // namespace Corvid::MetaMetadata
