#include "editing/change/DocumentText.h"

#include "XMLBuilder/writer/ToXMLBaseTypeVisitor.h"
#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/base/Text.h"

namespace Corvid::Editing {

namespace {

std::string narrow(std::u16string_view text) {
    const Utf16Text copy(text.begin(), text.end());
    return Platform::toUtf8(copy);
}

class PartsText : public XMLBuilder::DocumentSink {
public:
    void startElement(const Name& name, const Attribute*, std::size_t) override {
        const std::u16string_view qualified = name.qualified;
        const auto colon = qualified.find(u':');
        result += (result.empty() ? "" : ", ") + narrow(qualified.substr(colon + 1)) + ' ';
    }
    void endElement() override {}
    void text(Text text) override { result += narrow(text); }

    std::string result;
};

} // namespace

std::string documentText(const Types::SimpleDataType& value) {
    PartsText parts;
    XMLBuilder::ToXMLBaseTypeVisitor writer(parts);
    value.accept(writer);
    return parts.result;
}

} // namespace Corvid::Editing
