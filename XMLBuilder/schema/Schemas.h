#pragma once

#include "host/base/Templates.h"

#include <string>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

namespace Corvid::MetaMetadata {
class Dictionary;
}

namespace Corvid::XMLBuilder {

/// One XML Schema document.
struct Schema {
    std::string fileName;     ///< by which the others import it: the prefix, and ".xsd"
    std::string namespaceUri; ///< what it describes
    Templates::auto_ptr<xercesc::DOMNode> document;
};

/// Describes the documents that partition2XML() makes with a dictionary, with references as links
/// and as values, in XML Schema 1.0: a schema for each namespace, in the order of their prefixes.
///
/// They say which sets and properties there are, in which order, and what a value may look like;
/// that every set has an InstanceUID. Not whether a reference leads to a set of the right class, or
/// to any.
/// @throws InvalidDictionary  two things that the documents hold have one name.
std::vector<Schema> makeSchemas(const MetaMetadata::Dictionary& dictionary);

} // namespace Corvid::XMLBuilder
