// Compiles a dictionary's texts into the source of builtInTables(), at build time:
//   corvid-compile-dictionary OUTPUT TEXT...
// The output depends on the texts alone, in whatever order they are named.

#include "host/base/Exceptions.h"
#include "host/dictionary/Loader.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using namespace Corvid;
using namespace Corvid::MetaMetadata;

void write(std::ostream& out, const unsigned short& unit) { out << unit << ','; }

void write(std::ostream& out, const NamespaceRow& row) {
    out << '{' << row.prefix << ',' << row.uri << "},";
}

void write(std::ostream& out, const UseRow& row) {
    out << '{' << row.element << ',' << row.status << "},";
}

void write(std::ostream& out, const std::array<unsigned char, 16>& bytes) {
    out << "{{";
    for (const unsigned char byte : bytes) {
        out << static_cast<unsigned>(byte) << ',';
    }
    out << "}}";
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

template <class T>
void writeTable(std::ostream& out, const char* type, const char* name, const std::vector<T>& rows) {
    constexpr std::size_t perLine = sizeof(T) <= 8 ? 16 : 1;
    out << "constexpr " << type << ' ' << name << "[] = {";
    for (std::size_t i = 0; i != rows.size(); ++i) {
        if (i % perLine == 0) {
            out << '\n';
        }
        write(out, rows[i]);
    }
    out << "\n};\n\n";
}

void writeSource(std::ostream& out, const Tables& tables) {
    out << "// Generated from the texts in host/dictionary/smpte.\n"
           "#include \"host/dictionary/BuiltInTables.h\"\n\n"
           "namespace Corvid::MetaMetadata {\n\nnamespace {\n\n";
    writeTable(out, "unsigned short", "texts", tables.texts);
    writeTable(out, "NamespaceRow", "namespaces", tables.namespaces);
    writeTable(out, "SetRow", "sets", tables.sets);
    writeTable(out, "UseRow", "uses", tables.uses);
    writeTable(out, "ElementRow", "elements", tables.elements);
    out << "template <class T, std::size_t Size> constexpr Rows<T> rows(const T (&table)[Size]) {\n"
           "    return {table, Size};\n}\n\n} // namespace\n\n"
           "TablesView builtInTables() noexcept {\n"
           "    return {rows(texts), rows(namespaces), rows(sets), rows(uses), "
           "rows(elements)};\n}\n\n"
           "} // namespace Corvid::MetaMetadata\n";
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw Exceptions::IOError(path + ": cannot be read", CORVID_HERE);
    }
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::cerr << "usage: corvid-compile-dictionary OUTPUT TEXT...\n";
        return 2;
    }
    try {
        std::vector<std::string> paths(argv + 2, argv + argc);
        std::sort(paths.begin(), paths.end());
        std::vector<std::string> contents;
        std::vector<DictionaryText> texts;
        std::transform(paths.begin(), paths.end(), std::back_inserter(contents), contentOf);
        for (std::size_t i = 0; i != paths.size(); ++i) {
            texts.push_back({paths[i], contents[i]});
        }
        const Tables tables = load(nullptr, {texts.data(), texts.size()});
        std::ofstream out(argv[1], std::ios::binary);
        writeSource(out, tables);
        out.close();
        if (!out) {
            throw Exceptions::IOError(std::string(argv[1]) + ": cannot be written", CORVID_HERE);
        }
    } catch (const Exceptions::BaseException& error) {
        std::cerr << Platform::toUtf8(error.message()) << '\n';
        return 1;
    }
    return 0;
}
