#include "tests/growth/Dimension.h"
#include "tests/growth/MetadataText.h"

namespace Corvid::Testing {

namespace {

constexpr unsigned first = MetadataText::first;
constexpr unsigned dynamicTag = 0x8000; // and those that follow
constexpr unsigned trackNumber = 0x4801, trackName = 0x4802, company = 0x3C01;

unsigned plus(unsigned begin, std::size_t number) { return begin + static_cast<unsigned>(number); }

/// One set with properties made from their numbers.
template <class Make>
std::string oneSet(std::size_t n, Make make, MetadataText text = MetadataText()) {
    std::vector<TaggedValue> properties;
    for (std::size_t i = 0; i != n; ++i) {
        properties.push_back(make(i));
    }
    return text.add(timelineTrackSet, first, properties).file();
}

/// Sets with one property each.
template <class Make>
std::string manySets(std::size_t n, Make make, MetadataText text = MetadataText()) {
    for (std::size_t i = 0; i != n; ++i) {
        text.add(timelineTrackSet, plus(first, i), {make(i)});
    }
    return text.file();
}

MetadataText withUnknownEntries(std::size_t n) {
    MetadataText text;
    for (std::size_t i = 0; i != n; ++i) {
        text.primerEntry(plus(dynamicTag, i), unknownLabel(plus(0, i)));
    }
    return text;
}

std::string repeatedProperties(std::size_t n) {
    return oneSet(n, [](std::size_t i) { return TaggedValue(trackNumber, number(i, 4)); });
}

std::string repeatedUnfitProperties(std::size_t n) {
    return oneSet(n, [](std::size_t) { return TaggedValue(trackNumber, number(1, 3)); });
}

std::string unknownProperties(std::size_t n) {
    return oneSet(
        n, [](std::size_t i) { return TaggedValue(plus(dynamicTag, i), number(i, 4)); },
        withUnknownEntries(n));
}

std::string repeatedUnknownProperties(std::size_t n) {
    return oneSet(
        n, [](std::size_t i) { return TaggedValue(dynamicTag, number(i, 4)); },
        withUnknownEntries(1));
}

std::string propertiesWithoutPrimerEntry(std::size_t n) {
    return oneSet(n, [](std::size_t i) { return TaggedValue(plus(0x6000, i), number(i, 4)); });
}

std::string dynamicTagsWithoutPrimerEntry(std::size_t n) {
    return oneSet(n, [](std::size_t i) { return TaggedValue(plus(0x9000, i), number(i, 4)); });
}

std::string misplacedProperties(std::size_t n) {
    return oneSet(n, [](std::size_t) { return TaggedValue(company, utf16(u"name")); });
}

std::string setsWithUnknownProperty(std::size_t n) {
    return manySets(
        n, [](std::size_t i) { return TaggedValue(plus(dynamicTag, i), number(i, 4)); },
        withUnknownEntries(n));
}

std::string setsWithPropertyWithoutPrimerEntry(std::size_t n) {
    return manySets(n, [](std::size_t i) { return TaggedValue(plus(0x6000, i), number(i, 4)); });
}

std::string setsWithMisplacedProperty(std::size_t n) {
    return manySets(n, [](std::size_t) { return TaggedValue(company, utf16(u"name")); });
}

std::string setsWithUnfitValue(std::size_t n) {
    return manySets(n, [](std::size_t) { return TaggedValue(trackNumber, number(1, 3)); });
}

std::string setsWithEmptyText(std::size_t n) {
    return manySets(n, [](std::size_t) { return TaggedValue(trackName, Bytes()); });
}

std::string setsWithBytesAfterText(std::size_t n) {
    return manySets(n, [](std::size_t i) {
        return TaggedValue(trackName, join({utf16(u"name"), number(0, 2), number(i, 4)}));
    });
}

std::string setsWithFilledText(std::size_t n) {
    return manySets(n, [](std::size_t i) {
        return TaggedValue(trackName, join({utf16(u"name"), Bytes(2 + 2 * (i % 20))}));
    });
}

std::string setsWithForbiddenCharacter(std::size_t n) {
    return manySets(n, [](std::size_t) { return TaggedValue(trackName, hex("0041 0001 0042")); });
}

std::string forbiddenCharacters(std::size_t n) {
    Bytes text;
    for (std::size_t i = 0; i != n; ++i) {
        text.push_back(0);
        text.push_back(i % 2 == 0 ? 'a' : 1);
    }
    return manySets(1, [&](std::size_t) { return TaggedValue(trackName, text); });
}

/// The same property under so many local tags, each with another version of its label.
std::string versionsOfALabel(std::size_t n) {
    MetadataText text;
    for (std::size_t i = 0; i != n; ++i) {
        Bytes label = hex("06.0e.2b.34.01.01.01.00.01.07.01.02.01.00.00.00");
        label[7] = static_cast<unsigned char>(i);
        text.primerEntry(plus(dynamicTag, i), label);
    }
    return manySets(
        n, [](std::size_t i) { return TaggedValue(plus(dynamicTag, i), utf16(u"name")); },
        std::move(text));
}

std::string text(std::size_t n) {
    return manySets(
        1, [&](std::size_t) { return TaggedValue(trackName, utf16(std::u16string(n, u'x'))); });
}

std::string markupInText(std::size_t n) {
    return manySets(
        1, [&](std::size_t) { return TaggedValue(trackName, utf16(std::u16string(n, u'<'))); });
}

std::string itemsOfABatch(std::size_t n) {
    std::vector<Bytes> items;
    for (std::size_t i = 0; i != n; ++i) {
        items.push_back(join({hex("060e2b34 04010102 0d010301"), number(i, 4)}));
    }
    return MetadataText().preface(0x3B0A, batch(items, 16)).file();
}

Bytes darkKey() { return hex("06.0e.2b.34.02.53.01.01.0e.7d.7f.7f.01.02.03.00"); }

std::string darkSets(std::size_t n) {
    MetadataText text;
    for (std::size_t i = 0; i != n; ++i) {
        text.add(klv(hex("06.0e.2b.34.02.05.01.01.0e.7d.7f.7f.01.02.04.00"), number(i, 8)));
    }
    return text.file();
}

std::string equalDarkSets(std::size_t n) {
    MetadataText text;
    for (std::size_t i = 0; i != n; ++i) {
        text.add(klv(hex("06.0e.2b.34.02.05.01.01.0e.7d.7f.7f.01.02.04.00"), number(1, 8)));
    }
    return text.file();
}

std::string darkBytes(std::size_t n) {
    return MetadataText()
        .add(klv(hex("06.0e.2b.34.02.05.01.01.0e.7d.7f.7f.01.02.04.00"), Bytes(n)))
        .file();
}

MetadataText withDarkGroups(std::size_t n, MetadataText text = MetadataText()) {
    for (std::size_t i = 0; i != n; ++i) {
        text.add(set(darkKey(), plus(first, i), {property(dynamicTag, number(i, 4))}));
    }
    return text.primerEntry(dynamicTag, unknownLabel(1));
}

std::string darkGroups(std::size_t n) { return withDarkGroups(n).file(); }

std::string referencesToDarkGroups(std::size_t n) {
    return withDarkGroups(n, MetadataText().contentStorage(0x1901, references(numbers(first, n))))
        .file();
}

std::string darkGroupsOfOneIdentifier(std::size_t n) {
    MetadataText text;
    for (std::size_t i = 0; i != n; ++i) {
        text.add(set(darkKey(), first, {property(dynamicTag, number(i, 4))}));
    }
    return text.primerEntry(dynamicTag, unknownLabel(1)).file();
}

std::string propertiesOfADarkGroup(std::size_t n) {
    Bytes properties;
    for (std::size_t i = 0; i != n; ++i) {
        const Bytes made = property(plus(dynamicTag, i), number(i, 4));
        properties.insert(properties.end(), made.begin(), made.end());
    }
    return withUnknownEntries(n).add(set(darkKey(), first, {properties})).file();
}

std::string tagsOfDarkGroups(std::size_t n) {
    MetadataText text = withUnknownEntries(n);
    for (std::size_t i = 0; i != n; ++i) {
        text.add(set(darkKey(), plus(first, i), {property(plus(dynamicTag, i), number(i, 4))}));
    }
    return text.file();
}

std::string darkGroupsWithoutPrimerEntry(std::size_t n) {
    MetadataText text;
    for (std::size_t i = 0; i != n; ++i) {
        text.add(set(darkKey(), plus(first, i), {property(plus(0x9000, i), number(i, 4))}));
    }
    return text.file();
}

std::string classesOfDarkGroups(std::size_t n) {
    MetadataText text;
    for (std::size_t i = 0; i != n; ++i) {
        Bytes key = darkKey();
        key[12] = static_cast<unsigned char>(i >> 8);
        key[13] = static_cast<unsigned char>(i);
        text.add(set(key, plus(first, i), {property(dynamicTag, number(i, 4))}));
    }
    return text.primerEntry(dynamicTag, unknownLabel(1)).file();
}

} // namespace

std::vector<Dimension> propertyDimensions() {
    constexpr auto mxf = InputKind::mxf;
    return {
        {"one property again in a set", mxf, 64, repeatedProperties},
        {"one unfit property again in a set", mxf, 64, repeatedUnfitProperties},
        {"unknown properties of a set", mxf, 64, unknownProperties},
        {"one unknown property again in a set", mxf, 64, repeatedUnknownProperties},
        {"static tags without primer entry in a set", mxf, 64, propertiesWithoutPrimerEntry},
        {"dynamic tags without primer entry in a set", mxf, 64, dynamicTagsWithoutPrimerEntry},
        {"misplaced properties of a set", mxf, 64, misplacedProperties},
        {"sets with an unknown property", mxf, 32, setsWithUnknownProperty},
        {"sets with a tag without primer entry", mxf, 32, setsWithPropertyWithoutPrimerEntry},
        {"sets with a misplaced property", mxf, 32, setsWithMisplacedProperty},
        {"sets with an unfit value", mxf, 32, setsWithUnfitValue},
        {"sets with an empty text", mxf, 32, setsWithEmptyText},
        {"sets with bytes after a text", mxf, 32, setsWithBytesAfterText},
        {"sets with zeros after a text", mxf, 32, setsWithFilledText},
        {"sets with a forbidden character", mxf, 32, setsWithForbiddenCharacter},
        {"forbidden characters in a text", mxf, 1024, forbiddenCharacters},
        {"versions of a property's label", mxf, 24, versionsOfALabel, 255},
        {"characters of a text", mxf, 6000, text, 32000},
        {"markup characters in a text", mxf, 8000, markupInText, 32000},
        {"items of a batch", mxf, 256, itemsOfABatch, 4000},
        {"dark sets", mxf, 64, darkSets},
        {"equal dark sets", mxf, 64, equalDarkSets},
        {"bytes of a dark set", mxf, 65536, darkBytes},
        {"dark groups", mxf, 32, darkGroups},
        {"references to dark groups", mxf, 32, referencesToDarkGroups},
        {"dark groups with one InstanceUID", mxf, 32, darkGroupsOfOneIdentifier},
        {"properties of a dark group", mxf, 64, propertiesOfADarkGroup},
        {"dark groups with a tag of their own", mxf, 32, tagsOfDarkGroups},
        {"dark groups with an unexplained tag", mxf, 32, darkGroupsWithoutPrimerEntry},
        {"classes of dark groups", mxf, 32, classesOfDarkGroups},
    };
}

} // namespace Corvid::Testing
