#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Corvid::MetaMetadata {

// The form that definitions are compiled into: flat rows that hold places instead of pointers, so
// that a compiled dictionary is constant data which needs no work when the library is loaded.
// A text is the place of its first code unit in the pool of zero-terminated UTF-16 texts.

/// Stands where a row refers to no other row.
constexpr std::uint32_t noRow = 0xFFFFFFFF;

/// A namespace of definitions.
struct NamespaceRow {
    std::uint32_t prefix; ///< text
    std::uint32_t uri;    ///< text
};

/// A property of a set.
struct UseRow {
    std::uint32_t element; ///< row of the property
    std::uint32_t status;  ///< AttributeRequiredStatus::Status
};

/// Sorted by key.
struct SetRow {
    std::array<unsigned char, 16> key;
    std::uint32_t space;    ///< row of the namespace
    std::uint32_t tagName;  ///< text
    std::uint32_t parent;   ///< row of a set, or noRow
    std::uint32_t concrete; ///< 1 or 0
    std::uint32_t firstUse; ///< row of the first of the set's own properties
    std::uint32_t useCount;
};

/// Sorted by label.
struct ElementRow {
    std::array<unsigned char, 16> label;
    std::uint32_t space;       ///< row of the namespace
    std::uint32_t tagName;     ///< text
    std::uint32_t schemaIndex; ///< text
    std::uint16_t staticTag;   ///< 0 for none
    std::uint8_t type;         ///< Types::Identifiers::Identifier
    std::uint8_t itemType;     ///< of a collection, else 0
};

/// Borrowed rows.
template <class T> struct Rows {
    const T* first;
    std::size_t count;

    const T* begin() const noexcept { return first; }
    const T* end() const noexcept { return first + count; }
    std::size_t size() const noexcept { return count; }
    const T& operator[](std::size_t row) const noexcept { return first[row]; }
};

/// A compiled dictionary, borrowed. The last three are orders: they name the rows of a table, sorted
/// by what a row is looked up by.
struct TablesView {
    Rows<unsigned short> texts;
    Rows<NamespaceRow> namespaces;
    Rows<SetRow> sets;
    Rows<UseRow> uses;
    Rows<ElementRow> elements;
    Rows<std::uint32_t> setsByKey;       ///< as LabelMatchLess sorts
    Rows<std::uint32_t> elementsByLabel; ///< as LabelMatchLess sorts
    Rows<std::uint32_t> elementsByTag;   ///< those that have a static tag

    const unsigned short* text(std::uint32_t place) const noexcept { return texts.first + place; }
};

/// A compiled dictionary with its memory.
struct Tables {
    std::vector<unsigned short> texts;
    std::vector<NamespaceRow> namespaces;
    std::vector<SetRow> sets;
    std::vector<UseRow> uses;
    std::vector<ElementRow> elements;
    std::vector<std::uint32_t> setsByKey;
    std::vector<std::uint32_t> elementsByLabel;
    std::vector<std::uint32_t> elementsByTag;

    TablesView view() const noexcept {
        return {
            rows(texts),     rows(namespaces),      rows(sets),         rows(uses), rows(elements),
            rows(setsByKey), rows(elementsByLabel), rows(elementsByTag)};
    }

private:
    template <class T> static Rows<T> rows(const std::vector<T>& table) noexcept {
        return {table.data(), table.size()};
    }
};

} // namespace Corvid::MetaMetadata
