#include "XMLBuilder/writer/TextSink.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

namespace {

/// A qualified name taken apart.
XMLUtils::MarkupWriter::Name split(const DocumentSink::Name& name, DocumentSink::Text& local) {
    const DocumentSink::Text qualified = name.qualified;
    const auto colon = qualified.find(u':');
    if (colon == DocumentSink::Text::npos) {
        local = qualified;
        return {qualified, u"", name.uri};
    }
    local = qualified.substr(colon + 1);
    return {qualified, qualified.substr(0, colon), name.uri};
}

} // namespace

void TextSink::startElement(const Name& name, const Attribute* attributes, std::size_t count) {
    startContent(false);
    attributes_.clear();
    Text local;
    for (std::size_t i = 0; i != count; ++i) {
        const auto attribute = split(attributes[i].name, local);
        // Of two with one name the later one comes first, as in a DOM.
        const auto place = std::lower_bound(
            attributes_.begin(), attributes_.end(), attribute.qualified,
            [](const auto& each, Text qualified) { return each.name.qualified < qualified; });
        attributes_.insert(place, {attribute, local, attributes[i].value});
    }
    markup_.startElement(split(name, local), attributes_.data(), count);
    isStarted_ = false;
}

void TextSink::startContent(bool isText) {
    if (!isStarted_) {
        markup_.startContent(isText);
        isStarted_ = true;
    }
}

void TextSink::endElement() {
    markup_.endElement();
    isStarted_ = true;
}

void TextSink::text(Text text) {
    startContent(true);
    markup_.text(text);
}

} // namespace Corvid::XMLBuilder
