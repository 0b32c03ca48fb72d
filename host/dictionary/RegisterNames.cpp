#include "host/dictionary/RegisterNames.h"

#include <charconv>

namespace Corvid::MetaMetadata::Registers {

std::string_view nameOf(const Types::UniversalLabel& label) noexcept {
    if (const auto found = labels().find(label)) {
        return found->name();
    }
    if (const auto property = properties().find(label)) {
        return property->name();
    }
    const auto group = findGroup(KLV::Key(label.bytes()));
    return group ? group->name() : std::string_view();
}

std::optional<RegisteredType> enumerationOf(const Types::UniversalLabel& property) noexcept {
    const auto registered = properties().find(property);
    auto type = registered ? registered->type() : std::nullopt;
    while (type && type->kind() != "enumeration") {
        const bool isListOrName = type->kind() == "rename" || type->kind() == "variable-array" ||
                                  type->kind() == "fixed-array" || type->kind() == "set";
        type = isListOrName ? type->base() : std::nullopt;
    }
    return type;
}

std::string_view memberOf(const RegisteredType& enumeration, Types::u64 number) noexcept {
    char digits[20]; // of the greatest number
    const char* const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    const std::string_view wanted(digits, static_cast<std::size_t>(end - digits));
    for (const auto& member : enumeration.members()) {
        if (member.value() == wanted) {
            return member.symbol();
        }
    }
    return {};
}

} // namespace Corvid::MetaMetadata::Registers
