#pragma once

#include "editing/change/Changes.h"
#include "host/dictionary/Dictionary.h"
#include "host/mxf/rewrite/HeaderEdit.h"
#include "host/mxf/rewrite/HeaderLayout.h"

namespace Corvid::Editing {

/// What makes the header metadata of one copy that of another after its edit.
/// @param of      the copy that changes.
/// @param wanted  the other one.
/// @param edit    of the other one.
Changes changesTo(const mxf::HeaderLayout& of, const mxf::HeaderLayout& wanted,
                  const mxf::HeaderEdit& edit, const MetaMetadata::Dictionary& dictionary);

} // namespace Corvid::Editing
