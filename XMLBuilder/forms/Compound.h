#pragma once

#include "XMLBuilder/Errors.h"
#include "XMLBuilder/format/As.h"
#include "XMLBuilder/format/CompoundFields.h"
#include "XMLBuilder/format/HexBytes.h"
#include "XMLBuilder/format/NumberInput.h"
#include "XMLBuilder/forms/Bytes.h"
#include "XMLBuilder/forms/NumberValue.h"
#include "XMLBuilder/reader/strict/ValueCheck.h"
#include "XMLBuilder/reader/strict/ValueRules.h"
#include "XMLBuilder/reader/values/Parts.h"

#include <array>
#include <utility>

namespace Corvid::XMLBuilder::ValueForms {

/// An element for each part, as Fields lists them.
struct Compound {
    static constexpr bool fitsAttributes = false;

    template <class T> static void write(DocumentSink& to, const T& value);
    template <class T> static ParsedValue parse(ValueInput& from, As<T>);
    template <class T> static bool check(ValueCheck& of, As<T>);
    template <class T> static CompoundType describe(As<T>);

    /// Always five components: one of zeros ends the layout in a file, but not here, and those
    /// after the fifth have no place in the format.
    static void write(DocumentSink& to, const Types::RGBALayout& value);
    /// However many components there are: the layout minds what has a place in it.
    static ParsedValue parse(ValueInput& from, As<Types::RGBALayout>);
    static bool check(ValueCheck& of, As<Types::RGBALayout>);
    static CompoundType describe(As<Types::RGBALayout>);

private:
    /// Adds a doubt where a value whose parts are right makes no sense.
    template <class T> static void doubt(ValueCheck&, As<T>) {}
    /// A time that no calendar has may come from a file, so it is no mistake. All zeros mean that
    /// the time is not known (SMPTE ST 377-1).
    static void doubt(ValueCheck& time, As<Types::Timestamp>);

    template <class T, class Get>
    static constexpr bool isBytes = std::is_base_of_v<Types::DataType, ContentOf<T, Get>>;
    template <class T>
    static constexpr std::size_t count = std::tuple_size_v<decltype(Fields<T>::list)>;

    /// Calls the body with each field of the list and its place in it.
    template <class T, class Body> static void forEachField(Body body) {
        std::apply(
            [&](const auto&... field) {
                std::size_t place = 0;
                (body(field, place++), ...);
            },
            Fields<T>::list);
    }

    template <class T> static void enterWrapper(Parts& parts);
    template <class T> static auto textsOf(Parts& parts, EmptyParts empty);
    template <class T, class Get>
    static auto contentOf(const Field<Get>& field, const char16_t* text);
    template <class T, std::size_t... Place>
    static auto contentsOf(const std::array<const char16_t*, count<T>>& texts,
                           std::index_sequence<Place...>);
    template <class T, class Get>
    static bool checkPart(ValueCheck& of, const DocumentNode& part, const Field<Get>& field);
};

template <class T> void Compound::write(DocumentSink& to, const T& value) {
    using F = Fields<T>;
    if (F::wrapper.name != nullptr) {
        to.startElement({F::names.uri, F::wrapper.name});
    }
    forEachField<T>([&](const auto& field, std::size_t) {
        to.startElement({F::names.uri, field.name});
        if constexpr (isBytes<T, decltype(field.get)>) {
            Bytes::write(to, field.get(value));
        } else {
            writeNumber(to, +field.get(value)); // a byte is a number, never a character
        }
        to.endElement();
    });
    if (F::wrapper.name != nullptr) {
        to.endElement();
    }
}

template <class T> void Compound::enterWrapper(Parts& parts) {
    const Wrapper wrapper = Fields<T>::wrapper;
    const std::string name = narrow(Names::localPart(wrapper.name));
    const auto fail = [&](const std::string& condition) {
        throwInvalidFormat(condition.c_str(),
                           CallerContract::Text::noWrapper(name, wrapper.property).c_str(),
                           CORVID_ELEMENT_VISITOR_HERE);
    };
    const DocumentNode* found = parts.first(wrapper.name);
    if (found == nullptr) {
        fail(CallerContract::Text::wrapperIsThere);
    }
    if (narrow(found->local) != name) {
        fail(CallerContract::Text::wrapperIsCalled(name));
    }
    parts.enter(*found);
}

/// The texts of all parts, in document order. They are looked for and checked in the order of
/// their ranks, so that of several missing ones the right one is reported.
template <class T> auto Compound::textsOf(Parts& parts, EmptyParts empty) {
    std::array<const char16_t*, count<T>> texts{};
    for (int rank = 0; rank != static_cast<int>(count<T>); ++rank) {
        forEachField<T>([&](const auto& field, std::size_t place) {
            if (field.rank != rank) {
                return;
            }
            texts[place] = parts.text(field.name);
            const bool mayBeEmpty = isBytes<T, decltype(field.get)> && empty == EmptyParts::values;
            if (field.condition != nullptr && *texts[place] == 0 && !mayBeEmpty) {
                throwInvalidFormat(
                    field.condition,
                    CallerContract::Text::noPart(narrow(Names::localPart(field.name))).c_str(),
                    CORVID_ELEMENT_VISITOR_HERE);
            }
        });
    }
    return texts;
}

/// The content of a part, by what its accessor gives: a number or bytes.
template <class T, class Get> auto Compound::contentOf(const Field<Get>&, const char16_t* text) {
    if constexpr (isBytes<T, Get>) {
        return parseHexBytes(text);
    } else {
        return readNumber<Types::u32>(text);
    }
}

/// The contents of all parts, in document order.
template <class T, std::size_t... Place>
auto Compound::contentsOf(const std::array<const char16_t*, count<T>>& texts,
                          std::index_sequence<Place...>) {
    constexpr const auto& list = Fields<T>::list;
    return std::tuple<decltype(contentOf<T>(std::get<Place>(list), nullptr))...>{
        contentOf<T>(std::get<Place>(list), texts[Place])...};
}

template <class T> ParsedValue Compound::parse(ValueInput& from, As<T>) {
    using F = Fields<T>;
    Parts parts(from, F::names);
    if constexpr (F::wrapper.name != nullptr) {
        enterWrapper<T>(parts);
    }
    const auto texts = textsOf<T>(parts, from.empty());
    return give(std::apply(F::make, contentsOf<T>(texts, std::make_index_sequence<count<T>>())));
}

template <class T, class Get>
bool Compound::checkPart(ValueCheck& of, const DocumentNode& part, const Field<Get>& field) {
    if constexpr (isBytes<T, Get>) {
        return of.bytes(part, field.condition == nullptr || of.empty() == EmptyParts::values);
    } else {
        return of.number(part, IntegerRange::of<typename StoredContent<T, Get>::Type>());
    }
}

/// Each part once, and nothing else.
template <class T> bool Compound::check(ValueCheck& of, As<T>) {
    using F = Fields<T>;
    const DocumentNode* around = &of.node();
    if constexpr (F::wrapper.name != nullptr) {
        around = of.onlyChild(F::wrapper.name, F::names.uri);
        if (around == nullptr) {
            return false;
        }
    }
    std::array<bool, count<T>> isThere{};
    bool isRight = true;
    refuseText(*around, of.mistakes());
    for (const auto* child = firstElement(*around); child != nullptr; child = nextElement(*child)) {
        bool isKnown = false;
        forEachField<T>([&](const auto& field, std::size_t place) {
            if (isKnown || !hasName(*child, Names::localPart(field.name), F::names.uri)) {
                return;
            }
            isKnown = true;
            checkAttributes(*child, nullptr, {}, of.mistakes());
            if (isThere[place]) {
                of.mistakes().add(*child, "is there twice, expected once");
                isRight = false;
            } else {
                isRight = checkPart<T>(of, *child, field) && isRight;
            }
            isThere[place] = true;
        });
        if (!isKnown) {
            of.mistakes().add(*child, "is no part of this value");
            isRight = false;
        }
    }
    forEachField<T>([&](const auto& field, std::size_t place) {
        if (!isThere[place]) {
            of.mistakes().add(*around, "expected the part " + narrow(field.name));
            isRight = false;
        }
    });
    if (isRight) {
        doubt(of, As<T>{});
    }
    return isRight;
}

template <class T> CompoundType Compound::describe(As<T>) {
    using F = Fields<T>;
    CompoundType type{F::names, F::wrapper.name, 1, {}};
    forEachField<T>([&](const auto& field, std::size_t) {
        using Content = typename StoredContent<T, decltype(field.get)>::Type;
        if constexpr (std::is_base_of_v<Types::DataType, Content>) {
            type.parts.push_back({Names::localPart(field.name), u"DataStream"});
        } else {
            type.parts.push_back({Names::localPart(field.name), nameOfNumber<Content>()});
        }
    });
    return type;
}

} // namespace Corvid::XMLBuilder::ValueForms
