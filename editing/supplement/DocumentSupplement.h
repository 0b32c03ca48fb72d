#pragma once

#include "XMLBuilder/reader/Supplement.h"
#include "host/klv/Key.h"
#include "host/types/IdentifierTypes.h"

#include <optional>
#include <string>
#include <vector>

namespace Corvid::Editing {

/// How a set is stored in its file.
struct KeyForm {
    KLV::Key key;                        ///< another version or coding than that of the dictionary
    unsigned char propertyBerLength = 1; ///< see MetadataSet::propertyBerLength()

    friend bool operator==(const KeyForm& a, const KeyForm& b) {
        return a.key == b.key && a.propertyBerLength == b.propertyBerLength;
    }
    friend bool operator!=(const KeyForm& a, const KeyForm& b) { return !(a == b); }
    friend bool operator<(const KeyForm& a, const KeyForm& b) {
        return a.key < b.key || (a.key == b.key && a.propertyBerLength < b.propertyBerLength);
    }
};

/// The sets that something is said of.
struct SetAddress {
    std::optional<Types::UUID> instanceUID; ///< nothing for sets that had none
    KLV::Key setClass;                      ///< the dictionary's key, for sets without InstanceUID
    /// One of those that share the address, from 0 in the order of the document; nothing for each.
    std::optional<Types::u32> copy;
};

/// The property that something is said of.
struct PropertyAddress {
    SetAddress set;
    std::optional<Types::UniversalLabel> label; ///< nothing where only the tag is known
    Types::LocalTag tag;
    Types::u32 nth = 0; ///< among the set's properties with this label, that of its class first

    XMLBuilder::PropertyIdentity identity() const {
        return label ? XMLBuilder::identityOf(*label) : XMLBuilder::identityOf(tag);
    }
};

/// What a document says besides its elements, because the format has no place for it: what is
/// written as processing instructions in front of the root. docs/format.md describes each.
struct DocumentSupplement {
    struct PrimerEntry {
        Types::LocalTag tag;
        Types::UniversalLabel label;
    };
    struct ClassKey {
        KLV::Key setClass; ///< as the dictionary has it
        KeyForm form;
    };
    struct SetKey {
        SetAddress set;
        KeyForm form;
    };
    struct Form {
        enum class Unit : unsigned char {
            octets, ///< the whole value
            item,   ///< each item of a collection
        };
        PropertyAddress property;
        Unit unit;
        Types::u32 size;
    };
    struct Bytes {
        PropertyAddress property;
        std::string bytes;
    };
    /// Of several sets with an InstanceUID, how many are equal to the first in the document.
    struct Copies {
        Types::UUID set;
        std::optional<Types::u32> known; ///< of those of a known class, where they are several
        std::optional<Types::u32> dark;  ///< of the others; likewise
    };
    struct Unidentified {
        KLV::Key setClass;
        Types::u32 count;
    };
    struct Partial {
        bool structuralOnly;
        std::optional<Types::UUID> start;
    };

    /// Whether a document that was read has instructions; one that is written always has.
    bool isThere = false;
    std::vector<PrimerEntry> primer;
    std::vector<ClassKey> classKeys;
    std::vector<SetKey> setKeys;
    bool textsAreTerminated = false; ///< texts without a form of their own end with one zero
    std::vector<Form> forms;
    std::vector<Bytes> bytes;
    std::vector<Copies> copies;
    std::vector<Unidentified> unidentified;
    std::optional<Partial> partial;
};

} // namespace Corvid::Editing
