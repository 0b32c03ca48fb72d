#include "inspection/essence/Stream.h"

#include "host/metadata/Names.h"
#include "inspection/RegisteredName.h"
#include "inspection/essence/Describe.h"
#include "inspection/essence/LabelName.h"
#include "inspection/essence/Packages.h"
#include "inspection/essence/ShownText.h"
#include "inspection/essence/Timecode.h"

#include <set>

namespace Corvid::Inspection {

namespace {

using Metadata::MetadataSet;
using Structural::SetClass;
using Sets = std::vector<const MetadataSet*>;

/// Descriptors that nest out of all proportion end here.
constexpr int deepestDescriptor = 8;

Stream::Kind kindOf(const MetadataSet& descriptor) {
    return isA(descriptor, SetClass::pictureDescriptor) ? Stream::Kind::picture
           : isA(descriptor, SetClass::soundDescriptor) ? Stream::Kind::sound
           : isA(descriptor, SetClass::dataDescriptor)  ? Stream::Kind::data
                                                        : Stream::Kind::other;
}

Stream::Kind kindOf(const Packages::Track& track) {
    return track.kind == "Picture" ? Stream::Kind::picture
           : track.kind == "Sound" ? Stream::Kind::sound
           : track.kind == "Data"  ? Stream::Kind::data
                                   : Stream::Kind::other;
}

bool isZero(const Types::UniversalLabel& label) {
    return label.bytes() == std::array<Types::u8, 16>{};
}

const Types::UniversalLabel* labelOf(const MetadataSet& set,
                                     const Structural::Property<Types::UniversalLabel>& property) {
    const auto* const label = find(set, property);
    return label == nullptr || isZero(*label) ? nullptr : label;
}

/// The label of the coding, which each kind of essence has in a property of its own.
const Types::UniversalLabel* codingOf(const MetadataSet& set) {
    for (const auto& property : {Structural::pictureCompression, Structural::soundCompression,
                                 Structural::dataEssenceCoding}) {
        if (const auto* label = labelOf(set, property)) {
            return label;
        }
    }
    return nullptr;
}

/// The name of a coding, or where there is none of the container: some codings are the only ones
/// that theirs can hold.
std::string codecOf(const MetadataSet& set, const Types::UniversalLabel* container) {
    if (const auto* coding = codingOf(set)) {
        return labelName(*coding);
    }
    if (std::string name = container == nullptr ? "" : shortName(*container); !name.empty()) {
        return name;
    }
    if (isA(set, SetClass::wavePcmDescriptor)) {
        return "PCM"; // SMPTE ST 382: the descriptor is of nothing else
    }
    // A container of nobody's register says nothing to people.
    return container == nullptr || branchesOf(*container).empty() ? "" : labelName(*container);
}

/// What the registered name of a container says: "MXF-GC Clip-wrapped Broadcast Wave audio data".
Stream::Wrapping wrappingOf(const Types::UniversalLabel& container) {
    std::string name = registeredName(container);
    for (char& c : name) {
        c = c == '-' ? ' ' : c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    const auto has = [&](const char* word) { return name.find(word) != std::string::npos; };
    return has("clip wrapped")    ? Stream::Wrapping::clip
           : has("frame wrapped") ? Stream::Wrapping::frame
                                  : Stream::Wrapping::notStated;
}

void addLocators(Walk& walk, const MetadataSet& descriptor, std::vector<std::string>& locators) {
    for (const MetadataSet* locator : walk.next(descriptor, Structural::locators)) {
        const std::string url = text(*locator, Structural::url);
        if (!url.empty() && locators.size() < mostLocators) {
            locators.push_back(shown(url));
        }
    }
}

/// The languages of timed text, and what its elements mean.
Stream::Data dataOf(const MetadataSet& set, const Sets& subDescriptors) {
    Stream::Data data;
    data.namespaceUri = shownText(set, Structural::namespaceUri);
    if (const auto* bytes = find(set, Structural::namespaceBytes)) {
        const auto* const front = reinterpret_cast<const char*>(bytes->rawBuffer());
        data.namespaceUri = shown({front, bytes->byteCount()});
    }
    data.languages = shownText(set, Structural::rfc5646LanguageTagList);
    data.groups = soundGroups(subDescriptors);
    return data;
}

/// Makes the streams of one package after the other.
class Streams {
public:
    using Package = Packages::Package;
    using Track = Packages::Track;

    Streams(Walk& walk, const Packages& packages, const MetadataSet& preface,
            const Encryptions& encryptions, Contradictions& contradictions)
        : walk_(walk), encryptions_(encryptions), contradictions_(contradictions) {
        if (const auto* storage = walk.first(preface, Structural::contentStorage)) {
            for (const MetadataSet* essence : walk.next(*storage, Structural::essenceDataObjects)) {
                if (const auto* id = find(*essence, Structural::linkedPackageId)) {
                    inFile_.insert(id->bytes());
                }
            }
        }
        nameTracks(packages);
        for (const Package& package : packages.all()) {
            if (package.isFile) {
                add(package);
            }
        }
    }

    std::vector<Stream> take() { return std::move(streams_); }

private:
    using PackageId = std::array<Types::u8, 32>;

    /// The tracks of material packages have the names that editors know.
    void nameTracks(const Packages& packages) {
        for (const Package& package : packages.all()) {
            for (const Track& track : package.tracks) {
                const auto source = package.isMaterial ? packages.sourceOf(track) : std::nullopt;
                if (source && source->package != nullptr && source->track) {
                    names_.try_emplace({source->package, *source->track},
                                       shownText(*track.set, Structural::trackName));
                }
            }
        }
    }

    void add(const Package& package) {
        package_ = &package;
        described_.clear();
        const std::size_t first = streams_.size();
        for (const MetadataSet* descriptor : walk_.next(*package.set, Structural::descriptor)) {
            add(*descriptor, {}, 0);
        }
        if (streams_.size() == first + 1 && !streams_.back().track) {
            takeOnlyTrack(streams_.back());
        }
        for (const Track& track : package.tracks) {
            if (track.isEssence() && track.id && described_.count(*track.id) == 0) {
                Stream stream;
                stream.kind = kindOf(track);
                setTrack(stream, track);
                streams_.push_back(std::move(stream));
            }
        }
    }

    /// Where one descriptor and one track are all there is they belong together.
    void takeOnlyTrack(Stream& stream) {
        const Track* only = nullptr;
        for (const Track& track : package_->tracks) {
            if (track.isEssence()) {
                if (only != nullptr) {
                    return;
                }
                only = &track;
            }
        }
        if (only != nullptr) {
            setTrack(stream, *only);
        }
    }

    void setTrack(Stream& stream, const Track& track) {
        stream.track = track.id;
        stream.trackName = shownText(*track.set, Structural::trackName);
        if (track.id) {
            described_.insert(*track.id);
            const auto name = names_.find({package_, *track.id});
            if (name != names_.end() && !name->second.empty()) {
                stream.trackName = name->second;
            }
        }
        stream.editRate = track.editRate;
        stream.length = stream.length ? stream.length : track.length;
    }

    void add(const MetadataSet& descriptor, std::vector<std::string> locators, int depth) {
        addLocators(walk_, descriptor, locators);
        if (isA(descriptor, SetClass::multipleDescriptor)) {
            if (depth != deepestDescriptor) {
                for (const auto* part : walk_.next(descriptor, Structural::fileDescriptors)) {
                    add(*part, locators, depth + 1);
                }
            }
            return;
        }
        streams_.push_back(describe(descriptor));
        Stream& stream = streams_.back();
        stream.locators = std::move(locators);
        const auto* const id = find(*package_->set, Structural::packageId);
        stream.isExternal =
            !stream.locators.empty() && id != nullptr && inFile_.count(id->bytes()) == 0;
    }

    Stream describe(const MetadataSet& set) {
        Stream stream;
        stream.kind = kindOf(set);
        stream.className = className(set);
        const Types::UniversalLabel* container = labelOf(set, Structural::containerFormat);
        const auto encryption = encryptions_.find(package_->set);
        if (encryption != encryptions_.end()) {
            stream.isEncrypted = true;
            stream.encryptionKey = encryption->second.key;
            const auto& before = encryption->second.container;
            container = before ? &*before : container;
        }
        stream.codec = codecOf(set, container);
        if (const auto* coding = codingOf(set)) {
            stream.codingLabel = *coding;
        }
        if (container != nullptr) {
            stream.containerLabel = *container;
            stream.container = shortName(*container);
            stream.wrapping = wrappingOf(*container);
        }
        if (const auto length = number(set, Structural::essenceLength); length && *length >= 0) {
            stream.length = length;
        }
        const Sets subDescriptors = walk_.next(set, Structural::subDescriptors);
        if (stream.kind == Stream::Kind::picture) {
            stream.picture = describePicture(set, subDescriptors, contradictions_);
        } else if (stream.kind == Stream::Kind::sound) {
            stream.sound = describeSound(set, subDescriptors, contradictions_);
        } else {
            stream.data = dataOf(set, subDescriptors);
        }
        const auto linked = number(set, Structural::linkedTrackId);
        const Track* const track = linked ? package_->find(*linked) : nullptr;
        if (track != nullptr) {
            compareRates(set, *track);
            setTrack(stream, *track);
        } else {
            stream.track = linked;
            if (const auto* rate = find(set, Structural::sampleRate)) {
                stream.editRate = *rate;
            }
        }
        return stream;
    }

    /// A picture's samples are its edit units.
    void compareRates(const MetadataSet& set, const Track& track) {
        const auto* const said = find(set, Structural::sampleRate);
        if (kindOf(set) != Stream::Kind::picture || said == nullptr || !track.editRate ||
            !isRate(*said) || !isRate(*track.editRate)) {
            return;
        }
        const auto product = [](const Types::Rational& a, const Types::Rational& b) {
            return Types::int64{a.numerator()} * b.denominator();
        };
        if (product(*said, *track.editRate) != product(*track.editRate, *said)) {
            const auto text = [](const Types::Rational& rate) {
                return std::to_string(rate.numerator()) + "/" + std::to_string(rate.denominator());
            };
            contradictions_.push_back({className(set), "SampleRate",
                                       "SampleRate says " + text(*said) +
                                           ", EditRate of its track " + text(*track.editRate)});
        }
    }

    Walk& walk_;
    const Encryptions& encryptions_;
    Contradictions& contradictions_;
    std::set<PackageId> inFile_;
    std::map<std::pair<const Package*, Types::u32>, std::string> names_;
    const Package* package_ = nullptr;
    std::set<Types::u32> described_;
    std::vector<Stream> streams_;
};

} // namespace

std::vector<Stream> describeStreams(Walk& walk, const Packages& packages,
                                    const MetadataSet& preface, const Encryptions& encryptions,
                                    Contradictions& contradictions) {
    return Streams(walk, packages, preface, encryptions, contradictions).take();
}

const char* nameOf(Stream::Kind kind) {
    constexpr const char* names[] = {"picture", "sound", "data", "other"};
    return names[static_cast<std::size_t>(kind)];
}

} // namespace Corvid::Inspection
