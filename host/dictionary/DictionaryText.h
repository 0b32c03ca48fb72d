#pragma once

#include <string_view>

namespace Corvid::MetaMetadata {

/// A text that defines sets and properties, in the format that docs/dictionary.md describes.
/// Borrowed for the call that it is handed to.
struct DictionaryText {
    std::string_view name;    ///< what messages call it, as a rule the name of the file
    std::string_view content; ///< UTF-8, lines ending in LF or CR LF
};

} // namespace Corvid::MetaMetadata
