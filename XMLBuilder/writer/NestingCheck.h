#pragma once

namespace Corvid::XMLBuilder {

struct Filling;

/// Refuses to write references as values where the sets would stand in each other too deep. To be
/// asked before there is a document, because one that is given up is never released.
///
/// It goes the way of the writer, through each pass from set to set in the order of the document,
/// and refuses what a writer would come to.
/// @throws LimitExceeded  sets would nest deeper than greatestInlineDepth; names the first that is
///                        too deep.
void refuseDeepNesting(const Filling& filling);

} // namespace Corvid::XMLBuilder
