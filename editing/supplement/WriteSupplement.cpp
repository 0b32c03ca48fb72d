#include "editing/supplement/SupplementText.h"

#include "host/base/Hex.h"

namespace Corvid::Editing {

namespace {

/// One instruction: what it says, and of what.
class Writer {
public:
    explicit Writer(std::string_view kind)
        : text_(std::string(supplementTarget) + " " + std::string(kind)) {}

    Writer& with(std::string_view name, std::string_view value) {
        text_ += " ";
        text_.append(name).append("=\"").append(value).append("\"");
        return *this;
    }
    Writer& with(std::string_view name, Types::u32 value) {
        return with(name, std::to_string(value));
    }
    template <class Identifier>
    auto with(std::string_view name, const Identifier& value)
        -> decltype(value.toString(Types::dottedHexadecimal), *this) {
        return with(name, Platform::toUtf8(value.toString(Types::dottedHexadecimal)));
    }
    Writer& with(const KeyForm& form) {
        with("key", form.key);
        return form.propertyBerLength == 1 ? *this
                                           : with("lengths", Types::u32{form.propertyBerLength});
    }
    Writer& with(const SetAddress& set) {
        if (set.instanceUID) {
            with("set", *set.instanceUID);
        } else {
            with("class", set.setClass);
        }
        return set.copy ? with("copy", *set.copy) : *this;
    }
    Writer& with(const PropertyAddress& property) {
        with(property.set);
        if (property.label) {
            with("property", *property.label);
        } else {
            with("property", property.tag);
        }
        return property.nth == 0 ? *this : with("nth", property.nth);
    }

    std::string text() && { return std::move(text_); }

private:
    std::string text_;
};

} // namespace

std::vector<std::string> toInstructions(const DocumentSupplement& supplement) {
    std::vector<std::string> lines = {std::string(supplementTarget) + " format=\"" +
                                      std::string(supplementFormat) + "\""};
    const auto add = [&lines](Writer& line) { lines.push_back(std::move(line).text()); };
    if (supplement.partial) {
        Writer line("partial");
        if (supplement.partial->structuralOnly) {
            line.with("structural-only", "1");
        }
        if (supplement.partial->start) {
            line.with("start", *supplement.partial->start);
        }
        add(line);
    }
    for (const auto& [tag, label] : supplement.primer) {
        add(Writer("primer").with("tag", tag).with("label", label));
    }
    for (const auto& [setClass, form] : supplement.classKeys) {
        add(Writer("key").with("class", setClass).with(form));
    }
    for (const auto& [set, form] : supplement.setKeys) {
        add(Writer("key").with(set).with(form));
    }
    if (supplement.textsAreTerminated) {
        add(Writer("form").with("text", "terminated"));
    }
    for (const auto& [property, unit, size] : supplement.forms) {
        add(Writer("form").with(property).with(nameOf(unit), size));
    }
    for (const auto& [property, bytes] : supplement.bytes) {
        add(Writer("bytes").with(property).with(
            "hex", Hex::encoded<std::string>(bytes.data(), bytes.size(), Hex::upper)));
    }
    for (const auto& [set, known, dark] : supplement.copies) {
        Writer line = Writer("copies").with("set", set);
        if (known) {
            line = line.with("count", *known);
        }
        if (dark) {
            line = line.with("dark", *dark);
        }
        add(line);
    }
    for (const auto& [setClass, count] : supplement.unidentified) {
        add(Writer("unidentified").with("class", setClass).with("count", count));
    }
    return lines;
}

} // namespace Corvid::Editing
