#pragma once

#include "XMLBuilder/format/DefinitionName.h"
#include "XMLBuilder/reader/Reading.h"
#include "XMLBuilder/reader/values/ValueParser.h"
#include "host/metadata/Visitors.h"

#include <optional>
#include <string>
#include <vector>

namespace Corvid::Metadata {
class Element;
}

namespace Corvid::XMLBuilder {

/// Fills a set that was just made from its XML element: the properties that its class lists, then
/// the extension elements. What the element lacks stays as the set was made.
class FromXMLMetadataSetVisitor : public Metadata::Visitors::NonConstMetadataSetVisitor {
public:
    /// Both are borrowed.
    FromXMLMetadataSetVisitor(const DocumentNode& element, Reading& reading)
        : element_(element), reading_(reading) {}

    /// @throws LimitExceeded  sets are nested deeper than greatestInlineDepth; else as
    ///                        the parsers of values do. What was read before stays.
    void visit(Metadata::MetadataSet& set) override;

    /// Reads an element of the container of the properties beyond the set's class.
    void readExtension(Metadata::MetadataSet& set, const DocumentNode& extension);

private:
    void addExtension(Metadata::MetadataSet& set, const DocumentNode& extension,
                      const MetaMetadata::MetaElement* definition);
    void fill(Metadata::Element& element, const DocumentNode& node,
              const MetaMetadata::MetaElement* definition);
    EmptyParts emptyPartsOf(const Metadata::Element& element) const;
    void readProperty(Metadata::MetadataSet& set, const PropertyName& property, OpenSet& open);
    void readAttribute(Metadata::MetadataSet& set, const PropertyName& property);
    void readExtensions(Metadata::MetadataSet& set, OpenSet& open);

    void checkSet(const MetaMetadata::MetaMetadataSet& setClass);
    void leaveOutTheRest(const MetaMetadata::MetaMetadataSet& setClass);

    const DocumentNode& element_;
    const DocumentNode* identifier_ = nullptr; ///< the attribute; null where there is none
    std::optional<Types::UUID> instanceUID_;   ///< what it says, where it is read strictly
    std::vector<const DocumentNode*> read_;    ///< the child elements that something is read from
    /// Which properties are read as they are; null for none.
    const Supplement::Properties* supplemented_ = nullptr;
    Reading& reading_;
};

} // namespace Corvid::XMLBuilder
