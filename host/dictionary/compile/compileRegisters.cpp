// Compiles the registers' texts into the source of registerTables(), at build time:
//   corvid-compile-registers OUTPUT TEXT...

#include "host/dictionary/compile/CompileTexts.h"
#include "host/dictionary/compile/RegisterReader.h"
#include "host/dictionary/compile/TableSource.h"

#include <initializer_list>

namespace Corvid::MetaMetadata {

void writeNumbers(std::ostream& out, std::initializer_list<std::uint32_t> numbers) {
    for (const std::uint32_t number : numbers) {
        out << number << "U,";
    }
}

void writeEntry(std::ostream& out, const EntryRow& row, std::initializer_list<std::uint32_t> rest) {
    out << "{{";
    write(out, row.label);
    out << ',';
    writeNumbers(out, {row.symbol, row.name, row.document, row.deprecated, row.owner});
    out << "},";
    writeNumbers(out, rest);
    out << "},";
}

void writeRow(std::ostream& out, std::initializer_list<std::uint32_t> numbers) {
    out << '{';
    writeNumbers(out, numbers);
    out << "},";
}

void write(std::ostream& out, const LabelRow& row) { writeEntry(out, row, {}); }

void write(std::ostream& out, const TypeRow& row) {
    writeEntry(out, row,
               {row.kind, row.base, row.target, row.size, row.valueType, row.path, row.firstMember,
                row.memberCount});
}

void write(std::ostream& out, const MemberRow& row) {
    writeRow(out, {row.symbol, row.value, row.deprecated});
}

void write(std::ostream& out, const PropertyRow& row) { writeEntry(out, row, {row.type}); }

void write(std::ostream& out, const GroupRow& row) {
    writeEntry(out, row,
               {row.parent, row.concrete, row.codings, row.reason, row.firstUse, row.useCount});
}

void write(std::ostream& out, const GroupUseRow& row) {
    writeRow(out, {row.property, row.localTag, row.optional});
}

void write(std::ostream& out, const BranchRow& row) {
    out << '{';
    write(out, row.bytes);
    out << ',';
    writeNumbers(out, {row.length, row.name});
    out << "},";
}

void write(std::ostream& out, const AliasRow& row) {
    writeRow(out, {row.definition, row.name, row.document});
}

/// As string literals, one a line: a compiler takes far longer over a list of characters.
void writeTexts(std::ostream& out, const std::string& texts) {
    out << "constexpr char texts[] =";
    for (std::size_t start = 0; start != texts.size();) {
        const std::size_t end = texts.find('\0', start);
        out << "\n\"";
        for (std::size_t i = start; i != end; ++i) {
            out << (texts[i] == '"' || texts[i] == '\\' ? "\\" : "") << texts[i];
        }
        // Three digits, so that a digit at the front of the next text is none of this one's.
        out << "\\000\"";
        start = end + 1;
    }
    out << ";\n\n";
}

void writeTables(std::ostream& out, const RegisterTables& tables) {
    writeTexts(out, tables.texts);
    writeTable(out, "LabelRow", "labels", tables.labels);
    writeTable(out, "TypeRow", "types", tables.types);
    writeTable(out, "MemberRow", "members", tables.members);
    writeTable(out, "PropertyRow", "properties", tables.properties);
    writeTable(out, "GroupRow", "groups", tables.groups);
    writeTable(out, "GroupUseRow", "uses", tables.uses);
    writeTable(out, "BranchRow", "branches", tables.branches);
    writeTable(out, "AliasRow", "aliases", tables.aliases);
}

constexpr const char* function = R"(const RegisterTablesView& registerTables() noexcept {
    static constexpr RegisterTablesView view{
        texts, rows(labels), rows(types), rows(members), rows(properties), rows(groups),
        rows(uses), rows(branches), rows(aliases)};
    return view;
}
)";

} // namespace Corvid::MetaMetadata

int main(int argc, char** argv) {
    using namespace Corvid::MetaMetadata;
    return compileTexts(
        argc, argv, [](const std::vector<DictionaryText>& texts, std::ostream& out) {
            RegisterReader reader;
            for (const DictionaryText& text : texts) {
                reader.add(text);
            }
            const RegisterTables tables = reader.finish();
            writeFile(
                out, "host/dictionary/registers and beyond", "host/dictionary/RegisterTables.h",
                [&tables](std::ostream& to) { writeTables(to, tables); }, function);
        });
}
