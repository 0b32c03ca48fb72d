#pragma once

#include "XMLBuilder/reader/Reading.h"
#include "XMLBuilder/reader/values/ValueParser.h"
#include "host/metadata/Elements.h"
#include "host/types/Identifiers.h"

namespace Corvid::XMLBuilder {

/// Fills one element of a set from the node that holds its value. What can't be read, an empty
/// element or a set of an unknown class, leaves the element as it is.
class FromXMLElementVisitor : public Metadata::Visitors::NonConstElementVisitor {
public:
    /// Everything is borrowed.
    /// @param valueNode   an element, or an attribute.
    /// @param definition  null for an unknown property, whose value is bytes.
    /// @param empty       EmptyParts::values also fills up the items of a collection of texts or
    ///                    bytes with zeros to the longest.
    FromXMLElementVisitor(const DocumentNode& valueNode,
                          const MetaMetadata::MetaElement* definition, Reading& reading,
                          EmptyParts empty);

    void visit(Metadata::ReferenceBatchElement& element) override { readReferences(element); }
    void visit(Metadata::ReferenceArrayElement& element) override { readReferences(element); }
    void visit(Metadata::ReferenceElement& element) override;
    void visit(Metadata::BatchElement& element) override;
    void visit(Metadata::ArrayElement& element) override;
    void visit(Metadata::SimpleElement& element) override;

private:
    void readReferences(Metadata::ReferenceCollectionElement& element);
    template <class Collection> void readItems(Metadata::CollectionElement& element);
    bool checkItems();
    void checkReferences(std::size_t most);
    EmptyParts emptyOf(Types::Identifiers::Identifier type) const;
    int itemSize();
    int measureItems();
    template <class Collection> void readFilledUp(Metadata::CollectionElement& element);

    /// The reference that a link stands for; null where the link or the type is none.
    Templates::auto_ptr<Types::Reference> readLink(const DocumentNode& link,
                                                   Types::Identifiers::Identifier type);
    /// The set inside a reference, made and filled; null where its class is unknown.
    Metadata::MetadataSet* readInlineSet(const DocumentNode& element);

    const DocumentNode& node_;
    Types::Identifiers::Identifier type_;
    Types::Identifiers::Identifier itemType_; ///< of a collection
    Reading& reading_;
    EmptyParts empty_;
};

} // namespace Corvid::XMLBuilder
