#pragma once

#include "editing/change/Changes.h"
#include "editing/change/Modification.h"
#include "host/dictionary/Dictionary.h"
#include "host/mxf/rewrite/HeaderLayout.h"

namespace Corvid::Editing {

/// Adds to changes what an application owes a file that it modifies (SMPTE ST 377-1): an
/// Identification of its own, the Preface's LastModifiedDate, the modification dates of packages
/// in which something changes, and in each set that changes, and the Preface, the GenerationUID
/// that the Identification has. Nothing where there are no changes. A property that is changed
/// already stays as it is.
/// @param before  the metadata that the changes begin with.
/// @param after   the metadata that they lead to.
void addHistory(Changes& changes, const mxf::HeaderLayout& before, const mxf::HeaderLayout& after,
                const Modification& modification, const MetaMetadata::Dictionary& dictionary);

} // namespace Corvid::Editing
