#pragma once

#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/types/Types.h"

namespace Corvid::Metadata {
class MetadataSet;
}

namespace Corvid::XMLBuilder {

class ToXMLMetadataSetVisitor;

/// Writes a reference that has a target as its value: a strong one as the whole target, if this is
/// its place, a weak one as a link.
class ToXMLReferenceVisitor : public Types::Visitors::NullVisitor {
public:
    /// Everything is borrowed.
    /// @param isPlace  whether the target is to be written here.
    ToXMLReferenceVisitor(const Metadata::MetadataSet& target, bool isPlace,
                          ToXMLMetadataSetVisitor& sets, DocumentSink& sink)
        : target_(target), isPlace_(isPlace), sets_(sets), sink_(sink) {}

    void visit(const Types::StrongReference& reference) override;
    void visit(const Types::WeakReference& reference) override;

private:
    const Metadata::MetadataSet& target_;
    bool isPlace_;
    ToXMLMetadataSetVisitor& sets_;
    DocumentSink& sink_;
};

} // namespace Corvid::XMLBuilder
