#include "XMLBuilder/forms/JoinedForm.h"

#include "XMLBuilder/forms/ValueForms.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

namespace {

namespace Identifiers = Types::Identifiers;

/// A time as people write it has two digits for most of its parts, and milliseconds, where a
/// document has steps of 4 ms.
constexpr const char* separatorsOfTime = "-- ::.";
constexpr std::size_t widthsOfTime[] = {4, 2, 2, 2, 2, 2, 3};
constexpr unsigned millisecondsOfStep = 4;

template <class T, class Form> std::optional<CompoundType> typeOf() {
    if constexpr (std::is_same_v<decltype(Form::describe(As<T>{})), CompoundType>) {
        return Form::describe(As<T>{});
    } else {
        return std::nullopt;
    }
}

std::optional<CompoundType> typeOf(Identifiers::Identifier type) {
    switch (type) {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    case Id:                                                                                       \
        return typeOf<Types::Class, ValueForms::Form>();
#include "host/types/ValueTypes.def"
    }
    return std::nullopt;
}

std::string separatorsOf(Identifiers::Identifier type, const CompoundType& parts) {
    switch (type) {
    case Identifiers::Timestamp:
        return separatorsOfTime;
    case Identifiers::Rational:
        return "/";
    case Identifiers::ProductVersion:
        return "....";
    default:
        break;
    }
    std::string separators;
    for (std::size_t i = 0; i != parts.times; ++i) {
        // What is there several times has "/" in each and "," between them.
        separators += std::string(parts.parts.size() - 1, parts.times == 1 ? ',' : '/');
        separators += i + 1 == parts.times ? "" : ",";
    }
    return separators;
}

} // namespace

std::optional<JoinedForm> joinedFormOf(Identifiers::Identifier type) {
    auto parts = typeOf(type);
    if (!parts) {
        return std::nullopt;
    }
    std::string separators = separatorsOf(type, *parts);
    return JoinedForm{std::move(*parts), std::move(separators)};
}

std::string JoinedForm::join(std::vector<std::string> parts) const {
    const bool isTime = separators == separatorsOfTime;
    if (isTime && Platform::isDigits(parts.back())) {
        parts.back() = std::to_string(millisecondsOfStep * std::stoul(parts.back()));
    }
    std::string text;
    for (std::size_t i = 0; i != parts.size(); ++i) {
        const std::size_t width = isTime ? widthsOfTime[i] : 0;
        text.append(width - std::min(width, parts[i].size()), '0');
        text += parts[i];
        text += i < separators.size() ? separators.substr(i, 1) : "";
    }
    return text;
}

std::optional<std::vector<std::string>> JoinedForm::split(std::string text) const {
    const bool isTime = separators == separatorsOfTime;
    if (isTime) {
        std::replace(text.begin(), text.end(), 'T', ' '); // ISO 8601 has that between day and time
    }
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (const char separator : separators) {
        const std::size_t end = text.find(separator, begin);
        if (end == std::string::npos) {
            // Whole seconds go without milliseconds.
            if (isTime && parts.size() + 1 == separators.size()) {
                parts.push_back(text.substr(begin));
                parts.emplace_back("0");
                return parts;
            }
            return std::nullopt;
        }
        parts.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    parts.push_back(text.substr(begin));
    constexpr std::size_t mostDigits = 9;
    if (isTime && Platform::isDigits(parts.back()) && parts.back().size() <= mostDigits) {
        const unsigned long milliseconds = std::stoul(parts.back());
        if (milliseconds % millisecondsOfStep != 0) {
            return std::nullopt;
        }
        parts.back() = std::to_string(milliseconds / millisecondsOfStep);
    }
    return parts;
}

std::string JoinedForm::pattern() const {
    if (separators == separatorsOfTime) {
        return "YYYY-MM-DD hh:mm:ss.mmm, with milliseconds in steps of 4";
    }
    std::string text;
    std::size_t place = 0;
    for (std::size_t i = 0; i != type.times; ++i) {
        for (const auto& part : type.parts) {
            const std::u16string name = part.name;
            text.append(name.begin(), name.end());
            text += place < separators.size() ? separators.substr(place, 1) : "";
            ++place;
        }
    }
    return text;
}

} // namespace Corvid::XMLBuilder
