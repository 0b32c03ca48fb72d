// Compiles the dictionaries' texts into the source of registeredTables() and builtInTables(), at
// build time:
//   corvid-compile-dictionary OUTPUT TEXT...
// The output depends on the texts alone, in whatever order they are named.

#include "host/dictionary/Loader.h"
#include "host/dictionary/compile/CompileTexts.h"
#include "host/dictionary/compile/TableSource.h"

#include <algorithm>

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

void writeTables(std::ostream& out, const char* space, const Tables& tables) {
    out << "namespace " << space << " {\n\n";
    writeTable(out, "unsigned short", "texts", tables.texts);
    writeTable(out, "NamespaceRow", "namespaces", tables.namespaces);
    writeTable(out, "SetRow", "sets", tables.sets);
    writeTable(out, "UseRow", "uses", tables.uses);
    writeTable(out, "ElementRow", "elements", tables.elements);
    writeTable(out, "std::uint32_t", "setsByKey", tables.setsByKey);
    writeTable(out, "std::uint32_t", "elementsByLabel", tables.elementsByLabel);
    writeTable(out, "std::uint32_t", "elementsByTag", tables.elementsByTag);
    out << "} // namespace " << space << "\n\n";
}

/// True for a text of what the SMPTE registers hold.
bool isRegistered(const DictionaryText& text) { return text.name.substr(0, 6) == "smpte/"; }

constexpr const char* functions = R"(TablesView registeredTables() noexcept {
    using namespace registered;
    return {rows(texts),    rows(namespaces), rows(sets),            rows(uses),
            rows(elements), rows(setsByKey),  rows(elementsByLabel), rows(elementsByTag)};
}

TablesView builtInTables() noexcept {
    using namespace builtIn;
    return {rows(texts),    rows(namespaces), rows(sets),            rows(uses),
            rows(elements), rows(setsByKey),  rows(elementsByLabel), rows(elementsByTag)};
}
)";

} // namespace Corvid::MetaMetadata

int main(int argc, char** argv) {
    using namespace Corvid::MetaMetadata;
    return compileTexts(argc, argv, [](std::vector<DictionaryText> texts, std::ostream& out) {
        const Tables builtIn = load(nullptr, {texts.data(), texts.size()});
        const auto end = std::stable_partition(texts.begin(), texts.end(), isRegistered);
        const auto count = static_cast<std::size_t>(end - texts.begin());
        const Tables registered = load(nullptr, {texts.data(), count});
        writeFile(
            out, "host/dictionary/smpte and beyond", "host/dictionary/BuiltInTables.h",
            [&](std::ostream& to) {
                writeTables(to, "registered", registered);
                writeTables(to, "builtIn", builtIn);
            },
            functions);
    });
}
