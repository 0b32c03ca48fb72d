#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Corvid::Fuzzing {

/// Header metadata as bytes, read without any code of the library: a second opinion about what
/// came back.
struct PlainMetadata {
    /// A local set: its properties, each with its local tag. Of anything else the value.
    struct Set {
        std::string key;
        bool isLocalSet = false;
        std::vector<std::pair<std::string, std::string>> properties; ///< tag and value
        std::string value;
    };

    std::map<std::string, std::string> primer; ///< labels by tag
    std::vector<Set> sets;
};

/// @param bytes  from the primer pack to the end of the header metadata.
PlainMetadata readPlainly(std::string_view bytes);

/// Compares set by set and property by property, in any order: keys, labels and values to the last
/// byte. Ends the search where anything is different. A tag that one primer pack lacks means what
/// it means in the other.
void expectSameSets(const PlainMetadata& before, const PlainMetadata& after);

} // namespace Corvid::Fuzzing
