#include "XMLBuilder/reader/ValueParser.h"

#include "XMLBuilder/Errors.h"
#include "XMLBuilder/format/CompoundFields.h"
#include "XMLBuilder/format/HexBytes.h"
#include "XMLBuilder/format/NumberInput.h"
#include "XMLBuilder/format/ValueForms.h"
#include "XMLBuilder/reader/strict/StrictText.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/klv/Value.h"
#include "host/types/Factories.h"
#include "host/xmlutils/XmlText.h"

#include <array>
#include <deque>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace Corvid::XMLBuilder {

namespace {

using Result = Templates::auto_ptr<Types::SimpleDataType>;

template <class T> Result give(T&& value) {
    return Result(new std::decay_t<T>(std::forward<T>(value)));
}

std::string narrow(const char16_t* text) { return Platform::toUtf8(XMLUtils::fromXml(text)); }

/// The text of all nodes below an element but comments and instructions. Elements may stand in each
/// other as deep as a document allows, so nothing here works by calls that nest with them.
std::u16string textBelow(const DocumentNode& element) {
    std::u16string text;
    std::vector<const DocumentNode*> next{element.firstChild}; // on each level
    while (!next.empty()) {
        const DocumentNode* const node = next.back();
        if (node == nullptr) {
            next.pop_back();
            continue;
        }
        next.back() = node->next;
        if (node->kind == DocumentNode::Kind::text) {
            text += node->value;
        } else if (node->kind == DocumentNode::Kind::element) {
            next.push_back(node->firstChild);
        }
    }
    return text;
}

bool isAttribute(const DocumentNode& node) { return node.kind == DocumentNode::Kind::attribute; }

/// The parts of one compound value.
class Parts {
public:
    Parts(Reading& reading, const Names::Namespace& names, const DocumentNode& parent)
        : uri_(reading.uriOfParts(names)), parent_(&parent),
          isStrict_(reading.strictness() != nullptr) {}

    /// Goes on with the parts of a child.
    void enter(const DocumentNode& child) { parent_ = &child; }

    const DocumentNode* first(const char16_t* qualified) const {
        return ChildSteps::first(*parent_, Names::localPart(qualified), uri_);
    }
    const DocumentNode* next(const DocumentNode& found, const char16_t* qualified) const {
        return ChildSteps::next(found, Names::localPart(qualified), uri_);
    }

    /// The text of a part; empty where it is missing.
    const char16_t* text(const char16_t* qualified) {
        const DocumentNode* const part = first(qualified);
        if (part != nullptr && isStrict_) {
            return texts_.emplace_back(trimmed(contentOf(*part))).c_str();
        }
        return part == nullptr ? u"" : firstValue(*part);
    }

private:
    const char16_t* uri_;
    const DocumentNode* parent_;
    bool isStrict_;
    std::deque<std::u16string> texts_; ///< where they are made
};

template <class T> void enterWrapper(Parts& parts) {
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
/// their ranks, so that of several missing ones the right one is told.
template <class T> auto textsOf(Parts& parts, EmptyParts empty) {
    constexpr std::size_t count = std::tuple_size_v<decltype(Fields<T>::list)>;
    std::array<const char16_t*, count> texts{};
    const auto read = [&](const auto& field, std::size_t place) {
        texts[place] = parts.text(field.name);
        if (field.condition != nullptr && *texts[place] == 0 &&
            !(empty == EmptyParts::values && holdsBytes<T>(field))) {
            throwInvalidFormat(
                field.condition,
                CallerContract::Text::noPart(narrow(Names::localPart(field.name))).c_str(),
                CORVID_ELEMENT_VISITOR_HERE);
        }
    };
    for (int rank = 0; rank != static_cast<int>(count); ++rank) {
        std::apply(
            [&](const auto&... field) {
                std::size_t place = 0;
                ((field.rank == rank ? read(field, place) : void(), ++place), ...);
            },
            Fields<T>::list);
    }
    return texts;
}

/// The content of a part, by what its accessor gives: a number or bytes.
template <class T, class Get> auto contentOf(const Field<Get>&, const char16_t* text) {
    if constexpr (std::is_base_of_v<Types::DataType, ContentOf<T, Get>>) {
        return parseHexBytes(text);
    } else {
        return readNumber<u32>(text);
    }
}

/// The contents of all parts, in document order.
template <class T, class Texts, std::size_t... Place>
auto contentsOf(const Texts& texts, std::index_sequence<Place...>) {
    constexpr const auto& list = Fields<T>::list;
    return std::tuple<decltype(contentOf<T>(std::get<Place>(list), nullptr))...>{
        contentOf<T>(std::get<Place>(list), texts[Place])...};
}

/// The operations mirror those of ToXMLBaseTypeVisitor: one per form of value.
class Forms : public ValueForms {
public:
    Forms(Reading& reading, const DocumentNode& node, EmptyParts empty)
        : reading_(reading), node_(node), empty_(empty) {}

    /// Up to 32 bits are read as a number of 32 bits, of which the low ones are kept.
    template <class T> Result parse(As<T>, Integer) {
        using Number = decltype(std::declval<const T&>().value());
        using Small = std::conditional_t<std::is_signed_v<Number>, int, u32>;
        using Read = std::conditional_t<sizeof(Number) <= sizeof(Small), Small, Number>;
        return give(T(static_cast<Number>(readNumber<Read>(text()))));
    }

    /// Any text but "0" is true.
    Result parse(As<Types::Boolean>, Integer) {
        return give(Types::Boolean(text() != std::u16string_view(u"0")));
    }

    Result parse(As<Types::VersionType>, PackedVersion) {
        const u32 version = readNumber<u32>(text());
        return give(Types::VersionType(static_cast<u8>(version >> 8), static_cast<u8>(version)));
    }

    Result parse(As<Types::DataStream>, Bytes) {
        const FieldBytes bytes = parseHexBytes(text());
        return give(Types::DataStream(bytes.data(), static_cast<u32>(bytes.size())));
    }

    Result parse(As<Types::Unknown>, Bytes) {
        const FieldBytes bytes = parseHexBytes(text());
        DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
        KLV::Value value(source, source.remaining());
        return give(Types::Unknown(value));
    }

    Result parse(As<Types::UTF16String>, Text) {
        return give(Types::UTF16String(XMLUtils::fromXml(text(Ends::counted))));
    }

    Result parse(As<Types::ISO7String>, Text) {
        return give(Types::ISO7String(
            Platform::wstringToString(Utf16Text(XMLUtils::fromXml(text(Ends::counted)))).c_str()));
    }

    /// The first code unit of the first word.
    Result parse(As<Types::UTF16>, CodeUnit) {
        return give(Types::UTF16(static_cast<u16>(*skipStreamSpace(text(Ends::counted)))));
    }

    template <class T> Result parse(As<T>, IdentifierText) { return identifier<T>(text()); }

    /// A clip's identifier may be written as the basic UMID that it extends: what is missing is
    /// zero (SMPTE ST 330).
    Result parse(As<Types::UMID64>, IdentifierText) {
        constexpr std::size_t basic = 3 * Types::UMID32::fixedSize - 1;
        std::u16string umid = text();
        if (umid.size() == basic && node_.local == std::u16string_view(u"ExtendedClipID")) {
            for (std::size_t i = 0; i != Types::UMID64::fixedSize - Types::UMID32::fixedSize; ++i) {
                umid += u".00";
            }
        }
        return identifier<Types::UMID64>(umid.c_str());
    }

    Result parse(As<Types::UUID>, AttributeIdentifier) { return identifier<Types::UUID>(text()); }

    template <class T> Result parse(As<T>, Compound) {
        using F = Fields<T>;
        Parts parts(reading_, F::names, node_);
        if constexpr (F::wrapper.name != nullptr) {
            enterWrapper<T>(parts);
        }
        const auto texts = textsOf<T>(parts, empty_);
        constexpr std::size_t count = std::tuple_size_v<decltype(F::list)>;
        return give(std::apply(F::make, contentsOf<T>(texts, std::make_index_sequence<count>())));
    }

    /// However many components stand there: the layout minds what has a place in it.
    Result parse(As<Types::RGBALayout>, Compound) {
        static constexpr const char16_t* component = u"types:RGBAComponent";
        Types::RGBALayout layout;
        const Parts components(reading_, Names::types, node_);
        Parts parts(reading_, Names::types, node_);
        u32 index = 0;
        for (const DocumentNode* found = components.first(component); found != nullptr;
             found = components.next(*found, component)) {
            parts.enter(*found);
            const auto code = static_cast<u8>(readNumber<u32>(parts.text(u"types:Code")));
            const auto depth = static_cast<u8>(readNumber<u32>(parts.text(u"types:Depth")));
            layout.set(index++, {code, depth});
        }
        return give(layout);
    }

    // These are written, but read only where more is known of the property than its element.
    Result parse(As<Types::DataValue>, Bytes) {
        if (isLeftOut()) {
            return {};
        }
        const FieldBytes bytes = parseHexBytes(text());
        return give(Types::DataValue(Types::ByteView{bytes.data(), bytes.size()}));
    }
    Result parse(As<Types::LocalTag>, IdentifierText) {
        return isLeftOut() ? Result() : identifier<Types::LocalTag>(text());
    }

    // These stand in XML, if at all, as something else than the text of a value.
    template <class T> Result parse(As<T>, ReferenceText) { return {}; }
    template <class T> Result parse(As<T>, Collection) { return {}; }

private:
    template <class T> static Result identifier(const char16_t* text) {
        return give(T(XMLUtils::fromXml(text), Types::dottedHexadecimal));
    }

    bool isLeftOut() const {
        return empty_ == EmptyParts::missing && reading_.strictness() == nullptr;
    }

    /// Whether white space at the ends of a text is a part of it, where documents are read
    /// strictly.
    enum class Ends : unsigned char { trimmed, counted };

    /// The attribute's value or the element's first child as text; strictly, all text in it.
    const char16_t* text(Ends ends = Ends::trimmed) {
        if (reading_.strictness() != nullptr) {
            text_ = contentOf(node_);
            if (ends == Ends::trimmed) {
                text_ = std::u16string(trimmed(text_));
            }
            return text_.c_str();
        }
        const DocumentNode& node = isAttribute(node_) ? node_ : *node_.firstChild;
        if (node.kind == DocumentNode::Kind::element) {
            text_ = textBelow(node);
            return text_.c_str();
        }
        return node.value;
    }

    Reading& reading_;
    const DocumentNode& node_;
    EmptyParts empty_;
    std::u16string text_; ///< where it is not that of one node
};

/// Whether an element carries no value. A character that is white space is none, as the library's
/// reader leaves it out.
bool isEmpty(const Reading& reading, Types::Identifiers::Identifier type,
             const DocumentNode& node) {
    if (isAttribute(node)) {
        return false;
    }
    const bool isBlankCharacter = reading.strictness() != nullptr &&
                                  type == Types::Identifiers::UTF16 &&
                                  trimmed(contentOf(node)).empty();
    return node.firstChild == nullptr || isBlankCharacter;
}

Result parse(Forms forms, Types::Identifiers::Identifier type) {
    switch (type) {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    case Id:                                                                                       \
        return forms.parse(As<Types::Class>{}, Forms::Form{});
#include "host/types/ValueTypes.def"
    }
    return {};
}

} // namespace

Result parseValue(Reading& reading, Types::Identifiers::Identifier type, const DocumentNode& node,
                  EmptyParts empty) {
    if (isEmpty(reading, type, node)) {
        return empty == EmptyParts::values ? Types::Factories::fromBytes(type, {}) : Result();
    }
    auto value = parse(Forms(reading, node, empty), type);
    constexpr std::size_t greatest = Types::ByteRun::greatestSize;
    if (value && value->byteCount() > greatest) {
        throw Exceptions::LimitExceeded(narrow(node.name) + ": value of " +
                                            std::to_string(value->byteCount()) +
                                            " bytes, expected at most " + std::to_string(greatest) +
                                            ", which is what a property can hold",
                                        CORVID_ELEMENT_VISITOR_HERE);
    }
    return value;
}

} // namespace Corvid::XMLBuilder
