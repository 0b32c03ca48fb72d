#pragma once

#include "Corvid_Inspection/Export.h"
#include "host/dictionary/Dictionary.h"
#include "host/dictionary/Registers.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Corvid::Inspection {

/// A member with the type that it belongs to.
struct TypeMember {
    MetaMetadata::RegisteredType type;
    MetaMetadata::RegisteredMember member;
};

/// What can be asked after: what the dictionary defines, and what only the registers know.
using Subject =
    std::variant<const MetaMetadata::MetaMetadataSet*, const MetaMetadata::MetaElement*,
                 MetaMetadata::RegisteredType, MetaMetadata::RegisteredLabel, TypeMember,
                 MetaMetadata::RegisteredProperty, MetaMetadata::RegisteredGroup>;

/// Everything that has a name in a dictionary and in the SMPTE registers, to be found by what
/// people have at hand of it.
class CORVID_INSPECTION_EXPORT Glossary {
public:
    /// A definition, or an entry of a register, with all of its names.
    struct Entry {
        Subject subject;
        /// Its usual name, then its others: symbol, words, aliases.
        std::vector<std::string> names;
        std::string qualifiedName; ///< prefix:name in the dictionary; else empty
    };
    using Entries = std::vector<const Entry*>;

    /// How entries were found.
    enum class Match { nothing, label, localTag, name, partOfName };
    /// What a text means.
    struct Found {
        Match match = Match::nothing;
        Entries entries;
        Entries namesakes; ///< others that have the whole name, but less like it is written
    };

    /// @param dictionary  must outlive the object.
    explicit Glossary(const MetaMetadata::Dictionary& dictionary);

    /// Finds what a text means, in this order: a label or key in any form, whatever its version and
    /// coding; a static local tag; the first name of an entry, letter by letter; another name, so
    /// too; any name but for case, blanks and punctuation; names that the text, or each of its
    /// words, is part of.
    Found find(const std::string& text) const;

    /// Names, or labels with their names, that are much like a text that means nothing; the most
    /// similar first.
    std::vector<std::string> near(const std::string& text) const;

private:
    void addDefinitions(const MetaMetadata::Dictionary& dictionary);
    void addRegisters(const MetaMetadata::Dictionary& dictionary);
    void addAliases();
    Found findName(const std::string& text) const;
    Entries findLabel(const Types::UniversalLabel& label) const;
    Entries findTag(Types::u16 tag) const;
    std::vector<std::string> nearLabels(const Types::UniversalLabel& label) const;

    std::vector<Entry> entries_;
};

/// The label of a subject, or its key as it is in files; nothing for a member that stands for
/// none.
CORVID_INSPECTION_EXPORT std::optional<Types::UniversalLabel> labelOf(const Subject& subject);

} // namespace Corvid::Inspection
