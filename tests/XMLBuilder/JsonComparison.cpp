#include "tests/XMLBuilder/JsonComparison.h"

#include "host/xmlutils/XmlText.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <vector>

namespace Corvid::Testing {

namespace {

using Json = nlohmann::ordered_json;
using xercesc::DOMElement;

std::string utf8(const XMLCh* text) {
    return text == nullptr ? "" : Platform::toUtf8(XMLUtils::fromXml(text));
}

std::string nameOf(const DOMElement& element) { return utf8(element.getLocalName()); }

/// The text of an element as hexadecimal code units, so that lone surrogates can be compared.
std::string unitsOf(const Utf16Text& text) {
    std::string units;
    for (const Utf16Unit unit : text) {
        char digits[8];
        std::snprintf(digits, sizeof digits, "%04X", unsigned{unit});
        units += digits;
    }
    return units;
}

std::vector<const DOMElement*> childrenOf(const DOMElement& element) {
    std::vector<const DOMElement*> children;
    for (const DOMElement* child = element.getFirstElementChild(); child != nullptr;
         child = child->getNextElementSibling()) {
        children.push_back(child);
    }
    return children;
}

std::string attributeOf(const DOMElement& element, const std::string& local) {
    const auto* const attributes = element.getAttributes();
    for (XMLSize_t i = 0; i != attributes->getLength(); ++i) {
        if (utf8(attributes->item(i)->getLocalName()) == local) {
            return utf8(attributes->item(i)->getNodeValue());
        }
    }
    return "";
}

std::string textOf(const Json& json) { return json.is_null() ? "" : json.get<std::string>(); }

/// A member's name as that of the part of a value in documents.
std::string partName(const DOMElement& part) {
    std::string name = nameOf(part);
    name[0] = static_cast<char>(name[0] >= 'A' && name[0] <= 'Z' ? name[0] + 32 : name[0]);
    return name;
}

std::string plain(const std::string& key) {
    const auto colon = key.find(':');
    return colon == std::string::npos ? key : key.substr(colon + 1);
}

class Comparison {
public:
    explicit Comparison(bool values) : values_(values) {}

    void documents(const DOMElement& root, const Json& json) {
        auto sets = childrenOf(root);
        const DOMElement* container = nullptr;
        if (!sets.empty() && nameOf(*sets.back()) == "FloatingDarkMetadata") {
            container = sets.back();
            sets.pop_back();
        }
        lists(sets, json.at("sets"), "sets");
        lists(container == nullptr ? decltype(sets)() : childrenOf(*container), json.at("floating"),
              "floating");
    }

private:
    [[noreturn]] void fail(const std::string& what) const {
        throw std::runtime_error(path_ + what);
    }

    void require(bool holds, const std::string& what) const {
        if (!holds) {
            fail(what);
        }
    }
    void same(const std::string& json, const std::string& xml) const {
        require(json == xml, ": '" + json + "' in JSON, '" + xml + "' in XML");
    }

    /// Does something a step further.
    template <class Body> void at(const std::string& step, Body body) {
        const std::string before = path_;
        path_ += "/" + step;
        body();
        path_ = before;
    }

    void lists(const std::vector<const DOMElement*>& elements, const Json& json,
               const std::string& step) {
        at(step, [&] {
            require(elements.size() == json.size(), ": other numbers of sets");
            for (std::size_t i = 0; i != elements.size(); ++i) {
                at(std::to_string(i), [&] { set(*elements[i], json[i]); });
            }
        });
    }

    void set(const DOMElement& element, const Json& json) {
        if (nameOf(element) == "DarkMetadata") {
            require(json.at("class").is_null(), ": has a class");
            same(json.at("key"), attributeOf(element, "Key"));
            same(json.at("berLength").dump(), attributeOf(element, "BEROctetCount"));
            return same(json.at("hex"), utf8(element.getTextContent()));
        }
        same(textOf(json.at("class")), nameOf(element));
        same(textOf(json.at("id")), attributeOf(element, "InstanceUID"));
        auto children = childrenOf(element);
        std::vector<const DOMElement*> extensions;
        for (auto child = children.begin(); child != children.end(); ++child) {
            if (nameOf(**child) == "ExtensionElements") {
                extensions = childrenOf(**child);
                children.erase(child);
                break;
            }
        }
        std::size_t next = 0;
        for (const auto& [key, value] : json.at("properties").items()) {
            at(key, [&, &property = value, &symbol = key] {
                if (symbol == "GenerationUID") {
                    return same(property, attributeOf(element, symbol));
                }
                this->property(plain(symbol), property, children, next);
            });
        }
        require(next == children.size(), ": more properties in XML");
        next = 0;
        if (json.contains("other")) {
            for (const Json& other : json["other"]) {
                at("other", [&] { this->other(other, extensions, next); });
            }
        }
        require(next == extensions.size(), ": more other properties in XML");
    }

    /// A list without items may be missing in a document.
    void property(const std::string& name, const Json& json,
                  const std::vector<const DOMElement*>& children, std::size_t& next) {
        const bool isThere = next != children.size() && nameOf(*children[next]) == name;
        if (!isThere && (json.is_array() ? json.empty() : isLeftOut(json))) {
            return;
        }
        require(isThere, ": is not next in XML");
        property(json, *children[next++]);
    }

    void property(const Json& json, const DOMElement& element) {
        const auto children = childrenOf(element);
        const bool isReference =
            json.is_object() && (json.contains("ref") || json.contains("properties"));
        if (isReference || json.is_array()) {
            items(isReference ? Json::array({json}) : json, children);
        } else {
            value(json, element);
        }
    }

    void other(const Json& json, const std::vector<const DOMElement*>& children,
               std::size_t& next) {
        const bool isTyped = json.at("why") == "misplaced" || json.at("why") == "repeated";
        if (isTyped) {
            return property(textOf(json.at("property")), json.at("value"), children, next);
        }
        require(next != children.size(), ": is not in XML");
        const DOMElement& element = *children[next++];
        same(nameOf(element), "DarkElement");
        if (json.contains("hex")) {
            same(json["hex"], utf8(element.getTextContent()));
        } else {
            property(json.at("value"), element);
        }
        const std::string label = attributeOf(element, "UniversalLabel");
        if (!label.empty()) {
            same(textOf(json.at("label")), label);
        } else {
            same(textOf(json.at("tag")), attributeOf(element, "StaticLocalTag"));
        }
    }

    /// Where sets are inside each other, a document leaves out references to a set that is
    /// elsewhere.
    bool isLeftOut(const Json& json) const {
        return values_ && json.is_object() && json.contains("ref");
    }

    void items(const Json& json, const std::vector<const DOMElement*>& elements) {
        std::size_t next = 0;
        std::size_t number = 0;
        for (const Json& item : json) {
            at(std::to_string(number++), [&] {
                const DOMElement* const element =
                    next == elements.size() ? nullptr : elements[next];
                if (item.is_object() && item.contains("ref")) {
                    const bool isLink = element != nullptr &&
                                        attributeOf(*element, "TargetInstance") == item["ref"];
                    require(isLink || values_, ": is no link in XML");
                    if (isLink) {
                        link(item, *element);
                    }
                    next += isLink ? 1 : 0;
                    return;
                }
                require(element != nullptr, ": is not in XML");
                ++next;
                if (item.is_object() && item.contains("properties")) {
                    set(*element, item);
                } else {
                    value(item, *element);
                }
            });
        }
        for (; next != elements.size() && isZeroComponent(*elements[next]); ++next) {
        }
        require(next == elements.size(), ": more items in XML");
    }

    void link(const Json& json, const DOMElement& element) {
        const std::string name = nameOf(element);
        if (json.contains("ambiguous") && !json["class"].is_null() && !values_) {
            return same("MULTIPLE_METADATASETS_REF", name);
        }
        const std::string suffix = "_REF";
        const std::string target = name.substr(0, name.size() - suffix.size());
        same(textOf(json.at("class")), target == "Dangling" ? "" : target);
    }

    /// Of a pixel layout, which has five in documents.
    static bool isZeroComponent(const DOMElement& element) {
        return nameOf(element) == "RGBAComponent" && utf8(element.getTextContent()) == "00";
    }

    void value(const Json& json, const DOMElement& element) {
        auto parts = childrenOf(element);
        if (json.is_array()) {
            return items(json, parts);
        }
        if (json.is_string() && !parts.empty()) {
            return time(json, parts);
        }
        if (parts.empty() && json.is_object()) {
            return shortObject(json, element);
        }
        if (json.is_object()) {
            if (parts.size() == 1 && parts[0]->getFirstElementChild() != nullptr) {
                parts = childrenOf(*parts[0]); // some have an element around them
            }
            require(parts.size() == json.size(), ": other numbers of parts");
            std::size_t next = 0;
            for (const auto& [key, part] : json.items()) {
                same(key, partName(*parts[next]));
                value(part, *parts[next++]);
            }
        } else if (json.is_boolean()) {
            same(json.get<bool>() ? "1" : "0", utf8(element.getTextContent()));
        } else if (json.is_number()) {
            same(json.dump(), utf8(element.getTextContent()));
        } else {
            same(unitsOf(Platform::fromUtf8(json.get<std::string>())), unitsIn(element));
        }
    }

    void shortObject(const Json& json, const DOMElement& element) {
        const std::string text = utf8(element.getTextContent());
        if (json.contains("utf16")) {
            same(json["utf16"], unitsIn(element));
        } else if (json.contains("major")) {
            same(std::to_string(256 * json["major"].get<int>() + json["minor"].get<int>()), text);
        } else if (json.contains("value")) {
            same(json["value"].dump(), text);
        } else {
            same(json.contains("label") ? json["label"] : json.at("hex"), text);
        }
    }

    void time(const std::string& json, const std::vector<const DOMElement*>& parts) {
        std::vector<int> numbers;
        for (const DOMElement* const part : parts) {
            numbers.push_back(std::stoi(utf8(part->getTextContent())));
        }
        require(numbers.size() == 7, ": is no time in XML");
        char text[96];
        std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%03d", numbers[0],
                      numbers[1], numbers[2], numbers[3], numbers[4], numbers[5], 4 * numbers[6]);
        same(json, text);
    }

    static std::string unitsIn(const DOMElement& element) {
        return Testing::unitsOf(Utf16Text(XMLUtils::fromXml(element.getTextContent())));
    }

    bool values_;
    std::string path_;
};

} // namespace

std::string differenceOf(const xercesc::DOMNode& document, const std::string& json, bool values) {
    try {
        const auto& root = *static_cast<const xercesc::DOMDocument&>(document).getDocumentElement();
        Comparison(values).documents(root, Json::parse(json));
        return "";
    } catch (const std::exception& difference) {
        return difference.what();
    }
}

} // namespace Corvid::Testing
