#include "XMLBuilder/writer/sinks/TextSink.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

const TextSink::Parts& TextSink::partsOf(const Name& name) {
    const auto [place, isNew] = parts_.try_emplace(name);
    auto& [written, local] = place->second;
    if (isNew) {
        const Text qualified = name.qualified;
        const auto colon = qualified.find(u':');
        const bool hasPrefix = colon != Text::npos;
        local = hasPrefix ? qualified.substr(colon + 1) : qualified;
        written = {qualified, hasPrefix ? qualified.substr(0, colon) : Text(u""), name.uri};
    }
    return place->second;
}

void TextSink::startElement(const Name& name, const Attribute* attributes, std::size_t count) {
    startContent(false);
    attributes_.clear();
    for (std::size_t i = 0; i != count; ++i) {
        const Parts& attribute = partsOf(attributes[i].name);
        // Of two with one name the later one comes first, as in a DOM.
        const auto place = std::lower_bound(
            attributes_.begin(), attributes_.end(), attribute.name.qualified,
            [](const auto& each, Text qualified) { return each.name.qualified < qualified; });
        attributes_.insert(place, {attribute.name, attribute.local, attributes[i].value});
    }
    markup_.startElement(partsOf(name).name, attributes_.data(), count);
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
