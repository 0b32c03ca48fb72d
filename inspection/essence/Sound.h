#pragma once

#include "host/types/Rational.h"

#include <optional>
#include <string>
#include <vector>

namespace Corvid::Inspection {

/// What the metadata says of sound (SMPTE ST 377-1, channels SMPTE ST 377-4).
struct Sound {
    /// A channel and what it is for.
    struct Channel {
        std::optional<Types::u32> number; ///< from 1
        std::string symbol;               ///< "L": without the "ch" in front that all have
        std::string name;
    };
    /// Channels that belong together.
    struct Group {
        std::string symbol; ///< "sg51"; empty for channels of no group
        std::string name;
        std::string language;
        std::string title;
        std::string version;
        std::string contentKind;
        std::string elementKind;
        std::vector<Channel> channels; ///< by their numbers
    };

    std::optional<Types::Rational> sampleRate; ///< of the sound, not its edit units
    std::optional<Types::u32> bits;
    std::optional<Types::u32> channels;
    bool isObjectBased = false; ///< immersive sound without channels
    std::optional<bool> locked; ///< to the picture
    std::vector<Group> groups;
};

} // namespace Corvid::Inspection
