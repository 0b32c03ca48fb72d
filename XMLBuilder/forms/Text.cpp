#include "XMLBuilder/forms/Text.h"

#include "host/xmlutils/XmlText.h"

#include <algorithm>

namespace Corvid::XMLBuilder::ValueForms {

void Text::write(DocumentSink& to, const Types::UTF16String& value) {
    to.text(XMLUtils::toXml(value.value()));
}

void Text::write(DocumentSink& to, const Types::ISO7String& value) {
    to.text(XMLUtils::toXml(Platform::widen(value.value())));
}

ParsedValue Text::parse(ValueInput& from, As<Types::UTF16String>) {
    return give(Types::UTF16String(XMLUtils::fromXml(from.wholeText())));
}

ParsedValue Text::parse(ValueInput& from, As<Types::ISO7String>) {
    return give(Types::ISO7String(
        Platform::wstringToString(Utf16Text(XMLUtils::fromXml(from.wholeText()))).c_str()));
}

bool Text::check(ValueCheck& of, As<Types::ISO7String>) {
    return of.text(
        of.node(),
        [](std::u16string_view text) {
            return std::all_of(text.begin(), text.end(),
                               [](char16_t unit) { return unit <= 0xFF || unit == 0xFFFD; });
        },
        "characters up to U+00FF, as the value has 8 bits for each", false);
}

} // namespace Corvid::XMLBuilder::ValueForms
