#include "host/base/Shortened.h"
#include "host/dictionary/Cells.h"
#include "host/dictionary/Collector.h"
#include "host/dictionary/DictionaryLimits.h"
#include "host/dictionary/RowReader.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

namespace Corvid::MetaMetadata {

namespace {

struct Reserved {
    std::string_view prefix;
    std::string_view uri;
};

/// Names that XML or the documents use for purposes of their own.
constexpr Reserved reserved[] = {
    {"xml", "http://www.w3.org/XML/1998/namespace"},
    {"xmlns", "http://www.w3.org/2000/xmlns/"},
    {"groups", "urn:SMPTE:Groups:MXF"},
    {"types", "urn:SMPTE:Types:MXF"},
    {"s422mTypes", "urn:SMPTE:S422MTypes:MXF"},
};

/// The first bytes of a key of local sets with tags and lengths of two bytes (SMPTE ST 336).
constexpr unsigned char localSetKey[] = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53};

/// Properties that documents hold as attributes of their set, under exactly these names.
constexpr std::string_view identifiers[] = {"InstanceUID", "GenerationUID"};
constexpr std::string_view identifierPrefix = "rp210";

/// What the element writer appends to the name of a set that is referred to.
constexpr std::string_view referenceSuffix = "_REF";

/// A column may be as long as the text.
constexpr std::size_t longestQuotation = 100;

std::string quoted(std::string_view text) {
    return "\"" + shortened(text, longestQuotation) + "\"";
}

} // namespace

/// The row that is read, and the set that it belongs to.
struct Collector::Place {
    RowReader& reader;
    std::set<std::string_view> declared{}; // prefixes
    bool inExtension = false;
    bool inSet = false;

    std::string_view column(std::size_t index) const { return reader.columns()[index]; }
    Origin origin() const { return reader.origin(); }
    [[noreturn]] void refuse(const std::string& reason) const {
        MetaMetadata::refuse(origin(), reason);
    }

    /// The value of a column, or an error that says what it must be.
    template <class T> T expect(std::optional<T> value, std::size_t index, const char* form) const {
        if (!value) {
            refuse(quoted(column(index)) + " is not " + form);
        }
        return *value;
    }

    void limitLength(std::string_view text, const char* what, std::size_t most) const {
        if (text.size() > most) {
            refuse(std::string(what) + " " + quoted(text) + " has " + std::to_string(text.size()) +
                   " characters, expected at most " + std::to_string(most));
        }
    }

    /// Checks a column of the form prefix:name. Returns prefix and name.
    std::pair<std::string_view, std::string_view> name(std::size_t index) const {
        const std::string_view text = column(index);
        const std::size_t colon = text.find(':');
        const std::string_view prefix = text.substr(0, colon);
        const std::string_view local =
            colon == std::string_view::npos ? std::string_view() : text.substr(colon + 1);
        if (!Cells::isName(prefix) || !Cells::isName(local)) {
            refuse(quoted(text) + " is not a prefix and a name of ASCII letters, digits and ._-, "
                                  "joined by a colon");
        }
        limitLength(prefix, "prefix", longestName);
        limitLength(local, "name", longestName);
        if (local.find(referenceSuffix) != std::string_view::npos) {
            refuse(quoted(text) + " holds _REF, which marks references");
        }
        if (declared.count(prefix) == 0) {
            refuse("prefix " + quoted(prefix) + " has no namespace row above");
        }
        return {prefix, local};
    }
};

void Collector::add(const DictionaryText& text) {
    struct Kind {
        std::string_view name;
        std::size_t columns;
        void (Collector::*read)(Place&);
    };
    constexpr Kind kinds[] = {
        {"namespace", 3, &Collector::readNamespace},
        {"set", 5, &Collector::readSet},
        {"extend", 2, &Collector::readExtend},
        {"property", 7, &Collector::readProperty},
        {"use", 3, &Collector::readUse},
    };
    RowReader reader(text);
    Place place{reader};
    while (reader.next()) {
        const auto kind =
            std::find_if(std::begin(kinds), std::end(kinds), [&reader](const Kind& known) {
                return known.name == reader.columns()[0];
            });
        if (kind == std::end(kinds)) {
            place.refuse(quoted(reader.columns()[0]) + " is no kind of row");
        }
        if (reader.columns().size() != kind->columns) {
            place.refuse("a " + std::string(kind->name) + " row has " +
                         std::to_string(kind->columns) + " columns, found " +
                         std::to_string(reader.columns().size()));
        }
        (this->*kind->read)(place);
    }
}

void Collector::readNamespace(Place& place) {
    const std::string_view prefix = place.column(1);
    const std::string_view uri = place.column(2);
    if (!Cells::isName(prefix)) {
        place.refuse(quoted(prefix) + " is not a name of ASCII letters, digits and ._-");
    }
    if (!Cells::isUri(uri)) {
        place.refuse(quoted(uri) + " is not a URI");
    }
    place.limitLength(prefix, "prefix", longestName);
    place.limitLength(uri, "URI", longestUri);
    for (const Reserved& taken : reserved) {
        if (prefix == taken.prefix || uri == taken.uri) {
            place.refuse("prefix " + std::string(taken.prefix) + " and " + std::string(taken.uri) +
                         " are reserved");
        }
    }
    addNamespace({std::string(prefix), std::string(uri), place.origin()});
    place.declared.insert(prefix);
}

void Collector::readSet(Place& place) {
    const auto [prefix, tag] = place.name(1);
    SetEntry entry;
    entry.origin = place.origin();
    entry.space = prefixes_.at(std::string(prefix));
    entry.tagName = tag;
    entry.key = place.expect(Cells::label(place.column(2)), 2, "16 bytes in hexadecimal");
    if (!std::equal(std::begin(localSetKey), std::end(localSetKey), entry.key.begin())) {
        place.refuse(quoted(place.column(2)) +
                     " is not the key of a local set with tags and lengths "
                     "of two bytes (06.0e.2b.34.02.53...)");
    }
    if (place.column(3) != "-") {
        place.name(3);
        entry.parentName = place.column(3);
    }
    entry.concrete = place.column(4) == "concrete";
    if (!entry.concrete && place.column(4) != "abstract") {
        place.refuse(quoted(place.column(4)) + " is neither concrete nor abstract");
    }
    addSet(std::move(entry));
    place.inSet = true;
    place.inExtension = false;
}

void Collector::readExtend(Place& place) {
    place.name(1);
    extensions_.push_back({std::string(place.column(1)), {}, place.origin()});
    place.inSet = true;
    place.inExtension = true;
}

void Collector::readProperty(Place& place) {
    const auto [prefix, tag] = place.name(1);
    ElementEntry entry;
    entry.origin = place.origin();
    entry.space = prefixes_.at(std::string(prefix));
    entry.tagName = tag;
    entry.label = place.expect(Cells::label(place.column(2)), 2, "16 bytes in hexadecimal");
    if (place.column(3) != "-") {
        entry.staticTag = place.expect(Cells::staticTag(place.column(3)), 3,
                                       "a static local tag (00.01 to 7f.ff) or -");
    }
    const auto type = place.expect(Cells::valueType(place.column(4)), 4, "a value type");
    entry.type = type.type;
    entry.itemType = type.itemType;
    if (std::find(std::begin(identifiers), std::end(identifiers), tag) != std::end(identifiers)) {
        if (prefix != identifierPrefix) {
            place.refuse("property " + std::string(place.column(1)) + ": the name " +
                         std::string(tag) + " belongs to " + std::string(identifierPrefix) + ":" +
                         std::string(tag) + ", an attribute in documents");
        }
        if (type.type != Types::Identifiers::UUID) {
            place.refuse("property " + std::string(place.column(1)) + " has the type " +
                         std::string(place.column(4)) + ", expected UUID");
        }
    }
    if (place.column(6) != "-") {
        entry.schemaIndex = place.expect(Cells::number(place.column(6)), 6, "a number or -");
    }
    addUse(place, 5);
    addElement(std::move(entry));
}

void Collector::readUse(Place& place) {
    place.name(1);
    addUse(place, 2);
}

void Collector::addUse(Place& place, std::size_t statusColumn) {
    if (!place.inSet) {
        place.refuse("no set or extend row comes before it");
    }
    UseEntry use;
    use.name = place.column(1);
    use.status = place.expect(Cells::status(place.column(statusColumn)), statusColumn, "a status");
    use.origin = place.origin();
    auto& uses = place.inExtension ? extensions_.back().uses : definitions_.sets.back().uses;
    uses.push_back(std::move(use));
}

} // namespace Corvid::MetaMetadata
