#pragma once

#include "XMLBuilder/json/JsonValue.h"
#include "XMLBuilder/json/MetadataJson.h"
#include "XMLBuilder/json/PropertyKeys.h"
#include "XMLBuilder/json/SetBytes.h"
#include "host/metadata/Elements.h"

#include <map>

namespace Corvid::XMLBuilder {

/// Writes sets as objects; where references are values, with the sets inside them for which this is
/// the place. Calls nest with these, which the plan has bounded.
class ToJsonSetVisitor final : public Metadata::Visitors::ElementVisitor {
public:
    /// Everything is borrowed.
    ToJsonSetVisitor(const DocumentPlan& plan, const JsonContent& content, JsonWriter& to);

    /// @param pass  that the set is in.
    void write(const Metadata::MetadataSet& set, const WriterPass& pass);
    void write(const DocumentPlan::Floating& dark);
    /// A link to a set, or to nothing: {"ref": "4a.1b...", "class": "Sequence"}.
    void writeReference(const Types::UUID& identifier, const Metadata::MetadataSet* target,
                        bool isAmbiguous);
    /// What the dictionary and the registers say of the properties of all sets so far.
    void writeDefinitions();

    void visit(const Metadata::ReferenceBatchElement& element) override { writeAll(element); }
    void visit(const Metadata::ReferenceArrayElement& element) override { writeAll(element); }
    void visit(const Metadata::ReferenceElement& element) override;
    void visit(const Metadata::BatchElement& element) override { writeValue(element); }
    void visit(const Metadata::ArrayElement& element) override { writeValue(element); }
    void visit(const Metadata::SimpleElement& element) override { writeValue(element); }

private:
    using Properties = std::vector<const Metadata::Element*>;

    void writeProperties(const Metadata::MetadataSet& set, const Properties& properties);
    void noteDefinition(const Metadata::MetadataSet& set, const std::string& key,
                        const MetaMetadata::MetaElement& definition);
    void writeOthers(const Metadata::MetadataSet& set, const Properties& others);
    void writeOther(const Metadata::MetadataSet& set, const Metadata::Element& element);
    void writePlace(const void* set, std::size_t size);
    /// For each property, in their order: tag, offset in the set, length of the value, its bytes.
    void writeRaw(const SetBytes& bytes, const Properties& properties, const Properties& others);

    template <class OneOrMany> void writeValue(const OneOrMany& element);
    void writeAll(const Metadata::ReferenceCollectionElement& element);
    void writeItem(const Metadata::Element& element, std::uint32_t item,
                   const Types::Reference& reference);

    const JsonValueManner& mannerOf(const Metadata::Element& element);

    const DocumentPlan& plan_;
    const WriterPass* pass_ = nullptr;
    JsonWriter& to_;
    std::optional<SetPlaces> places_; ///< where offsets are wanted
    PropertyKeys keys_;
    JsonValueManner plain_; ///< of values that are no enumeration's
    std::unordered_map<const MetaMetadata::MetaElement*, JsonValueManner> manners_;
    std::map<std::string, const MetaMetadata::MetaElement*> used_; ///< where offsets are wanted
};

} // namespace Corvid::XMLBuilder
