#include "XMLBuilder/forms/Collection.h"

#include "XMLBuilder/writer/ToXMLBaseTypeVisitor.h"

namespace Corvid::XMLBuilder::ValueForms {

void Collection::write(DocumentSink& to, const Types::Collection& value) {
    ToXMLBaseTypeVisitor items(to);
    for (Types::u32 i = 0; i < value.size(); ++i) {
        value.at(i).accept(items);
    }
}

} // namespace Corvid::XMLBuilder::ValueForms
