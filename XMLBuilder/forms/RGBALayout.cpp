#include "XMLBuilder/forms/Compound.h"

#include <algorithm>

namespace Corvid::XMLBuilder::ValueForms {

namespace {

constexpr const char16_t* component = u"types:RGBAComponent";
constexpr const char16_t* code = u"types:Code";
constexpr const char16_t* depth = u"types:Depth";
constexpr std::array<const char16_t*, 2> partNames = {code, depth};

void writePart(DocumentSink& to, const char16_t* name, int number) {
    to.startElement({Names::types.uri, name});
    writeNumber(to, number);
    to.endElement();
}

bool checkComponent(ValueCheck& of, const DocumentNode& node) {
    std::array<bool, partNames.size()> isThere{};
    bool isRight = true;
    refuseText(node, of.mistakes());
    checkAttributes(node, nullptr, {}, of.mistakes());
    for (const auto* child = firstElement(node); child != nullptr; child = nextElement(*child)) {
        const auto* const part =
            std::find_if(partNames.begin(), partNames.end(), [&](const char16_t* name) {
                return hasName(*child, Names::localPart(name), Names::types.uri);
            });
        const auto place = static_cast<std::size_t>(part - partNames.begin());
        if (part == partNames.end() || isThere[place]) {
            of.mistakes().add(*child, "expected types:Code and types:Depth, once each");
            isRight = false;
        } else {
            isThere[place] = true;
            checkAttributes(*child, nullptr, {}, of.mistakes());
            isRight = of.number(*child, IntegerRange::of<Types::u8>()) && isRight;
        }
    }
    for (std::size_t place = 0; place != partNames.size(); ++place) {
        if (!isThere[place]) {
            of.mistakes().add(node, "expected the part " + narrow(partNames[place]));
            isRight = false;
        }
    }
    return isRight;
}

} // namespace

void Compound::write(DocumentSink& to, const Types::RGBALayout& value) {
    for (Types::u32 i = 0; i != Types::RGBALayout::placesInXml; ++i) {
        const auto each = value.get(i);
        to.startElement({Names::types.uri, component});
        writePart(to, code, each.code);
        writePart(to, depth, each.depth);
        to.endElement();
    }
}

ParsedValue Compound::parse(ValueInput& from, As<Types::RGBALayout>) {
    Types::RGBALayout layout;
    const Parts components(from, Names::types);
    Parts parts(from, Names::types);
    Types::u32 index = 0;
    for (const DocumentNode* found = components.first(component); found != nullptr;
         found = components.next(*found, component)) {
        parts.enter(*found);
        const auto read = [&parts](const char16_t* name) {
            return static_cast<Types::u8>(readNumber<Types::u32>(parts.text(name)));
        };
        layout.set(index++, {read(code), read(depth)});
    }
    return give(layout);
}

bool Compound::check(ValueCheck& of, As<Types::RGBALayout>) {
    bool isRight = true;
    std::size_t components = 0;
    refuseText(of.node(), of.mistakes());
    for (const auto* child = firstElement(of.node()); child != nullptr;
         child = nextElement(*child)) {
        if (!hasName(*child, Names::localPart(component), Names::types.uri)) {
            of.mistakes().add(*child, "expected types:RGBAComponent");
            isRight = false;
        } else {
            ++components;
            isRight = checkComponent(of, *child) && isRight;
        }
    }
    if (components != Types::RGBALayout::placesInXml) {
        of.mistakes().add(of.node(), "has " + std::to_string(components) +
                                         " components, expected " +
                                         std::to_string(Types::RGBALayout::placesInXml));
        isRight = false;
    }
    return isRight;
}

CompoundType Compound::describe(As<Types::RGBALayout>) {
    CompoundType type{Names::types, component, Types::RGBALayout::placesInXml, {}};
    for (const char16_t* const name : partNames) {
        type.parts.push_back({Names::localPart(name), nameOfNumber<Types::u8>()});
    }
    return type;
}

} // namespace Corvid::XMLBuilder::ValueForms
