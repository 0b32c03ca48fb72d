#include "inspection/essence/Packages.h"

#include "inspection/RegisteredName.h"
#include "inspection/essence/ShownText.h"

namespace Corvid::Inspection {

namespace {

using Structural::SetClass;

Packages::Track trackOf(Walk& walk, const Metadata::MetadataSet& set) {
    Packages::Track track;
    track.set = &set;
    track.id = number(set, Structural::trackId);
    track.origin = number(set, Structural::origin).value_or(0);
    if (const auto* rate = find(set, Structural::editRate)) {
        track.editRate = *rate;
    }
    const auto* const segment = walk.first(set, Structural::trackSegment);
    if (segment == nullptr) {
        return track;
    }
    if (const auto* definition = find(*segment, Structural::dataDefinition)) {
        track.kind = Structural::trackKind(*definition);
        // Older files have definitions of the names that ours have.
        track.kind = track.kind.empty() ? registeredName(*definition) : track.kind;
    }
    if (const auto length = number(*segment, Structural::duration); length && *length >= 0) {
        track.length = length;
    }
    const auto* const first = walk.first(*segment, Structural::components);
    track.component = first == nullptr ? segment : first;
    return track;
}

} // namespace

const Packages::Track* Packages::Package::find(Types::u32 id) const {
    const auto place = places.find(id);
    return place == places.end() ? nullptr : &tracks[place->second];
}

Packages::Packages(Walk& walk, const Set& preface) {
    for (const Set* storage : walk.next(preface, Structural::contentStorage)) {
        for (const Set* set : walk.next(*storage, Structural::packages)) {
            Package package;
            package.set = set;
            package.descriptor = walk.first(*set, Structural::descriptor);
            package.isMaterial = isA(*set, SetClass::materialPackage);
            package.isFile =
                package.descriptor != nullptr && isA(*package.descriptor, SetClass::fileDescriptor);
            for (const Set* track : walk.next(*set, Structural::tracks)) {
                package.tracks.push_back(trackOf(walk, *track));
                if (const auto id = package.tracks.back().id) {
                    package.places.emplace(*id, package.tracks.size() - 1);
                }
            }
            if (const auto* id = Inspection::find(*set, Structural::packageId)) {
                places_.emplace(id->bytes(), packages_.size());
            }
            packages_.push_back(std::move(package));
        }
    }
}

const Packages::Package* Packages::material() const noexcept {
    for (const Package& package : packages_) {
        if (package.isMaterial) {
            return &package;
        }
    }
    return nullptr;
}

const Packages::Package* Packages::find(const Types::UMID32& id) const {
    const auto place = places_.find(id.bytes());
    return place == places_.end() ? nullptr : &packages_[place->second];
}

std::optional<Packages::Source> Packages::sourceOf(const Track& track) const {
    if (track.component == nullptr) {
        return std::nullopt;
    }
    const auto* const id = Inspection::find(*track.component, Structural::sourcePackageId);
    if (id == nullptr) {
        return std::nullopt;
    }
    return Source{find(*id), number(*track.component, Structural::sourceTrackId),
                  number(*track.component, Structural::startPosition).value_or(0)};
}

std::string describe(const Packages::Package& package) {
    if (package.isMaterial) {
        return "material package";
    }
    if (package.isFile) {
        return "file package";
    }
    struct Physical {
        SetClass set;
        const char* name;
    };
    constexpr Physical known[] = {{SetClass::tapeDescriptor, "tape"},
                                  {SetClass::filmDescriptor, "film"},
                                  {SetClass::importDescriptor, "import"},
                                  {SetClass::recordingDescriptor, "recording"},
                                  {SetClass::auxiliaryDescriptor, "auxiliary source"}};
    std::string text = "source package";
    for (const Physical& each : known) {
        if (package.descriptor != nullptr && isA(*package.descriptor, each.set)) {
            text = each.name;
        }
    }
    const std::string name = shownText(*package.set, Structural::packageName);
    return name.empty() ? text : text + " \"" + name + "\"";
}

} // namespace Corvid::Inspection
