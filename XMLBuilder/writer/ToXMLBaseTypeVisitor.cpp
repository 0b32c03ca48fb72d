#include "XMLBuilder/writer/ToXMLBaseTypeVisitor.h"

#include "XMLBuilder/forms/ValueForms.h"

namespace Corvid::XMLBuilder {

namespace {

template <class Form, class T>
void writeTo(DocumentSink* sink, std::u16string* attribute, const T& value) {
    if (sink != nullptr) {
        Form::write(*sink, value);
    } else if constexpr (Form::fitsAttributes) {
        *attribute = Form::attribute(value);
    }
}

} // namespace

#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    void ToXMLBaseTypeVisitor::visit(const Types::Class& value) {                                  \
        writeTo<ValueForms::Form>(sink_, attribute_, value);                                       \
    }
#include "host/types/ValueTypes.def"

} // namespace Corvid::XMLBuilder
