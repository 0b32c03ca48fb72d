#pragma once

#include "host/dictionary/RegisterTables.h"
#include "host/types/IdentifierTypes.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <optional>
#include <string_view>

namespace Corvid::MetaMetadata {

/// Values of a class that represents a row each, as a read-only sequence. Borrows the rows.
template <class Value> class RowValues {
public:
    using Row = typename Value::Row;

    /// Goes from row to row.
    class const_iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Value;
        using difference_type = std::ptrdiff_t;
        using pointer = const Value*;
        using reference = Value;

        explicit const_iterator(const Row* row) noexcept : row_(row) {}
        Value operator*() const noexcept { return Value(*row_); }
        const_iterator& operator++() noexcept {
            ++row_;
            return *this;
        }
        friend bool operator==(const_iterator a, const_iterator b) noexcept {
            return a.row_ == b.row_;
        }
        friend bool operator!=(const_iterator a, const_iterator b) noexcept { return !(a == b); }

    private:
        const Row* row_;
    };

    explicit RowValues(Rows<Row> rows) noexcept : rows_(rows) {}

    const_iterator begin() const noexcept { return const_iterator(rows_.begin()); }
    const_iterator end() const noexcept { return const_iterator(rows_.end()); }
    std::size_t size() const noexcept { return rows_.size(); }
    bool empty() const noexcept { return rows_.size() == 0; }
    Value operator[](std::size_t place) const noexcept { return Value(rows_[place]); }

protected:
    Rows<Row> rows_;
};

/// The entries of one of the SMPTE registers, in the order of their labels.
template <class Entry> class Register : public RowValues<Entry> {
public:
    using typename RowValues<Entry>::Row;
    using RowValues<Entry>::RowValues;

    /// The entry with that label. The version byte, the eighth, takes no part in matching; of
    /// entries that only differ in it, the one that has the label's own is preferred, else the one
    /// with the lowest.
    std::optional<Entry> find(const Types::UniversalLabel& label) const noexcept {
        const auto first = std::lower_bound(
            this->rows_.begin(), this->rows_.end(), label,
            [](const Row& row, const Types::UniversalLabel& wanted) {
                return Types::UniversalLabel(row.label).withoutVersion() < wanted.withoutVersion();
            });
        const auto matches = [&](const Row* row) {
            return row != this->rows_.end() &&
                   Types::UniversalLabel(row->label).withoutVersion() == label.withoutVersion();
        };
        if (!matches(first)) {
            return std::nullopt;
        }
        for (const Row* row = first; matches(row); ++row) {
            if (row->label == label.bytes()) {
                return Entry(*row);
            }
        }
        return Entry(*first);
    }

    /// The entry with that symbol, letter by letter; of several, the one with the lowest label.
    /// Looks at one after the other.
    std::optional<Entry> find(std::string_view symbol) const noexcept {
        const auto found = std::find_if(this->begin(), this->end(), [symbol](const Entry& entry) {
            return entry.symbol() == symbol;
        });
        return found == this->end() ? std::nullopt : std::optional<Entry>(*found);
    }
};

} // namespace Corvid::MetaMetadata
