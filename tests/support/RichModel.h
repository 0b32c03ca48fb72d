#pragma once

#include "tests/support/Model.h"

namespace Corvid::Testing {

/// An empty model whose dictionary has sets "Thing" and "Other" beside the standard's.
Model emptyModel();

/// Adds a bit of everything: values, collections, compounds, references of all kinds, extension
/// elements, sets outside of the tree, a dark group and a dark set.
void fillRichly(Model& model);

} // namespace Corvid::Testing
