#pragma once

namespace Corvid::XMLUtils {

/// How many elements may be inside each other in a document that is loaded.
inline constexpr unsigned int maximumElementDepth = 4096;

/// How many attributes, namespace declarations included, an element and those around it may have
/// together. Every name in a document is looked up among them, one after the other, so their number
/// decides what an element may cost.
inline constexpr unsigned int maximumOpenAttributes = 1024;

/// How many different names of elements and attributes a document may have. Xerces-C keeps them in
/// a table of fixed width. How many of them may share a bucket there, and in its other tables, is
/// limited, too (TableLoad::mostInABucket).
inline constexpr unsigned int maximumNames = 16384;

} // namespace Corvid::XMLUtils
