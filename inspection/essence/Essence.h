#pragma once

#include "inspection/essence/Contradiction.h"
#include "inspection/essence/Scheme.h"
#include "inspection/essence/Stream.h"
#include "inspection/essence/Timing.h"

namespace Corvid::Inspection {

/// What a clip is: title, time, pictures, sound, data, and what people say of it. Values are those
/// of the metadata; nothing is guessed.
struct Essence {
    /// The identifiers of the clip.
    struct Material {
        std::string umid; ///< "urn:smpte:umid:..." of the material package
        std::string uuid; ///< "urn:uuid:..." of a file with one track, as packages of such files
                          ///< call it
    };

    std::string title;
    Timing timing;
    std::vector<Stream> streams;
    std::vector<SchemeSet> schemes;
    std::string shim;                 ///< name and version of the rules that the clip follows
    std::vector<std::string> sources; ///< reels and imported files: `tape "A12"`
    Material material;
    Contradictions contradictions;
};

} // namespace Corvid::Inspection
