#include "host/xmlutils/scan/ParserTables.h"

#include "host/xmlutils/ElementLimits.h"
#include "host/xmlutils/LoadDocument.h"
#include "host/xmlutils/XmlText.h"
#include "host/xmlutils/scan/AttributeValue.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <xercesc/util/XMLString.hpp>

namespace Corvid::XMLUtils {

namespace {

using View = std::u16string_view;

/// So few attributes are compared with each other in no time, whatever their names.
constexpr std::size_t fewAttributes = 32;
/// From when on Xerces-C makes a second table of attributes.
constexpr std::size_t manyAttributes = 101;

std::string samePlace(const TableLoad& load) {
    return " have the same place in a hash table of Xerces-C, expected at most " +
           std::to_string(load.mostInABucket());
}

/// The library's comparison of such texts goes unit by unit.
bool isSame(View left, View right) {
    return left.size() == right.size() &&
           std::memcmp(left.data(), right.data(), left.size() * sizeof(char16_t)) == 0;
}

View localName(View name) {
    const std::size_t colon = name.find(u':');
    return colon == View::npos ? name : name.substr(colon + 1);
}

} // namespace

bool ParserTables::Texts::insert(View text) {
    const std::size_t place =
        text.empty() ? 0 : text.size() + 31U * text.back() + 17U * text[text.size() / 2];
    std::u16string& recent = recent_[place % recent_.size()];
    if (isSame(recent, text) && !text.empty()) {
        return false;
    }
    recent = text;
    return hashes_.insert(hash_(text)).second;
}

bool ParserTables::startTag(View name) {
    element_ = name;
    ofTag_.clear();
    return !elements_.texts.insert(name) || (count(elements_.load, name) && useInDocument(name));
}

bool ParserTables::attribute(View name) {
    if (ofTag_.size() == maximumOpenAttributes) {
        return refuse(ElementLimits::tooManyAttributes(ofTag_.size() + 1));
    }
    const View local = localName(name);
    ofTag_.push_back(xercesHash(local));
    if (attributeNames_.insert(name)) {
        const bool declaresPrefix = declaresNamespace(name) && local.size() != name.size();
        if (!useInDocument(name) || (declaresPrefix && !use(prefixes_, local))) {
            return false;
        }
    }
    if (ofTag_.size() == fewAttributes + 1) {
        attributes_.clear();
        return std::all_of(ofTag_.begin(), ofTag_.end(),
                           [&](std::uint64_t hash) { return countOfTag(attributes_, hash); });
    }
    return ofTag_.size() <= fewAttributes || countOfTag(attributes_, ofTag_.back());
}

bool ParserTables::namespaceUri(View uri) { return use(uris_, uri) && use(document_, uri); }

bool ParserTables::endOfTag() {
    if (ofTag_.size() < manyAttributes) {
        return true;
    }
    if (!attributesAgain_) {
        attributesAgain_.emplace(2 * ofTag_.size() + 1, growsLate);
    }
    attributesAgain_->clear();
    return std::all_of(ofTag_.begin(), ofTag_.end(),
                       [&](std::uint64_t hash) { return countOfTag(*attributesAgain_, hash); });
}

/// The document keeps a name as it is written, and each half of it. Where it takes the prefix from
/// the name, it finds the place with the colon.
bool ParserTables::useInDocument(View name) {
    const View local = localName(name);
    const View prefix = name.substr(0, name.size() - local.size());
    return use(document_, name) &&
           (prefix.empty() || (use(document_, local) && use(document_, prefix) &&
                               use(document_, prefix.substr(0, prefix.size() - 1))));
}

bool ParserTables::use(Table& table, View text) {
    return !table.texts.insert(text) || count(table.load, text);
}

bool ParserTables::count(TableLoad& load, View text) {
    const std::size_t found = load.add(xercesHash(text));
    return found == 0 || refuse(": " + std::to_string(found) + " different names and namespaces" +
                                samePlace(load));
}

bool ParserTables::countOfTag(TableLoad& load, std::uint64_t hash) {
    const std::size_t found = load.add(hash);
    return found == 0 ||
           refuse(": " + std::to_string(found) + " of its attributes" + samePlace(load));
}

/// What a table of Xerces-C divides by its number of buckets. Its function wants a terminated text.
std::uint64_t ParserTables::xercesHash(View text) {
    terminated_ = text;
    return xercesc::XMLString::hash(terminated_.c_str(), std::numeric_limits<XMLSize_t>::max());
}

bool ParserTables::refuse(const std::string& problem) {
    problem_ = "element " + Platform::toUtf8(fromXml(element_.c_str())) + problem;
    return false;
}

} // namespace Corvid::XMLUtils
