#pragma once

#include "host/dictionary/Dictionary.h"
#include "host/mxf/rewrite/HeaderLayout.h"

namespace Corvid::Editing {

/// Refuses metadata that was not made from that of a clip as it is.
/// @param clip, document  as both are written; borrowed.
/// @throws InvalidFormat  it is of another clip: the Preface or most sets have other InstanceUIDs;
///                        or of an older state of it: it lacks the last Identifications.
void requireSameClip(const mxf::HeaderLayout& clip, const mxf::HeaderLayout& document,
                     const MetaMetadata::Dictionary& dictionary);

} // namespace Corvid::Editing
