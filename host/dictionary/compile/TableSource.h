#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <vector>

namespace Corvid::MetaMetadata {

inline void write(std::ostream& out, const unsigned short& unit) { out << unit << ','; }

inline void write(std::ostream& out, const std::uint32_t& row) { out << row << ','; }

template <std::size_t Size>
void write(std::ostream& out, const std::array<unsigned char, Size>& bytes) {
    out << "{{";
    for (const unsigned char byte : bytes) {
        out << static_cast<unsigned>(byte) << ',';
    }
    out << "}}";
}

/// Writes the source of a constant table. Each row is written by a function `write` in
/// the namespace of the row.
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

/// Writes the whole source.
/// @param folder  of the texts that it is made of.
/// @param header  that declares the function.
/// @param writeTables  is called with the stream.
/// @param function  its text, in which rows(name) borrows a table.
template <class WriteTables>
void writeFile(std::ostream& out, const char* folder, const char* header,
               const WriteTables& writeTables, const char* function) {
    out << "// Generated from the texts in " << folder << ".\n#include \"" << header
        << "\"\n\nnamespace Corvid::MetaMetadata {\n\nnamespace {\n\n";
    writeTables(out);
    out << "template <class T, std::size_t Size> constexpr Rows<T> rows(const T (&table)[Size]) {\n"
           "    return {table, Size};\n}\n\n} // namespace\n\n"
        << function << "\n} // namespace Corvid::MetaMetadata\n";
}

} // namespace Corvid::MetaMetadata
