#pragma once

#include "host/dictionary/Register.h"

namespace Corvid::MetaMetadata {

// What the SMPTE metadata registers hold, all of it by name, also what the dictionary of header
// metadata has no use for; and labels and groups in use that are not registered. These classes are
// values as light as a pointer; their texts are UTF-8 and live as long as the program. Nothing is
// built when the library is loaded.

/// A text of the compiled registers.
inline std::string_view registerText(std::uint32_t place) noexcept {
    return registerTables().texts + place;
}

/// The entry that a row refers to, if it does.
template <class Entry>
std::optional<Entry> entryAt(const Rows<typename Entry::Row>& rows, std::uint32_t row) noexcept {
    return row == noRow ? std::nullopt : std::make_optional<Entry>(rows[row]);
}

/// What every register says of an entry.
template <class RowType> class RegisterEntry {
public:
    using Row = RowType;

    explicit RegisterEntry(const Row& row) noexcept : row_(&row) {}

    /// As registered, version byte included.
    Types::UniversalLabel label() const noexcept { return Types::UniversalLabel(row_->label); }
    /// The name for programs, unique among the entries of one owner.
    std::string_view symbol() const noexcept { return registerText(row_->symbol); }
    /// The name in words; types have none.
    std::string_view name() const noexcept { return registerText(row_->name); }
    /// The document that defines it; empty where the register names none.
    std::string_view document() const noexcept { return registerText(row_->document); }
    /// Whose it is, where the registers do not have it; empty for what they have.
    std::string_view owner() const noexcept { return registerText(row_->owner); }
    bool isRegistered() const noexcept { return row_->owner == 0; }
    /// True for what is not to be used any more.
    bool isDeprecated() const noexcept { return row_->deprecated != 0; }

protected:
    const Row& row() const noexcept { return *row_; }

private:
    const Row* row_;
};

/// A label that stands for an operational pattern, a coding, a channel and so on (SMPTE ST 400).
class RegisteredLabel : public RegisterEntry<LabelRow> {
public:
    using RegisterEntry::RegisterEntry;
};

/// A member of a record or an enumeration.
class RegisteredMember {
public:
    using Row = MemberRow;

    explicit RegisteredMember(const Row& row) noexcept : row_(&row) {}

    std::string_view symbol() const noexcept { return registerText(row_->symbol); }
    /// In a record the symbol of the member's type, else the number, text or dotted label that the
    /// member stands for.
    std::string_view value() const noexcept { return registerText(row_->value); }
    bool isDeprecated() const noexcept { return row_->deprecated != 0; }

private:
    const Row* row_;
};

class RegisteredGroup;

/// A type of values (SMPTE ST 2003).
class RegisteredType : public RegisterEntry<TypeRow> {
public:
    using RegisterEntry::RegisterEntry;

    /// "unsigned-integer", "record", "strong-reference" and so on.
    std::string_view kind() const noexcept { return registerText(row().kind); }
    /// What it renames, or what its items or values are.
    std::optional<RegisteredType> base() const noexcept;
    /// What a reference refers to.
    std::optional<RegisteredGroup> target() const noexcept;
    /// Bytes of a number, items of a fixed array; else 0.
    std::uint32_t size() const noexcept { return row().size; }
    /// The value type (docs/dictionary.md) of properties of this type; empty where no property of
    /// header metadata has it. Single properties differ.
    std::string_view valueType() const noexcept { return registerText(row().valueType); }
    /// Where the targets of a weak reference are, "Preface/Dictionary/DataDefinitions"; or empty.
    std::string_view targetPath() const noexcept { return registerText(row().path); }
    /// In the order of the register.
    RowValues<RegisteredMember> members() const noexcept {
        return RowValues<RegisteredMember>(
            {registerTables().members.first + row().firstMember, row().memberCount});
    }
};

/// A property, whether or not a set of header metadata has it (SMPTE ST 335).
class RegisteredProperty : public RegisterEntry<PropertyRow> {
public:
    using RegisterEntry::RegisterEntry;

    std::optional<RegisteredType> type() const noexcept;
};

/// A property of a group outside of header metadata.
class RegisteredUse {
public:
    using Row = GroupUseRow;

    explicit RegisteredUse(const Row& row) noexcept : row_(&row) {}

    RegisteredProperty property() const noexcept {
        return RegisteredProperty(registerTables().properties[row_->property]);
    }
    /// 0 where the register gives none.
    Types::u16 localTag() const noexcept { return row_->localTag; }
    bool isOptional() const noexcept { return row_->optional != 0; }

private:
    const Row* row_;
};

/// A set or pack (SMPTE ST 395). The sixth byte of its label is 7f, for "any coding".
class RegisteredGroup : public RegisterEntry<GroupRow> {
public:
    using RegisterEntry::RegisterEntry;

    std::optional<RegisteredGroup> parent() const noexcept;
    bool isConcrete() const noexcept { return row().concrete != 0; }
    /// The sixth bytes that keys of the group may have: "53", "53,13", "05"; empty where the
    /// register names none.
    std::string_view codings() const noexcept { return registerText(row().codings); }
    /// True where it can be in header metadata; then the dictionary defines it.
    bool isHeaderMetadata() const noexcept { return row().reason == 0; }
    /// Why it is no header metadata, in words; empty where it is.
    std::string_view reason() const noexcept { return registerText(row().reason); }
    /// Its own properties, where it is no header metadata.
    RowValues<RegisteredUse> uses() const noexcept {
        return RowValues<RegisteredUse>(
            {registerTables().uses.first + row().firstUse, row().useCount});
    }
};

inline std::optional<RegisteredType> RegisteredType::base() const noexcept {
    return entryAt<RegisteredType>(registerTables().types, row().base);
}

inline std::optional<RegisteredGroup> RegisteredType::target() const noexcept {
    return entryAt<RegisteredGroup>(registerTables().groups, row().target);
}

inline std::optional<RegisteredType> RegisteredProperty::type() const noexcept {
    return entryAt<RegisteredType>(registerTables().types, row().type);
}

inline std::optional<RegisteredGroup> RegisteredGroup::parent() const noexcept {
    return entryAt<RegisteredGroup>(registerTables().groups, row().parent);
}

/// A part of the register of labels.
class LabelBranch {
public:
    using Row = BranchRow;

    explicit LabelBranch(const Row& row) noexcept : row_(&row) {}

    std::string_view name() const noexcept { return registerText(row_->name); }
    /// True for labels that belong to it or would, if they were registered.
    bool holds(const Types::UniversalLabel& label) const noexcept {
        return std::memcmp(label.bytes().data() + 8, row_->bytes.data(), row_->length) == 0;
    }

private:
    const Row* row_;
};

/// A name that another document gives to something of the dictionary.
class RegisteredAlias {
public:
    using Row = AliasRow;

    explicit RegisteredAlias(const Row& row) noexcept : row_(&row) {}

    /// prefix:name in the dictionary.
    std::string_view definition() const noexcept { return registerText(row_->definition); }
    std::string_view name() const noexcept { return registerText(row_->name); }
    std::string_view document() const noexcept { return registerText(row_->document); }

private:
    const Row* row_;
};

} // namespace Corvid::MetaMetadata
