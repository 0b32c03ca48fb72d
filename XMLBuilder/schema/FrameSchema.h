#pragma once

#include "XMLBuilder/schema/SchemaSet.h"

namespace Corvid::MetaMetadata {
class Dictionary;
}

namespace Corvid::XMLBuilder {

/// Describes what surrounds sets and properties: the root, links, extension elements and dark
/// data.
void describeFrame(SchemaSet& schemas, const MetaMetadata::Dictionary& dictionary);

/// What the frame offers to the schemas of sets and properties.
namespace Frame {

inline constexpr const XMLCh* extensions = u"ExtensionElements"; ///< element
inline constexpr const XMLCh* link = u"Link";                    ///< type
inline constexpr const XMLCh* reference = u"Reference";          ///< type
inline constexpr const XMLCh* references = u"References";        ///< type

} // namespace Frame

} // namespace Corvid::XMLBuilder
