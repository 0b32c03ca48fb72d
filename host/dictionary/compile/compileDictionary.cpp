// Compiles a dictionary's texts into the source of builtInTables(), at build time:
//   corvid-compile-dictionary OUTPUT TEXT...
// The output depends on the texts alone, in whatever order they are named.

#include "host/dictionary/Loader.h"
#include "host/dictionary/compile/CompileTexts.h"
#include "host/dictionary/compile/TableSource.h"

namespace Corvid::MetaMetadata {

void write(std::ostream& out, const NamespaceRow& row) {
    out << '{' << row.prefix << ',' << row.uri << "},";
}

void write(std::ostream& out, const UseRow& row) {
    out << '{' << row.element << ',' << row.status << "},";
}

void write(std::ostream& out, const SetRow& row) {
    out << '{';
    write(out, row.key);
    out << ',' << row.space << ',' << row.tagName << ',' << row.parent << "U," << row.concrete
        << ',' << row.firstUse << ',' << row.useCount << "},";
}

void write(std::ostream& out, const ElementRow& row) {
    out << '{';
    write(out, row.label);
    out << ',' << row.space << ',' << row.tagName << ',' << row.schemaIndex << ',' << row.staticTag
        << ',' << static_cast<unsigned>(row.type) << ',' << static_cast<unsigned>(row.itemType)
        << "},";
}

void writeTables(std::ostream& out, const Tables& tables) {
    writeTable(out, "unsigned short", "texts", tables.texts);
    writeTable(out, "NamespaceRow", "namespaces", tables.namespaces);
    writeTable(out, "SetRow", "sets", tables.sets);
    writeTable(out, "UseRow", "uses", tables.uses);
    writeTable(out, "ElementRow", "elements", tables.elements);
}

constexpr const char* function = R"(TablesView builtInTables() noexcept {
    return {rows(texts), rows(namespaces), rows(sets), rows(uses), rows(elements)};
}
)";

} // namespace Corvid::MetaMetadata

int main(int argc, char** argv) {
    using namespace Corvid::MetaMetadata;
    return compileTexts(argc, argv, [](std::vector<DictionaryText> texts, std::ostream& out) {
        const Tables tables = load(nullptr, {texts.data(), texts.size()});
        writeFile(
            out, "host/dictionary/smpte", "host/dictionary/BuiltInTables.h",
            [&tables](std::ostream& to) { writeTables(to, tables); }, function);
    });
}
