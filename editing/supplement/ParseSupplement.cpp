#include "editing/supplement/SupplementText.h"

#include "host/base/Exceptions.h"
#include "host/base/Hex.h"
#include "host/klv/BerInput.h"

#include <algorithm>
#include <charconv>
#include <set>

namespace Corvid::Editing {

namespace {

using Form = DocumentSupplement::Form;

bool isSpace(char each) { return each == ' ' || each == '\t' || each == '\n' || each == '\r'; }

bool isNameCharacter(char each) {
    return (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z') ||
           (each >= '0' && each <= '9') || each == '-' || each == '_' || each == '.';
}

/// Takes one instruction apart: its kind, then name="value" pairs.
class Reader {
public:
    explicit Reader(const Instruction& instruction)
        : instruction_(instruction), rest_(instruction.data) {
        skipSpace();
        const std::string_view first = takeName();
        // The format itself is said as <?corvid format="1"?>.
        if (!rest_.empty() && rest_.front() == '=') {
            kind_ = first;
            rest_ = instruction.data;
        } else {
            kind_ = first;
        }
        if (kind_.empty()) {
            refuse("no kind, expected for example primer or bytes");
        }
        while (skipSpace(), !rest_.empty()) {
            takeAttribute();
        }
    }

    std::string_view kind() const { return kind_; }

    [[noreturn]] void refuse(const std::string& what) const {
        throw Exceptions::InvalidFormat("line " + std::to_string(instruction_.line) +
                                            ": processing instruction corvid " +
                                            std::string(kind_) + ": " + what,
                                        CORVID_HERE);
    }

    bool has(std::string_view name) const {
        return std::any_of(attributes_.begin(), attributes_.end(),
                           [&](const Attribute& each) { return each.name == name; });
    }

    /// The value of an attribute, which must be there.
    std::string_view take(std::string_view name) {
        for (Attribute& each : attributes_) {
            if (each.name == name) {
                each.isTaken = true;
                return each.value;
            }
        }
        refuse("no " + std::string(name) + ", expected one");
    }

    template <class Identifier> Identifier identifier(std::string_view name) {
        const Utf16Text text = Platform::widen(take(name));
        try {
            return Identifier(text.c_str(), Types::dottedHexadecimal);
        } catch (const Exceptions::InvalidFormat& error) {
            refuse(std::string(name) + ": " + Platform::toUtf8(error.message()));
        }
    }

    Types::u32 number(std::string_view name) {
        const std::string_view text = take(name);
        Types::u32 value = 0;
        const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || stop != text.data() + text.size() || text.empty()) {
            refuse(std::string(name) + ": '" + std::string(text) + "', expected a number");
        }
        return value;
    }

    std::string bytes(std::string_view name) {
        const std::string_view text = take(name);
        std::string value(text.size() / 2, '\0');
        if (text.size() % 2 != 0 || !Hex::decode(text.data(), value.data(), value.size())) {
            refuse(std::string(name) + ": expected pairs of hexadecimal digits");
        }
        return value;
    }

    SetAddress set() {
        SetAddress address;
        if (has("class")) {
            address.setClass = identifier<KLV::Key>("class");
        } else {
            address.instanceUID = identifier<Types::UUID>("set");
        }
        if (has("copy")) {
            address.copy = number("copy");
        }
        return address;
    }

    PropertyAddress property() {
        PropertyAddress address;
        address.set = set();
        constexpr std::size_t tagText = 5;
        if (take("property").size() == tagText) {
            address.tag = identifier<Types::LocalTag>("property");
        } else {
            address.label = identifier<Types::UniversalLabel>("property");
        }
        address.nth = has("nth") ? number("nth") : 0;
        return address;
    }

    /// To be called when all is read.
    void expectNoMore() const {
        for (const Attribute& each : attributes_) {
            if (!each.isTaken) {
                refuse("unknown attribute " + std::string(each.name));
            }
        }
    }

private:
    struct Attribute {
        std::string_view name;
        std::string_view value;
        bool isTaken = false;
    };

    void skipSpace() {
        while (!rest_.empty() && isSpace(rest_.front())) {
            rest_.remove_prefix(1);
        }
    }
    std::string_view takeName() {
        const auto end = std::find_if_not(rest_.begin(), rest_.end(), isNameCharacter);
        const auto name = rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
        rest_.remove_prefix(name.size());
        return name;
    }
    void takeAttribute() {
        const std::string_view name = takeName();
        if (name.empty() || rest_.size() < 2 || rest_[0] != '=' ||
            (rest_[1] != '"' && rest_[1] != '\'')) {
            refuse("expected attributes as name=\"value\"");
        }
        const auto end = rest_.find(rest_[1], 2);
        if (end == std::string_view::npos) {
            refuse(std::string(name) + ": no closing quotation mark");
        }
        constexpr std::size_t most = 8;
        if (has(name)) {
            refuse("attribute " + std::string(name) + " a second time");
        }
        if (attributes_.size() == most) {
            refuse("more than " + std::to_string(most) + " attributes");
        }
        attributes_.push_back({name, rest_.substr(2, end - 2)});
        rest_.remove_prefix(end + 1);
        if (!rest_.empty() && !isSpace(rest_.front())) {
            refuse("expected white space after the attribute " + std::string(name));
        }
    }

    const Instruction& instruction_;
    std::string_view rest_;
    std::string_view kind_;
    std::vector<Attribute> attributes_;
};

/// Gathers what the instructions say, each thing once.
class Gatherer {
public:
    void add(Reader& line) {
        for (const auto& [kind, read] : kinds()) {
            if (kind == line.kind()) {
                (this->*read)(line);
                line.expectNoMore();
                return;
            }
        }
        line.refuse("unknown; a newer version of corvid may know it");
    }

    DocumentSupplement supplement;

private:
    using Read = void (Gatherer::*)(Reader&);

    static const std::vector<std::pair<std::string_view, Read>>& kinds() {
        static const std::vector<std::pair<std::string_view, Read>> all = {
            {"format", &Gatherer::readFormat},   {"primer", &Gatherer::readPrimer},
            {"key", &Gatherer::readKey},         {"form", &Gatherer::readForm},
            {"bytes", &Gatherer::readBytes},     {"copies", &Gatherer::readCopies},
            {"partial", &Gatherer::readPartial}, {"unidentified", &Gatherer::readUnidentified},
        };
        return all;
    }

    /// @param subject  what the instruction is about.
    void sayOnce(const Reader& line, const std::string& subject) {
        if (!said_.insert(subject).second) {
            line.refuse("another instruction says this already, or says it otherwise");
        }
    }
    static std::string subjectOf(const SetAddress& set) {
        const auto& bytes = set.instanceUID ? set.instanceUID->bytes() : set.setClass.forMatching();
        return (set.instanceUID ? "u" : "c") + std::string(bytes.begin(), bytes.end()) +
               (set.copy ? std::to_string(*set.copy) : "");
    }
    static std::string subjectOf(const PropertyAddress& property) {
        const auto identity = property.identity();
        return "value" + subjectOf(property.set) + "/" +
               std::string(identity.begin(), identity.end()) + std::to_string(property.nth);
    }

    void readFormat(Reader& line) {
        sayOnce(line, "format");
        if (const auto version = line.take("format"); version != supplementFormat) {
            line.refuse("format " + std::string(version) + ", expected " +
                        std::string(supplementFormat) +
                        ", which is what this version of corvid knows");
        }
    }
    void readPrimer(Reader& line) {
        const auto tag = line.identifier<Types::LocalTag>("tag");
        sayOnce(line, "primer" + std::to_string(tag.value()));
        supplement.primer.push_back({tag, line.identifier<Types::UniversalLabel>("label")});
    }
    void readKey(Reader& line) {
        KeyForm form{line.identifier<KLV::Key>("key")};
        if (line.has("lengths")) {
            const Types::u32 octets = line.number("lengths");
            if (octets == 0 || octets > KLV::BerLength::greatestOctets) {
                line.refuse("lengths: expected a number from 1 to " +
                            std::to_string(KLV::BerLength::greatestOctets));
            }
            form.propertyBerLength = static_cast<unsigned char>(octets);
        }
        if (line.has("set") || line.has("copy")) {
            const SetAddress set = line.set();
            sayOnce(line, "key" + subjectOf(set));
            supplement.setKeys.push_back({set, form});
            return;
        }
        const auto setClass = line.identifier<KLV::Key>("class");
        if (!KLV::matches(form.key, setClass)) {
            line.refuse("key " + Platform::toUtf8(form.key.toString()) +
                        ", expected that of the class in another version or coding");
        }
        sayOnce(line, "class" + subjectOf(SetAddress{{}, setClass, {}}));
        supplement.classKeys.push_back({setClass, form});
    }
    void readForm(Reader& line) {
        if (line.has("text")) {
            sayOnce(line, "text");
            if (line.take("text") != "terminated") {
                line.refuse("text: expected terminated");
            }
            supplement.textsAreTerminated = true;
            return;
        }
        const PropertyAddress property = line.property();
        sayOnce(line, subjectOf(property));
        const auto unit = line.has("item") ? Form::Unit::item : Form::Unit::octets;
        const Types::u32 size = line.number(nameOf(unit));
        if (constexpr Types::u32 greatest = 0xFFFF; size > greatest) {
            line.refuse(std::to_string(size) + " bytes, expected at most " +
                        std::to_string(greatest) + ", which is what a property can hold");
        }
        supplement.forms.push_back({property, unit, size});
    }
    void readBytes(Reader& line) {
        const PropertyAddress property = line.property();
        sayOnce(line, subjectOf(property));
        supplement.bytes.push_back({property, line.bytes("hex")});
    }
    void readCopies(Reader& line) {
        const auto set = line.identifier<Types::UUID>("set");
        sayOnce(line, "copies" + subjectOf(SetAddress{set, {}, {}}));
        const auto number = [&line](const char* name) {
            return line.has(name) ? std::optional(line.number(name)) : std::nullopt;
        };
        const auto dark = number("dark");
        const auto known = dark ? number("count") : line.number("count");
        supplement.copies.push_back({set, known, dark});
    }
    void readUnidentified(Reader& line) {
        const auto setClass = line.identifier<KLV::Key>("class");
        sayOnce(line, "unidentified" + subjectOf(SetAddress{{}, setClass, {}}));
        supplement.unidentified.push_back({setClass, line.number("count")});
    }
    void readPartial(Reader& line) {
        sayOnce(line, "partial");
        const bool structuralOnly =
            line.has("structural-only") && line.number("structural-only") != 0;
        supplement.partial = {structuralOnly, {}};
        if (line.has("start")) {
            supplement.partial->start = line.identifier<Types::UUID>("start");
        }
    }

    std::set<std::string> said_;
};

} // namespace

DocumentSupplement parseSupplement(const std::vector<Instruction>& instructions) {
    Gatherer gatherer;
    bool& isThere = gatherer.supplement.isThere;
    for (const Instruction& instruction : instructions) {
        if (instruction.target != supplementTarget) {
            continue;
        }
        Reader line(instruction);
        if (!isThere && line.kind() != "format") {
            line.refuse("expected after <?corvid format=\"" + std::string(supplementFormat) +
                        "\"?>");
        }
        isThere = true;
        gatherer.add(line);
    }
    return std::move(gatherer.supplement);
}

} // namespace Corvid::Editing
