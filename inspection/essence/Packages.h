#pragma once

#include "inspection/Walk.h"
#include "inspection/essence/EssenceProperties.h"

#include <map>
#include <optional>
#include <string>

namespace Corvid::Inspection {

/// The packages of a file and their tracks, to be found by their identifiers.
class Packages {
public:
    using Set = Metadata::MetadataSet;

    struct Track {
        const Set* set = nullptr;
        std::optional<Types::u32> id;
        std::string kind; ///< "Picture", "Sound" and so on; else empty
        std::optional<Types::Rational> editRate;
        std::optional<Types::int64> length; ///< in edit units; nothing where it is not stated
        Types::int64 origin = 0;
        /// Its segment, or the first component of that; null where there is none.
        const Set* component = nullptr;
        bool isEssence() const { return kind == "Picture" || kind == "Sound" || kind == "Data"; }
    };
    struct Package {
        const Set* set = nullptr;
        const Set* descriptor = nullptr; ///< or null
        std::vector<Track> tracks;
        bool isMaterial = false;
        bool isFile = false; ///< it describes essence in a file

        std::map<Types::u32, std::size_t> places; ///< in tracks, by their identifiers

        const Track* find(Types::u32 id) const;
    };

    /// The essence that a source clip plays.
    struct Source {
        const Package* package = nullptr; ///< null where the file does not have it
        std::optional<Types::u32> track;
        Types::int64 start = 0; ///< in edit units of the track that has the clip
    };

    /// @param walk  goes to the packages and tracks. Borrowed.
    Packages(Walk& walk, const Set& preface);

    const std::vector<Package>& all() const noexcept { return packages_; }
    /// The first material package, or null.
    const Package* material() const noexcept;
    const Package* find(const Types::UMID32& id) const;
    /// Nothing for a track that plays no source clip first.
    std::optional<Source> sourceOf(const Track& track) const;

private:
    std::vector<Package> packages_;
    std::map<std::array<Types::u8, 32>, std::size_t> places_; // in packages_
};

/// "material package", "file package", or what a package without a file describes and its name:
/// `tape "A12"`.
std::string describe(const Packages::Package& package);

} // namespace Corvid::Inspection
