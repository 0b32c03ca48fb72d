#include "bench/GeneratedMetadata.h"
#include "tests/growth/Dimension.h"
#include "tests/growth/MetadataText.h"

#include <algorithm>

namespace Corvid::Testing {

namespace {

constexpr unsigned first = MetadataText::first;

// Local tags of the properties that these sets have.
constexpr unsigned packages = 0x1901, components = 0x1001, tracks = 0x4403, descriptor = 0x4701,
                   trackNumber = 0x4801, trackName = 0x4802, segment = 0x4803, parents = 0x4C11,
                   identifications = 0x3B06;

unsigned at(std::size_t number) { return first + static_cast<unsigned>(number); }

/// A file with so many sets, each made from its number.
template <class Add> std::string eachSet(MetadataText text, std::size_t count, Add add) {
    for (std::size_t i = 0; i != count; ++i) {
        add(text, i);
    }
    return text.file();
}

MetadataText owning(std::size_t count) {
    return MetadataText().contentStorage(packages, references(numbers(first, count)));
}

std::string ownedSets(std::size_t n) {
    return eachSet(owning(n), n, [](MetadataText& text, std::size_t i) {
        text.add(sourcePackageSet, at(i), {{0x4402, utf16(u"package")}});
    });
}

std::string setsThatNothingOwns(std::size_t n) {
    return eachSet({}, n, [](MetadataText& text, std::size_t i) {
        text.add(timelineTrackSet, at(i), {{trackNumber, number(i, 4)}});
    });
}

std::string referencesToOneSet(std::size_t n) {
    return MetadataText()
        .contentStorage(packages, references(std::vector<unsigned>(n, first)))
        .add(sourcePackageSet, first, {})
        .file();
}

/// Sets that the ContentStorage owns, each with a reference to what `targetOf` says.
template <class Target> std::string ownedSetsReferring(std::size_t n, Target targetOf) {
    return eachSet(owning(n), n, [&](MetadataText& text, std::size_t i) {
        text.add(sourcePackageSet, at(i), {{descriptor, uuid(targetOf(i))}});
    });
}

std::string ownersOfOneSet(std::size_t n) {
    return ownedSetsReferring(n, [](std::size_t) { return MetadataText::storage; });
}

std::string referencesToNothing(std::size_t n) {
    return ownedSetsReferring(n, [](std::size_t i) { return 40000 + static_cast<unsigned>(i); });
}

std::string circlesOfOne(std::size_t n) {
    return ownedSetsReferring(n, [](std::size_t i) { return at(i); });
}

std::string itemsThatReferToNothing(std::size_t n) { return owning(n).file(); }

/// Parents with the same children: about n references in all, of sqrt(n) parents to as many.
std::string parentsAndChildren(std::size_t n) {
    std::size_t parentCount = 1;
    while (parentCount * parentCount < n) {
        ++parentCount;
    }
    const std::size_t childCount = n / parentCount;
    MetadataText text = owning(parentCount);
    const Bytes children = references(numbers(at(parentCount), childCount));
    for (std::size_t i = 0; i != parentCount; ++i) {
        text.add(sourcePackageSet, at(i), {{tracks, children}});
    }
    for (std::size_t i = 0; i != childCount; ++i) {
        text.add(timelineTrackSet, at(parentCount + i), {{trackNumber, number(i, 4)}});
    }
    return text.file();
}

/// Sequences of which each owns the next one; the last one owns the `last`.
std::string chain(MetadataText text, std::size_t n, unsigned last) {
    for (std::size_t i = 0; i != n; ++i) {
        text.add(sequenceSet, at(i), {{components, references({i + 1 == n ? last : at(i + 1)})}});
    }
    return text.file();
}

std::string ownedChain(std::size_t n) { return chain(owning(1), n, 40000); }
std::string chainThatNothingOwns(std::size_t n) { return chain({}, n, 40000); }
std::string circle(std::size_t n) { return chain(owning(1), n, first); }
std::string circleThatNothingOwns(std::size_t n) { return chain({}, n, first); }

/// A chain of pairs, in which each set owns the next one twice.
std::string chainOfTwofoldReferences(std::size_t n) {
    MetadataText text = owning(1);
    for (std::size_t i = 0; i != n; ++i) {
        text.add(sequenceSet, at(i), {{components, references({at(i + 1), at(i + 1)})}});
    }
    return text.file();
}

std::string weakReferencesInOneSet(std::size_t n) {
    return owning(1)
        .add(taggedValueSet, first, {{parents, references(std::vector<unsigned>(n, 1))}})
        .file();
}

std::string setsWithAWeakReference(std::size_t n) {
    return eachSet(owning(n), n, [](MetadataText& text, std::size_t i) {
        text.add(taggedValueSet, at(i), {{parents, references({1})}});
    });
}

std::string equalSetsOfOneIdentifier(std::size_t n) {
    return eachSet({}, n, [](MetadataText& text, std::size_t) {
        text.add(timelineTrackSet, first, {{trackNumber, number(7, 4)}});
    });
}

std::string setsOfOneIdentifier(std::size_t n) {
    return eachSet({}, n, [](MetadataText& text, std::size_t i) {
        text.add(timelineTrackSet, first, {{trackNumber, number(i, 4)}});
    });
}

std::string pairsOfOneIdentifier(std::size_t n) {
    return eachSet({}, n, [](MetadataText& text, std::size_t i) {
        text.add(timelineTrackSet, at(i / 2), {{trackNumber, number(i, 4)}});
    });
}

/// As many references as sets that they all may mean.
std::string referencesToSetsOfOneIdentifier(std::size_t n) {
    return eachSet(
        MetadataText().contentStorage(packages, references(std::vector<unsigned>(n, first))), n,
        [](MetadataText& text, std::size_t i) {
            text.add(sourcePackageSet, first, {{0x4402, utf16(std::u16string(i % 7, u'x'))}});
        });
}

std::string ownersOfSetsOfOneIdentifier(std::size_t n) {
    MetadataText text = owning(n);
    for (std::size_t i = 0; i != n; ++i) {
        text.add(sourcePackageSet, at(i), {{descriptor, uuid(9)}});
        text.add(sequenceSet, 9, {{0x0202, number(i, 8)}});
    }
    return text.file();
}

std::string setsWithoutIdentifier(std::size_t n) {
    return eachSet({}, n, [](MetadataText& text, std::size_t i) {
        text.add(klv(structuralKey(timelineTrackSet), property(trackNumber, number(i, 4))));
    });
}

std::string equalSetsWithoutIdentifier(std::size_t n) {
    return eachSet({}, n, [](MetadataText& text, std::size_t) {
        text.add(klv(structuralKey(timelineTrackSet), property(trackNumber, number(7, 4))));
    });
}

std::string prefaces(std::size_t n) {
    return eachSet({}, n, [](MetadataText& text, std::size_t i) {
        text.add(prefaceSet, at(i), {{0x3B05, hex("0103")}});
    });
}

std::string identificationSets(std::size_t n) {
    MetadataText text = MetadataText().preface(identifications, references(numbers(first, n)));
    return eachSet(text, n, [](MetadataText& made, std::size_t i) {
        made.add(identificationSet, at(i), {{0x3C01, utf16(u"company")}});
    });
}

std::string tracksOfOnePackage(std::size_t n) {
    MetadataText text =
        owning(1).add(sourcePackageSet, first, {{tracks, references(numbers(first + 1, n))}});
    return eachSet(text, n, [](MetadataText& made, std::size_t i) {
        made.add(timelineTrackSet, at(i + 1), {{trackName, utf16(u"track")}});
    });
}

/// One descriptor with labels of which `info` shows each.
std::string labelsOfADescriptor(std::size_t n) {
    constexpr unsigned char cdciSet = 0x28;
    constexpr unsigned centerCuts = 0x8001;
    std::vector<Bytes> labels;
    for (std::size_t i = 0; i != n; ++i) {
        labels.push_back(join({hex("06.0e.2b.34.04.01.01.0d"), number(i, 8)}));
    }
    return owning(1)
        .primerEntry(centerCuts, hex("06.0e.2b.34.01.01.01.0e.04.01.03.02.0b.00.00.00"))
        .add(sourcePackageSet, first, {{descriptor, uuid(first + 1)}})
        .add(cdciSet, first + 1, {{centerCuts, batch(labels, 16)}})
        .file();
}

/// Descriptors of sound that share a track, whose name each stream shows.
std::string streamsOfAPackage(std::size_t n) {
    constexpr unsigned char multipleSet = 0x44, wavePcmSet = 0x48;
    constexpr unsigned fileDescriptors = 0x3F01, trackId = 0x4801;
    const unsigned multiple = first + 1, track = first + 2;
    MetadataText text =
        owning(1)
            .add(sourcePackageSet, first,
                 {{descriptor, uuid(multiple)}, {tracks, references({track})}})
            .add(multipleSet, multiple, {{fileDescriptors, references(numbers(first + 3, n))}})
            .add(timelineTrackSet, track,
                 {{trackId, number(1, 4)}, {trackName, utf16(std::u16string(300, u'a'))}});
    return eachSet(text, n, [](MetadataText& made, std::size_t i) {
        made.add(wavePcmSet, at(i + 3), {{0x3006, number(1, 4)}, {0x3D07, number(i, 4)}});
    });
}

/// Markers with frameworks, which a line of `info` and an object of its JSON show.
std::string descriptiveFrameworks(std::size_t n) {
    constexpr unsigned char markerSet = 0x41;
    constexpr unsigned framework = 0x6101;
    const Bytes key = hex("06.0e.2b.34.02.53.01.01.0d.01.07.01.0b.02.01.00");
    const unsigned track = first + 1, sequence = first + 2;
    MetadataText text =
        owning(1)
            .primerEntry(0x8001, hex("06.0e.2b.34.01.01.01.01.0d.01.07.01.0b.02.01.01"))
            .add(sourcePackageSet, first, {{tracks, references({track})}})
            .add(timelineTrackSet, track, {{segment, uuid(sequence)}})
            .add(sequenceSet, sequence, {{components, references(numbers(first + 3, n))}});
    for (std::size_t i = 0; i != n; ++i) {
        const unsigned described = at(3 + n + i);
        text.add(markerSet, at(3 + i), {{framework, uuid(described)}});
        text.add(set(key, described, {property(0x8001, number(i, 2))}));
    }
    return text.file();
}

std::string packagesWithTrack(std::size_t n) {
    MetadataText text = owning(n);
    for (std::size_t i = 0; i != n; ++i) {
        const unsigned track = at(n + 2 * i);
        text.add(sourcePackageSet, at(i), {{tracks, references({track})}});
        text.add(timelineTrackSet, track, {{segment, uuid(track + 1)}});
        text.add(sequenceSet, track + 1, {{0x0202, number(i, 8)}});
    }
    return text.file();
}

std::string setsWithBerLengths(std::size_t n) {
    Bytes sets;
    for (std::size_t i = 0; i != n; ++i) {
        const Bytes made =
            set(structuralKey(timelineTrackSet), at(i), {property(trackNumber, number(i, 4))});
        sets.insert(sets.end(), made.begin(), made.end());
    }
    return MetadataText().add(withBerLengths(sets)).file();
}

std::string setsWithKeyVersions(std::size_t n) {
    return eachSet({}, n, [](MetadataText& text, std::size_t i) {
        Bytes made =
            set(structuralKey(timelineTrackSet), at(i), {property(trackNumber, number(i, 4))});
        made[7] = static_cast<unsigned char>(2 + i % 100);
        text.add(made);
    });
}

std::string realisticSets(std::size_t n) { return asText(Bench::generateFile(n).bytes); }

} // namespace

std::vector<Dimension> setDimensions() {
    constexpr auto mxf = InputKind::mxf;
    return {
        {"sets as in real files", mxf, 32, realisticSets},
        {"sets that one set owns", mxf, 32, ownedSets},
        {"sets that nothing owns", mxf, 32, setsThatNothingOwns},
        {"references to one set in a batch", mxf, 128, referencesToOneSet},
        {"owners of one set", mxf, 32, ownersOfOneSet},
        {"owners of nothing", mxf, 32, referencesToNothing},
        {"references to nothing in an array", mxf, 128, itemsThatReferToNothing},
        {"parents times children", mxf, 50, parentsAndChildren},
        {"chain of sets", mxf, 30, ownedChain, 250},
        {"chain that nothing owns", mxf, 30, chainThatNothingOwns, 250},
        {"chain of twofold references", mxf, 30, chainOfTwofoldReferences, 250},
        {"circle of sets", mxf, 30, circle, 250},
        {"circle that nothing owns", mxf, 30, circleThatNothingOwns, 250},
        {"circles of one set", mxf, 32, circlesOfOne},
        {"weak references in a batch", mxf, 128, weakReferencesInOneSet},
        {"sets with a weak reference", mxf, 32, setsWithAWeakReference},
        {"equal sets with one InstanceUID", mxf, 32, equalSetsOfOneIdentifier},
        {"unequal sets with one InstanceUID", mxf, 32, setsOfOneIdentifier},
        {"pairs with one InstanceUID", mxf, 32, pairsOfOneIdentifier},
        {"references to sets with one InstanceUID", mxf, 32, referencesToSetsOfOneIdentifier},
        {"owners of sets with one InstanceUID", mxf, 32, ownersOfSetsOfOneIdentifier},
        {"sets without InstanceUID", mxf, 32, setsWithoutIdentifier},
        {"equal sets without InstanceUID", mxf, 32, equalSetsWithoutIdentifier},
        {"Prefaces", mxf, 32, prefaces},
        {"Identifications", mxf, 32, identificationSets},
        {"tracks of a package", mxf, 32, tracksOfOnePackage},
        {"labels of a descriptor", mxf, 128, labelsOfADescriptor},
        {"packages with a track", mxf, 16, packagesWithTrack},
        {"streams of a package", mxf, 32, streamsOfAPackage},
        {"descriptive frameworks", mxf, 16, descriptiveFrameworks},
        {"sets with BER lengths", mxf, 32, setsWithBerLengths},
        {"sets with versions of their own", mxf, 32, setsWithKeyVersions},
    };
}

} // namespace Corvid::Testing
