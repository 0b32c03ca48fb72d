#pragma once

#include "XMLBuilder/reader/InstanceNameTable.h"
#include "XMLBuilder/reader/SetList.h"
#include "host/base/Text.h"

#include <cstddef>

namespace Corvid::Metadata {
class PartitionMetadata;
}

namespace Corvid::XMLBuilder {

class Supplement;

/// Whether the messages of failures name the set and the property that could not be read.
enum class Places : unsigned char {
    untold, ///< as callers of the exported functions know them
    told,   ///< in front of the message: "set Preface 06.0e. ...: rp210:Version: "
};

/// Reads a document into a partition. The functions of XML2Partition.h are these with a table of
/// their own; who needs to know which InstanceUID became which brings the table.
///
/// @param names  may hold entries already: references and sets that bear such a name in the
///               document get the identifier that the entry says.
/// @param supplement  what is known besides the elements; null for nothing. Borrowed.
/// @return the sets made for children of the root and of the container of dark sets, in document
///         order; not those inside references.
/// @throws InvalidArgument  there is no partition; ParseError, InvalidFormat, InvalidLength,
///         IOError and LimitExceeded as the document deserves. What was made before stays in the
///         partition.
SetList readBuffer(const unsigned char* bytes, std::size_t length,
                   Metadata::PartitionMetadata* partition, InstanceNameTable& names,
                   Places places = Places::untold, Supplement* supplement = nullptr);

/// The same for a file, whose white space between elements stays in the document.
/// @param path  zero-terminated.
SetList readFile(const Utf16Unit* path, Metadata::PartitionMetadata* partition,
                 InstanceNameTable& names);

} // namespace Corvid::XMLBuilder
