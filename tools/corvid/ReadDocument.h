#pragma once

#include "editing/DocumentMetadata.h"

namespace Corvid::Tool {

class Messages;

/// Reads a document strictly.
/// @throws EndedWith  it has mistakes, which have been reported; BaseException  as
///                    Editing::readDocument().
Editing::DocumentMetadata readStrictly(
    DataIO::DataSource& source, const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
    Editing::DocumentIdentifiers identifiers, Messages& messages);

} // namespace Corvid::Tool
