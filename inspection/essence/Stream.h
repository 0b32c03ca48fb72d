#pragma once

#include "Corvid_Inspection/Export.h"
#include "host/types/IdentifierTypes.h"
#include "inspection/essence/Picture.h"
#include "inspection/essence/Sound.h"

namespace Corvid::Inspection {

/// The essence of one track: what a descriptor of a file's package says of it.
struct Stream {
    /// What it is for.
    enum class Kind : unsigned char { picture, sound, data, other };
    /// How essence is divided into KLVs.
    enum class Wrapping : unsigned char { notStated, frame, clip };
    /// What is said of data.
    struct Data {
        std::string namespaceUri;
        std::string languages;
        std::vector<Sound::Group> groups; ///< labels of immersive sound
    };

    Kind kind = Kind::other;
    std::string className; ///< of the descriptor; empty where there is none
    std::optional<Types::u32> track;
    std::string trackName;
    std::string codec;     ///< empty where it is not stated
    std::string container; ///< likewise
    std::optional<Types::UniversalLabel> codingLabel;
    std::optional<Types::UniversalLabel> containerLabel;
    Wrapping wrapping = Wrapping::notStated;
    std::optional<Types::Rational> editRate; ///< of the track, else of the descriptor
    std::optional<Types::int64> length;      ///< in edit units; nothing where it is not stated
    std::vector<std::string> locators;       ///< where else the essence is, or may be
    bool isExternal = false;                 ///< it is not in this file
    bool isEncrypted = false;
    std::string encryptionKey; ///< "urn:uuid:..."; empty where it is not stated
    std::optional<Picture> picture;
    std::optional<Sound> sound;
    std::optional<Data> data;
};

/// The locators that are listed: the parts of a descriptor of several essences share its own.
constexpr std::size_t mostLocators = 2;

/// "picture", "sound", "data" or "other".
CORVID_INSPECTION_EXPORT const char* nameOf(Stream::Kind kind);

} // namespace Corvid::Inspection
