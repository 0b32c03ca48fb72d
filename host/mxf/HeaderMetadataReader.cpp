#include "host/mxf/HeaderMetadataReader.h"

#include "host/base/Exceptions.h"
#include "host/mxf/Keys.h"
#include "host/mxf/LocalSet.h"
#include "host/mxf/PrimerPack.h"
#include "host/mxf/SetReader.h"

#include <algorithm>
#include <array>

namespace Corvid::mxf {

namespace {

/// How far to read ahead where the end of the metadata is not known: essence may follow.
constexpr std::uint64_t cautiousReadAhead = 4096;

/// What every registered key begins with.
constexpr std::array<unsigned char, 4> smpteFront = {0x06, 0x0e, 0x2b, 0x34};

std::string at(std::uint64_t offset) { return "byte " + std::to_string(offset); }

class Reader {
public:
    Reader(DataIO::ReadWindow& window, const Partition& partition, const MetadataStart& start,
           const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary, WarningSink& warnings)
        : window_(window), partition_(partition), start_(start), warnings_(warnings),
          result_(new Metadata::PartitionMetadata(dictionary)), position_(start.triplet.offset) {}

    HeaderMetadata read() {
        findDeclaredEnd();
        readPrimer();
        SetReader sets(*result_, warnings_,
                       start_.isPrimer ? SetReader::Primer::there : SetReader::Primer::missing);
        while (const auto triplet = nextTriplet()) {
            readOne(*triplet, sets);
        }
        window_.readAheadUpTo(0);
        checkSets();
        HeaderMetadata header;
        header.metadata = std::move(result_);
        header.begin = start_.triplet.offset;
        // A fill that is cut off ends with the file.
        header.end =
            header.begin + window_.source().available(header.begin, position_ - header.begin);
        header.isWhole = !cutOffAt_ && hasPreface_;
        header.cutOffAt = cutOffAt_;
        header.offsets = std::move(offsets_);
        return header;
    }

private:
    void warn(const WarningKind& kind, std::uint64_t offset, std::string text,
              std::string set = {}) {
        Warning warning(kind, std::move(text));
        warning.offset = offset;
        warning.set = std::move(set);
        warnings_.warn(warning);
    }

    void cut(std::uint64_t offset, const std::string& why) {
        warn(WarningKinds::metadataCutOff, offset,
             why + "; the header metadata is read up to here");
        cutOffAt_ = offset;
    }

    bool isThere(std::uint64_t begin, std::uint64_t end) {
        return end >= begin && window_.source().available(begin, end - begin) == end - begin;
    }

    void findDeclaredEnd() {
        const std::uint64_t count = partition_.pack.headerByteCount;
        const auto refuse = [&](const std::string& why) {
            warn(WarningKinds::headerByteCount, partition_.offset(),
                 "HeaderByteCount is " + std::to_string(count) + ", " + why);
        };
        if (count == 0) {
            return refuse("but header metadata follows");
        }
        const std::uint64_t end = position_ + count;
        if (end > partition_.end) {
            return refuse("which reaches into the next partition at " + at(partition_.end));
        }
        if (!isThere(position_, end)) {
            declaredPastFile_ = true;
            return refuse("which reaches past the end of the file");
        }
        declaredEnd_ = end;
        window_.readAheadUpTo(end);
    }

    void forgetDeclaredEnd(std::uint64_t offset, const std::string& why) {
        warn(WarningKinds::headerByteCount, offset, why + ", so HeaderByteCount is not used");
        declaredEnd_.reset();
    }

    void readPrimer() {
        if (!start_.isPrimer) {
            warn(WarningKinds::noPrimerPack, position_,
                 "there is no primer pack before the first set, so a tag has its registered "
                 "meaning or none");
            return;
        }
        const KLV::Triplet& triplet = start_.triplet;
        const auto size = static_cast<std::size_t>(
            std::min({triplet.length.value, std::uint64_t{greatestPrimerSize},
                      partition_.end - triplet.valueOffset()}));
        const auto value = window_.view(triplet.valueOffset(), size);
        for (const auto& [tag, label] :
             parsePrimerPack({value.data, value.size}, triplet.offset, warnings_)) {
            result_->partitionDictionary().add(tag, label);
        }
        if (triplet.length.value > greatestPrimerSize) {
            warn(WarningKinds::primerPack, triplet.offset,
                 "the primer pack has " + std::to_string(triplet.length.value) +
                     " bytes, more than one with every tag has");
        }
        position_ = triplet.end();
    }

    /// The head of the next KLV that is no fill; nothing where the header metadata ends.
    std::optional<KLV::Triplet> nextTriplet() {
        while (!ended_ && position_ < partition_.end &&
               window_.source().available(position_, 1) != 0) {
            const bool atDeclaredEnd = declaredEnd_ && position_ >= *declaredEnd_;
            if (!declaredEnd_) {
                window_.readAheadUpTo(position_ + cautiousReadAhead);
            }
            KLV::Triplet triplet;
            try {
                triplet = KLV::readTriplet(window_, position_);
            } catch (const Exceptions::InvalidLength& error) {
                if (!atDeclaredEnd) {
                    cut(position_, Platform::toUtf8(error.message()));
                }
                return std::nullopt;
            }
            if (atDeclaredEnd) {
                if (!KLV::isStructuralMetadataSet(triplet.key)) {
                    return std::nullopt;
                }
                forgetDeclaredEnd(position_, "a set follows after the end of the header metadata");
            }
            // Zeros are no key, but would go on as empty sets through all of a hole in a sparse
            // file.
            if (triplet.key == KLV::Key()) {
                cut(position_, "there are zeros instead of a key");
                return std::nullopt;
            }
            if (endsHeaderMetadata(triplet.key) || (!declaredEnd_ && isSingleItem(triplet.key))) {
                if (declaredEnd_) {
                    warn(WarningKinds::headerByteCount, position_,
                         "the header metadata ends here, before the end that HeaderByteCount "
                         "gives");
                }
                return std::nullopt;
            }
            if (!isFill(triplet.key)) {
                return triplet;
            }
            position_ = triplet.end();
        }
        if (declaredPastFile_ && !cutOffAt_) {
            cutOffAt_ = window_.source().available(0, position_);
        }
        return std::nullopt;
    }

    void readOne(const KLV::Triplet& triplet, SetReader& sets) {
        const std::string it = "a KLV of " + std::to_string(triplet.length.value) + " bytes ";
        if (triplet.end() > partition_.end) {
            return stop(triplet, it + "reaches into the next partition at " + at(partition_.end));
        }
        if (!isThere(triplet.valueOffset(), triplet.end())) {
            return stop(triplet, it + "reaches past the end of the file");
        }
        if (declaredEnd_ && triplet.end() > *declaredEnd_) {
            if (triplet.length.value > greatestSetSize || !isExactLocalSet(triplet)) {
                return stop(triplet, it + "reaches past the end of the header metadata");
            }
            forgetDeclaredEnd(triplet.offset, "the header metadata ends inside a set");
        }
        if (triplet.length.value > greatestSetSize) {
            if (!declaredEnd_ && !KLV::isLocalSet(triplet.key)) {
                return stop(triplet, it + "can't be metadata");
            }
            throw Exceptions::LimitExceeded(
                "the KLV at " + at(triplet.offset) + " inside the header metadata has " +
                    std::to_string(triplet.length.value) + " bytes, expected at most " +
                    std::to_string(greatestSetSize),
                CORVID_HERE);
        }
        const auto value =
            window_.view(triplet.valueOffset(), static_cast<std::size_t>(triplet.length.value));
        const auto* set = sets.read(triplet, {value.data, value.size});
        if (set != nullptr) {
            if (KLV::matches(set->key(), Metadata::Structural::StructuralMetadataKeys::preface())) {
                if (hasPreface_) {
                    warn(WarningKinds::severalPrefaces, triplet.offset,
                         "there is a Preface before this one; the first is that of the file");
                }
                hasPreface_ = true;
            }
            offsets_.sets.push_back(triplet.offset);
        } else {
            offsets_.dark.push_back(triplet.offset);
        }
        position_ = triplet.end();
    }

    void stop(const KLV::Triplet& triplet, const std::string& why) {
        cut(triplet.offset, why);
        ended_ = true;
    }

    /// Whether the properties of a local set fill it exactly and another KLV follows: then its
    /// length is true.
    bool isExactLocalSet(const KLV::Triplet& triplet) {
        if (!KLV::isLocalSet(triplet.key)) {
            return false;
        }
        window_.readAheadUpTo(triplet.end());
        std::uint64_t next = triplet.valueOffset();
        while (next < triplet.end()) {
            const auto bytes = window_.view(next, LocalSet::Head::greatestSize);
            const auto head =
                LocalSet::readHead({bytes.data, bytes.size}, KLV::hasBerLengths(triplet.key));
            const std::uint64_t left = triplet.end() - next;
            if (!head || head->size() > left || head->valueSize > left - head->size()) {
                return false;
            }
            next += head->size() + head->valueSize;
        }
        const auto behind = window_.view(next, smpteFront.size());
        return std::equal(behind.data, behind.data + behind.size, smpteFront.begin());
    }

    void checkSets() {
        if (!hasPreface_) {
            warn(WarningKinds::noPreface, start_.triplet.offset,
                 "the header metadata has no Preface");
        }
        if (result_->isAmbiguous()) {
            warnOfSharedIdentifiers();
        }
    }

    void warnOfSharedIdentifiers() {
        std::size_t i = 0;
        for (const Metadata::MetadataSet* set : *result_) {
            const auto targets =
                set->hasInstanceUID() ? result_->resolve(set->instanceUID()) : Metadata::Targets();
            if (!targets.empty() && &targets.front() != set) {
                warn(WarningKinds::sharedInstanceUID, offsets_.sets[i],
                     "has the same InstanceUID (" +
                         Platform::toUtf8(set->instanceUID().toString(Types::dottedHexadecimal)) +
                         ") as a set before it, so no reference leads to it",
                     nameOfSet(set->key(), set->metaMetadataSet()));
            }
            ++i;
        }
    }

    DataIO::ReadWindow& window_;
    const Partition& partition_;
    const MetadataStart& start_;
    WarningSink& warnings_;
    Templates::auto_ptr<Metadata::PartitionMetadata> result_;
    std::uint64_t position_;
    std::optional<std::uint64_t> declaredEnd_; ///< while HeaderByteCount is believed
    SetOffsets offsets_;
    bool declaredPastFile_ = false;
    std::optional<std::uint64_t> cutOffAt_;
    bool ended_ = false; ///< nothing after the position can be read
    bool hasPreface_ = false;
};

} // namespace

std::optional<MetadataStart> findHeaderMetadata(DataIO::ReadWindow& window,
                                                const Partition& partition) {
    try {
        KLV::Triplet triplet = KLV::readTriplet(window, partition.triplet.end());
        while (isFill(triplet.key) && triplet.end() < partition.end) {
            triplet = KLV::readTriplet(window, triplet.end());
        }
        if (triplet.valueOffset() > partition.end) {
            return std::nullopt;
        }
        if (isPrimerPack(triplet.key)) {
            return MetadataStart{triplet, true};
        }
        if (partition.pack.headerByteCount != 0 && KLV::isLocalSet(triplet.key) &&
            !endsHeaderMetadata(triplet.key)) {
            return MetadataStart{triplet, false};
        }
    } catch (const Exceptions::InvalidLength&) {
        // The file ends here, or goes on with something that is no KLV.
    }
    return std::nullopt;
}

HeaderMetadata readHeaderMetadata(DataIO::ReadWindow& window, const Partition& partition,
                                  const MetadataStart& start,
                                  const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                                  WarningSink& warnings) {
    return Reader(window, partition, start, dictionary, warnings).read();
}

} // namespace Corvid::mxf
