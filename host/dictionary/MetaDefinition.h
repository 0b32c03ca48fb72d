#pragma once

#include "Corvid/Export.h"
#include "host/base/Attached.h"

namespace Corvid::MetaMetadata {

/// What the definitions of sets and of properties have in common: a name in XML.
///
/// Definitions belong to their Dictionary, don't change and live as long as it.
class CORVID_EXPORT MetaDefinition {
public:
    /// Zero-terminated UTF-16 texts, in the memory of the dictionary; schemaIndex may be null.
    struct Names {
        const unsigned short* tagName;
        const unsigned short* namespaceUri;
        const unsigned short* prefix;
        const unsigned short* schemaIndex;
    };

    explicit MetaDefinition(const Names& names) noexcept : names_(names) {}
    MetaDefinition(const MetaDefinition&) = delete;
    MetaDefinition& operator=(const MetaDefinition&) = delete;
    virtual ~MetaDefinition();

    /// The UTF-16 text of a meta attribute: "XMLTagName", "XMLNamespaceURI", "XMLDefaultPrefix",
    /// and for properties "SchemaIndex", an unsigned decimal number. Null for any other name.
    virtual const unsigned short* attribute(const char* name) const noexcept;

    /// For the library of the document format: how documents name the definition.
    const Platform::Attached& documentName() const noexcept { return documentName_; }

private:
    Platform::Attached documentName_;
    Names names_;
};

} // namespace Corvid::MetaMetadata
