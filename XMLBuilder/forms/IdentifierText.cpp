#include "XMLBuilder/forms/IdentifierText.h"

#include "XMLBuilder/format/NumberText.h"

namespace Corvid::XMLBuilder::ValueForms {

namespace {

bool isOfClip(const DocumentNode& node) {
    return node.local == std::u16string_view(Names::extendedClipID);
}

} // namespace

ParsedValue IdentifierText::parse(ValueInput& from, As<Types::UMID64>) {
    constexpr std::size_t basic = 3 * Types::UMID32::fixedSize - 1;
    std::u16string umid = from.text();
    if (umid.size() == basic && isOfClip(from.node())) {
        for (std::size_t i = 0; i != Types::UMID64::fixedSize - Types::UMID32::fixedSize; ++i) {
            umid += u".00";
        }
    }
    return identifier<Types::UMID64>(umid.c_str());
}

ParsedValue IdentifierText::parse(ValueInput& from, As<Types::LocalTag>) {
    return from.isElementAlone() ? ParsedValue() : identifier<Types::LocalTag>(from.text());
}

bool IdentifierText::check(ValueCheck& of, As<Types::UMID64>) {
    return of.identifier(Types::UMID64::fixedSize,
                         isOfClip(of.node()) ? Types::UMID32::fixedSize : 0);
}

SimpleType IdentifierText::describe(std::initializer_list<std::size_t> sizes) {
    SimpleType type{u"xs:token", {}};
    for (const std::size_t size : sizes) {
        type.facets.push_back(
            {u"xs:pattern", std::u16string(u"[0-9a-fA-F]{2}(\\.[0-9a-fA-F]{2}){") +
                                DecimalText(size - 1).c_str() + u"}"});
    }
    return type;
}

} // namespace Corvid::XMLBuilder::ValueForms
