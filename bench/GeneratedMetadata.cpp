#include "bench/GeneratedMetadata.h"

#include "host/dataio/MemorySource.h"
#include "host/mxf/File.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <set>
#include <stdexcept>
#include <vector>

namespace Corvid::Bench {

namespace {

using namespace Testing;

constexpr std::size_t leastTracksPerPackage = 6;
constexpr std::size_t clipsPerSequence = 2;
constexpr std::size_t setsPerTrack = 2 + clipsPerSequence; // itself, its sequence, the clips
/// As many as a property has room for.
constexpr std::size_t greatestPackageCount = 4080;

/// The fifteenth byte of the keys that MxfBuilder.h does not name.
constexpr unsigned char sequenceSet = 0x0F;
constexpr unsigned char sourceClipSet = 0x11;
constexpr unsigned char sourcePackageSet = 0x37;

/// A set and those it owns, by their numbers.
struct Node {
    unsigned char set;
    std::vector<std::size_t> children;
};

/// The sets, parents before their children.
class Tree {
public:
    Tree(std::size_t sets, std::size_t tracksPerPackage)
        : limit_(sets), tracksPerPackage_(tracksPerPackage) {
        nodes_.reserve(sets);
    }

    bool isFull() const { return nodes_.size() == limit_; }

    std::size_t add(unsigned char set) {
        nodes_.push_back({set, {}});
        return nodes_.size() - 1;
    }
    std::size_t addTo(std::size_t parent, unsigned char set) {
        const std::size_t made = add(set);
        nodes_[parent].children.push_back(made);
        return made;
    }
    void addPackageTo(std::size_t storage) {
        const std::size_t package = addTo(storage, sourcePackageSet);
        for (std::size_t i = 0; i != tracksPerPackage_ && !isFull(); ++i) {
            const std::size_t track = addTo(package, timelineTrackSet);
            if (isFull()) {
                return;
            }
            const std::size_t sequence = addTo(track, sequenceSet);
            for (std::size_t k = 0; k != clipsPerSequence && !isFull(); ++k) {
                addTo(sequence, sourceClipSet);
            }
        }
    }

    const std::vector<Node>& nodes() const { return nodes_; }

private:
    std::size_t limit_;
    std::size_t tracksPerPackage_;
    std::vector<Node> nodes_;
};

Tree grow(std::size_t sets) {
    constexpr std::size_t inFront = 3; // Preface, content storage, Identification
    if (sets < inFront + 1 || sets > greatestPackageCount * greatestPackageCount * setsPerTrack) {
        throw std::invalid_argument("no such number of sets");
    }
    const std::size_t besidesPackage = sets / greatestPackageCount; // of each package
    Tree tree(sets,
              std::max(leastTracksPerPackage, (besidesPackage + setsPerTrack - 1) / setsPerTrack));
    const std::size_t preface = tree.add(prefaceSet);
    const std::size_t storage = tree.addTo(preface, contentStorageSet);
    tree.addTo(preface, identificationSet);
    while (!tree.isFull()) {
        tree.addPackageTo(storage);
    }
    return tree;
}

/// Spreads numbers over all that 64 bits can hold, different ones to different places (the last
/// step of the generator SplitMix64).
std::uint64_t spread(std::uint64_t number) {
    number += 0x9E3779B97F4A7C15;
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EB;
    return number ^ (number >> 31);
}

/// As in files, where neighbours among the sets are none among the identifiers: in order they would
/// spare every look-up its way through the memory.
Bytes identifier(std::size_t number) {
    return join({Testing::number(spread(number), 8), Testing::number(spread(~spread(number)), 8)});
}

Bytes packageId(std::size_t number) {
    return join({hex("060a2b34 01010105 01010f20 13000000"), identifier(number)});
}

Bytes name(const char* what, std::size_t number) {
    Bytes text;
    for (const char c : what + std::to_string(number)) {
        text.push_back(0);
        text.push_back(static_cast<unsigned char>(c));
    }
    return text;
}

Bytes references(const std::vector<std::size_t>& targets) {
    std::vector<Bytes> items;
    for (const std::size_t target : targets) {
        items.push_back(identifier(target));
    }
    return batch(items, 16);
}

/// Writes the sets one after the other and notes the local tags that they use.
class SetWriter {
public:
    void write(const Node& node, std::size_t number) {
        switch (node.set) {
        case prefaceSet:
            return write(node, number,
                         {{0x3B02, timestamp_},
                          {0x3B05, hex("0103")},
                          {0x3B03, identifier(node.children[0])},
                          {0x3B06, references({node.children[1]})},
                          {0x3B09, hex("060e2b34 04010101 0d010201 01010100")}});
        case contentStorageSet:
            return write(node, number, {{0x1901, references(node.children)}});
        case identificationSet:
            return write(node, number,
                         {{0x3C01, name("Company ", number)},
                          {0x3C02, name("Product ", number)},
                          {0x3C04, name("Version ", number)},
                          {0x3C05, identifier(~number)},
                          {0x3C06, timestamp_}});
        case sourcePackageSet:
            return write(node, number,
                         {{0x4401, packageId(number)},
                          {0x4402, name("Package of camera ", number)},
                          {0x4403, references(node.children)},
                          {0x4404, timestamp_},
                          {0x4405, timestamp_}});
        case timelineTrackSet:
            return writeTrack(node, number);
        case sequenceSet:
            return write(node, number,
                         {{0x0201, pictureLabel_},
                          {0x0202, Testing::number(25 * number, 8)},
                          {0x1001, references(node.children)}});
        default:
            return write(node, number,
                         {{0x0201, pictureLabel_},
                          {0x0202, Testing::number(number, 8)},
                          {0x1201, Testing::number(3 * number, 8)},
                          {0x1101, packageId(number / 2)},
                          {0x1102, Testing::number(number % 7, 4)}});
        }
    }

    std::size_t properties() const { return properties_; }

    /// The primer pack and the sets.
    Bytes metadata() const {
        std::vector<std::pair<unsigned, Bytes>> entries;
        const auto dictionary = MetaMetadata::Dictionary::builtIn();
        for (const unsigned tag : tags_) {
            const auto* element =
                dictionary->findElementByStaticTag(static_cast<unsigned short>(tag));
            if (element == nullptr) {
                throw std::logic_error("the dictionary lacks a tag of the generated sets");
            }
            const unsigned char* label = element->label().rawBuffer();
            entries.emplace_back(tag, Bytes(label, label + 16));
        }
        return join({primer(entries), sets_});
    }

private:
    struct Property {
        unsigned tag;
        Bytes value;
    };

    void writeTrack(const Node& node, std::size_t number) {
        std::vector<Property> properties = {{0x4801, Testing::number(number % 7, 4)},
                                            {0x4802, name("Track ", number)},
                                            {0x4804, Testing::number(number, 4)},
                                            {0x4B01, hex("00000019 00000001")},
                                            {0x4B02, Testing::number(0, 8)}};
        if (!node.children.empty()) {
            properties.push_back({0x4803, identifier(node.children.front())});
        }
        write(node, number, properties);
    }

    void write(const Node& node, std::size_t number, const std::vector<Property>& properties) {
        Bytes value = property(instanceUIDTag, identifier(number));
        tags_.insert(instanceUIDTag);
        for (const Property& each : properties) {
            const Bytes bytes = property(each.tag, each.value);
            value.insert(value.end(), bytes.begin(), bytes.end());
            tags_.insert(each.tag);
        }
        const Bytes set = klv(structuralKey(node.set), value);
        sets_.insert(sets_.end(), set.begin(), set.end());
        properties_ += properties.size() + 1;
    }

    const Bytes timestamp_ = hex("07e8 02 1d 0c 1e 0f 7d");
    const Bytes pictureLabel_ = hex("060e2b34 04010101 01030202 01000000");
    Bytes sets_;
    std::set<unsigned> tags_;
    std::size_t properties_ = 0;
};

class NoWarnings : public mxf::WarningSink {
public:
    void warn(const mxf::Warning& warning) override { throw std::logic_error(warning.message()); }
};

} // namespace

GeneratedMetadata generateMetadata(std::size_t sets) {
    const Tree tree = grow(sets);
    SetWriter writer;
    for (std::size_t i = 0; i != tree.nodes().size(); ++i) {
        writer.write(tree.nodes()[i], i);
    }
    return {writer.metadata(), writer.properties()};
}

GeneratedFile generateFile(std::size_t sets) {
    const GeneratedMetadata made = generateMetadata(sets);
    return {MxfBuilder().add(headerPartition(made.bytes)).build(), made.properties};
}

Templates::auto_ptr<Metadata::PartitionMetadata> readMetadata(const GeneratedFile& file) {
    NoWarnings warnings;
    return mxf::File(Templates::auto_ptr<DataIO::RandomAccessSource>(
                         new DataIO::MemorySource(file.bytes.data(), file.bytes.size())),
                     MetaMetadata::Dictionary::builtIn(), warnings)
        .readMetadata()
        .metadata;
}

} // namespace Corvid::Bench
